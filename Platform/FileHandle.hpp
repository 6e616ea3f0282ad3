#pragma once

#include <memory>
#include <string_view>

#include "Platform/Error.hpp"
#include "Platform/FileURL.hpp"

namespace quorva {

/// A file that is open for writing. Owned by one holder; closed, if it still is open, when the
/// holder lets go of it.
class FileHandle {
 public:
    /// Opens the existing file at `url` for writing, positioned at its start; nothing is truncated.
    /// Fails when there is no file, when it is a folder, or when it may not be written.
    static Result<FileHandle> forWritingToURL(const FileURL& url);

    FileHandle(FileHandle&&) noexcept;
    FileHandle& operator=(FileHandle&&) noexcept;
    ~FileHandle();

    /// Moves the position behind the last byte.
    Result<void> seekToEnd();

    /// Writes all of `bytes` at the position, in one write where the system allows it.
    Result<void> write(std::string_view bytes);

    /// Closes the file. The handle is of no further use.
    Result<void> close();

 private:
    class Implementation;
    explicit FileHandle(std::unique_ptr<Implementation> implementation);

    std::unique_ptr<Implementation> implementation_;
};

}  // namespace quorva
