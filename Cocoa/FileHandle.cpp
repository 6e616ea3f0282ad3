#include "Platform/FileHandle.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "Cocoa/RegularFile.hpp"

namespace quorva::platform {

Result<FileHandle> FileHandle::forAppendingToURL(const FileURL& url) {
    Result<int> descriptor = openRegularFile(url, O_RDWR | O_APPEND);
    if (!descriptor) {
        descriptor = openRegularFile(url, O_WRONLY | O_APPEND);
    }
    if (!descriptor) {
        return std::unexpected(descriptor.error());
    }
    return FileHandle(*descriptor);
}

FileHandle::FileHandle(FileHandle&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

FileHandle::~FileHandle() {
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

std::optional<char> FileHandle::lastByte() const {
    const off_t size = ::lseek(descriptor_, 0, SEEK_END);
    char byte = 0;
    return size > 0 && ::pread(descriptor_, &byte, 1, size - 1) == 1 ? std::optional(byte)
                                                                     : std::nullopt;
}

Result<void> FileHandle::write(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
        if (count == 0) {
            return std::unexpected(Error{"Nothing was written."});
        }
        if (count < 0 && errno != EINTR) {
            return std::unexpected(lastSystemError());
        }
        bytes.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
    return {};
}

}  // namespace quorva::platform
