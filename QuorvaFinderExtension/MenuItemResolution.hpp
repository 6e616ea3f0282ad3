#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "QuorvaFinderExtension/FinderActionContext.hpp"
#include "QuorvaFinderExtension/Menu.hpp"

/// Turning a clicked item back into the context of what it does. A null pointer is "nothing": the
/// item, the identifier, the tag or the title says no entry that exists now.
///
/// The settings are read afresh, so an item resolves against the settings of the moment of the
/// click. A context that is rebuilt from an identifier, a tag or a title has no selection and no
/// target.
namespace quorva {

/// The attached object, or else the identifier, the tag and the title, whichever first says an
/// entry. An attached dictionary ends the search even when it is malformed.
std::shared_ptr<const FinderActionContext> actionContext(const MenuItem& item);

std::shared_ptr<const FinderActionContext> actionContextFromMenuIdentifier(
    const std::optional<std::string>& identifier);

/// Ends the process when `tag` is so low that the index of a preset can't be computed.
std::shared_ptr<const FinderActionContext> actionContextFromMenuTag(std::int64_t tag);

std::shared_ptr<const FinderActionContext> actionContextFromMenuTitle(const std::string& title);

/// The custom action that an action identifier of either prefix names, whatever the action's kind.
std::shared_ptr<const FinderActionContext> customActionContext(std::string_view actionID);

/// The kind of action that `actionID` stands for. Absent when it is not one of the catalogue's and
/// not that of an open-with entry.
std::optional<FinderFeatureAction> actionForID(std::string_view actionID);

}  // namespace quorva
