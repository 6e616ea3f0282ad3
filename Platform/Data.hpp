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

/// Reads the whole file at `url` into memory.
///
/// Fails when there is no file, when it is a folder, or when it may not be read. An empty file is a
/// success with no bytes.
Result<Data> dataWithContentsOfURL(const FileURL& url);

/// Writes `data` to `url` so that at every moment a reader finds the old file, no file, or the
/// whole new file: the bytes go to a temporary file in the same folder, which is then moved into
/// place. A file that stands at `url` is replaced.
///
/// On failure whatever stood at `url` is untouched and no temporary file is left.
Result<void> writeDataAtomically(const Data& data, const FileURL& url);

}  // namespace quorva
