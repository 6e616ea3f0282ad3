#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "Platform/Error.hpp"
#include "Platform/FileURL.hpp"

namespace quorva {

/// Bytes without a meaning of their own.
using Data = std::vector<std::byte>;

/// The bytes of `text`, unchanged.
inline Data dataWithText(std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

}  // namespace quorva

namespace quorva::platform {

/// Reads the whole regular file at `url`, through links, into memory.
///
/// Fails when there is no file, when what stands there is anything else (a folder, a pipe, a
/// device), when it holds more than `byteLimit` bytes, or when it may not be read. Never waits for
/// another process. An empty file is a success with no bytes.
[[nodiscard]] Result<Data> dataWithContentsOfRegularFile(const FileURL& url, std::size_t byteLimit);

/// Writes `data` to `url` so that at every moment a reader finds the old file, no file, or the
/// whole new file: the bytes go to a temporary file in the same folder, which is then moved into
/// place. A file that stands at `url` is replaced.
///
/// On failure whatever stood at `url` is untouched and no temporary file is left.
[[nodiscard]] Result<void> writeDataAtomically(const Data& data, const FileURL& url);

}  // namespace quorva::platform
