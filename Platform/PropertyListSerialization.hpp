#pragma once

#include <cstddef>

#include "Platform/Data.hpp"
#include "Platform/Error.hpp"
#include "Platform/PropertyList.hpp"

namespace quorva {

/// How deep values may lie in one another, the outermost counted. No settings file is deeper than
/// four; the limit is what keeps a hostile file from exhausting the stack.
inline constexpr std::size_t propertyListDepthLimit = 512;

/// How many values a property list may hold, counting a value that is shared once per place where
/// it appears. Room for settings of more than a hundred thousand entries; the limit is what keeps a
/// few hundred bytes of shared references from unfolding into more values than there is memory for.
inline constexpr std::size_t propertyListValueLimit = 1'000'000;

/// How many bytes of data and UTF-16 units of text a property list may hold in all, counted like
/// the values.
inline constexpr std::size_t propertyListByteLimit = 64'000'000;

}  // namespace quorva

namespace quorva::platform {

/// Parses `data` as a property list in any encoding that the platform reads.
///
/// Fails when the bytes are not a property list and when they hold more values or bytes than the
/// limits above. A value that is nested too deeply, and one of a class that `PropertyList` has no
/// type for, is `PropertyList::Unsupported` where it stands.
[[nodiscard]] Result<PropertyList> propertyListWithData(const Data& data);

}  // namespace quorva::platform
