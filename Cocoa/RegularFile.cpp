#include "Cocoa/RegularFile.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <span>
#include <system_error>
#include <utility>

#include "Platform/Data.hpp"

namespace quorva {

namespace {

/// Reads from `descriptor` until the file ends or `bytes` is full. Returns how many were read.
Result<std::size_t> readAll(int descriptor, std::span<std::byte> bytes) {
    std::size_t total = 0;
    while (total < bytes.size()) {
        const ssize_t count = ::read(descriptor, &bytes[total], bytes.size() - total);
        if (count == 0) {
            break;
        }
        if (count < 0 && errno != EINTR) {
            return std::unexpected(lastSystemError());
        }
        total += count < 0 ? 0 : static_cast<std::size_t>(count);
    }
    return total;
}

}  // namespace

Error lastSystemError() {
    return {std::generic_category().message(errno)};
}

Result<int> openRegularFile(const FileURL& url, int flags) {
    int descriptor = -1;
    do {
        descriptor = ::open(url.path().c_str(), flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor < 0) {
        return std::unexpected(lastSystemError());
    }
    struct stat status{};
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
        return descriptor;
    }
    ::close(descriptor);
    return std::unexpected(Error{"Not a regular file."});
}

Result<Data> platform::dataWithContentsOfRegularFile(const FileURL& url, std::size_t byteLimit) {
    const Result<int> descriptor = openRegularFile(url, O_RDONLY);
    if (!descriptor) {
        return std::unexpected(descriptor.error());
    }
    struct stat status{};
    ::fstat(*descriptor, &status);
    if (std::cmp_greater(status.st_size, byteLimit)) {
        ::close(*descriptor);
        return std::unexpected(Error{"The file is too large."});
    }
    // One byte more than there is, so that a file that grows meanwhile is noticed.
    Data data(static_cast<std::size_t>(status.st_size) + 1);
    const Result<std::size_t> count = readAll(*descriptor, data);
    ::close(*descriptor);
    if (!count) {
        return std::unexpected(count.error());
    }
    if (*count == data.size()) {
        return std::unexpected(Error{"The file grew while it was read."});
    }
    data.resize(*count);
    return data;
}

}  // namespace quorva
