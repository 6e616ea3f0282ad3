#pragma once

#include <string_view>

namespace simulator {

enum class PropertyListEncoding { binary, xml, other };

/// How a property list is written, by its first bytes.
PropertyListEncoding propertyListEncoding(std::string_view bytes);

/// Whether libplist reads `bytes`, which are in the binary encoding, within a moment and the stack.
///
/// libplist 2.2.0 unfolds shared references, recurses, and ends the process for a key with a NUL.
/// So the object table is walked here first, each object once and without recursion: a list with a
/// cycle or such a key, or one that goes beyond a limit of `Platform/PropertyListSerialization.hpp`
/// when it is unfolded, is not for it.
bool isReadableBinaryPropertyList(std::string_view bytes);

/// The same for the XML encoding, where only the depth and a NUL can be too much. libplist is
/// content with a document that ends in the middle; macOS is not, so a missing end is found here.
bool isReadableXMLPropertyList(std::string_view bytes);

/// Whether GNUstep's recursive parser of the old text form can read `bytes` with the stack there
/// is: without a NUL, and with no more opening brackets than that takes.
bool isReadableTextPropertyList(std::string_view bytes);

}  // namespace simulator
