#pragma once

#include "Platform/Data.hpp"
#include "Platform/Error.hpp"
#include "Platform/PropertyList.hpp"

namespace quorva::platform {

/// `object` as JSON text in UTF-8: indented, one member a line, keys in sorted order.
///
/// `object` is a dictionary or an array of strings, numbers, booleans, arrays and dictionaries.
/// Fails when it holds anything that JSON has no form for (a date, data, a number that is not
/// finite).
[[nodiscard]] Result<Data> jsonDataPrettyPrintedWithSortedKeys(const PropertyList& object);

}  // namespace quorva::platform
