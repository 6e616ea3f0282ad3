#pragma once

#include <optional>
#include <string_view>

#include "Platform/Error.hpp"
#include "Platform/FileURL.hpp"

namespace quorva::platform {

/// A regular file that is open for appending. Closed when its one owner lets go of it.
class FileHandle {
 public:
    /// Opens the existing regular file at `url`, through links. Fails when there is none, when what
    /// stands there is anything else (a folder, a pipe, a device), or when it may not be written.
    /// Never waits for another process.
    [[nodiscard]] static Result<FileHandle> forAppendingToURL(const FileURL& url);

    FileHandle(FileHandle&& other) noexcept;
    FileHandle& operator=(FileHandle&&) = delete;
    ~FileHandle();

    /// The last byte of the file. Absent when the file is empty or may be written but not read.
    [[nodiscard]] std::optional<char> lastByte() const;

    /// Writes `bytes` behind whatever the file holds at that moment, in one write where the system
    /// allows it: what several processes append at once does not mix.
    [[nodiscard]] Result<void> write(std::string_view bytes) const;

 private:
    explicit FileHandle(int descriptor) : descriptor_(descriptor) {}

    /// Negative when the handle was moved from.
    int descriptor_;
};

}  // namespace quorva::platform
