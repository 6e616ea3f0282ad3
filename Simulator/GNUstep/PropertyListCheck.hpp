#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace simulator {

enum class PropertyListEncoding { binary, xml, other };

/// How a property list is written, by its first bytes.
PropertyListEncoding propertyListEncoding(std::string_view bytes);

/// Whether libplist reads `bytes`, which are in the binary encoding, within a moment and the stack.
///
/// libplist 2.2.0 unfolds shared references, recurses, cuts a text of ASCII at a NUL, and ends the
/// process for a key with one. So the object table is walked here first, each object once and
/// without recursion: a list with a cycle, such a text or such a key, or one that goes beyond a
/// limit of `Platform/PropertyListSerialization.hpp` when it is unfolded, is not for it. Neither is
/// one with a set, which it takes for an array. macOS reads those texts whole; here their file
/// counts as unreadable, rather than as one that says something else.
bool isReadableBinaryPropertyList(std::string_view bytes);

/// `bytes`, which are in the XML encoding, in a form that libplist reads within a moment. Nothing
/// when they are too deep, hold a NUL, or end in the middle or in a dictionary's key without a
/// value, with which libplist would be content.
///
/// A byte order mark, which libplist does not know, is left out, and the five named references are
/// written out, because libplist takes time with the square of their number.
std::optional<std::string> readableXMLPropertyList(std::string_view bytes);

/// Whether GNUstep's recursive parser of the old text form can read `bytes` with the stack there
/// is: without a NUL, and with no more opening brackets than that takes.
bool isReadableTextPropertyList(std::string_view bytes);

}  // namespace simulator
