#include "Cocoa/DeliveredMenuItem.hpp"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "QuorvaFinderExtension/MenuItemIdentity.hpp"

namespace quorva {
namespace {

using Context = std::shared_ptr<const FinderActionContext>;

constexpr std::array<std::string_view, 3> restoredActionIDs = {
    copyFilesToFolderActionID, moveFilesToFolderActionID, quickOpenPathActionID};

/// Appends the items of `menu` and its submenus that have an action and show as `sender` does.
void appendMatches(std::vector<const MenuItem*>& matches, const MenuItem& sender,
                   const Menu& menu) {
    for (const MenuItem& item : menu.items) {
        if (item.action == MenuItem::Action::performFeatureChild && item.title == sender.title &&
            item.tag == sender.tag) {
            matches.push_back(&item);
        }
        if (item.submenu) {
            appendMatches(matches, sender, *item.submenu);
        }
    }
}

}  // namespace

MenuItem deliveredMenuItem(MenuItem sender, const Menu& menu) {
    if (!std::holds_alternative<std::monostate>(sender.representedObject)) {
        return sender;
    }
    std::vector<const MenuItem*> matches;
    appendMatches(matches, sender, menu);
    if (matches.size() != 1) {
        return sender;
    }
    const auto* context = std::get_if<Context>(&matches.front()->representedObject);
    if (context != nullptr && *context != nullptr &&
        std::ranges::find(restoredActionIDs, (*context)->actionID()) != restoredActionIDs.end()) {
        sender.representedObject = *context;
    }
    return sender;
}

}  // namespace quorva
