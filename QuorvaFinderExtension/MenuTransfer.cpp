#include "QuorvaFinderExtension/MenuTransfer.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

#include "QuorvaFinderExtension/MenuItemIdentity.hpp"
#include "QuorvaFinderExtension/MenuItemResolution.hpp"

namespace quorva {

namespace {

/// Calls `visit` with every item of `menu` and its submenus that has an action, in menu order.
template <typename AnyMenu, typename Visit>
void forEachActionableItem(AnyMenu& menu, Visit visit) {
    for (auto& item : menu.items) {
        if (item.action == MenuItem::Action::performFeatureChild) {
            visit(item);
        }
        if (item.submenu) {
            forEachActionableItem(*item.submenu, visit);
        }
    }
}

/// The context attached to `item`, null when something else is.
const FinderActionContext* attachedContext(const MenuItem& item) {
    const auto* const context = std::get_if<FinderActionContextPointer>(&item.representedObject);
    return context == nullptr ? nullptr : context->get();
}

/// The kind of the destination or place that `context` acts on. Absent for every other entry.
std::optional<FinderCustomDestinationKind> destinationKind(const FinderActionContext& context) {
    if (context.actionID() == copyFilesToFolderActionID) {
        return FinderCustomDestinationKind::copy;
    }
    if (context.actionID() == moveFilesToFolderActionID) {
        return FinderCustomDestinationKind::move;
    }
    if (context.actionID() == quickOpenPathActionID) {
        return FinderCustomDestinationKind::quickOpen;
    }
    return std::nullopt;
}

/// Whether the catalogue's command is to stand for the entry that `context` is attached to.
bool leavesToCommand(const FinderActionContext& context, const TitleMeaning& meaning,
                     const SettingsReading& settings) {
    const std::optional<FinderCustomDestinationKind> kind = destinationKind(context);
    return meaning.source == TitleMeaning::Source::command && kind &&
           settings.hasDefaultDestinations(*kind);
}

bool actsAlike(const FinderActionContext& left, const FinderActionContext& right) {
    return left.actionID() == right.actionID() && left.destinationPath() == right.destinationPath();
}

/// Whether the tag and the title of `sender` are those of two view presets.
bool namesTwoPresets(const MenuItem& sender, const SettingsReading& settings) {
    const std::vector<FinderViewPresetSetting>& presets = settings.viewPresets();
    const std::int64_t index = sender.tag - viewPresetTagBase;
    return std::cmp_less(index, presets.size()) &&
           presets[static_cast<std::size_t>(index)].name != sender.title &&
           std::ranges::find(presets, sender.title, &FinderViewPresetSetting::name) !=
               presets.end();
}

}  // namespace

void tagAmbiguousItems(Menu& menu, const SettingsReading& settings) {
    TitleMeanings meanings;
    forEachActionableItem(menu, [&](const MenuItem& item) { ++meanings[item.title].uses; });
    findTitleMeanings(meanings, settings);
    std::int64_t tag = 0;
    forEachActionableItem(menu, [&](MenuItem& item) {
        const FinderActionContext* const context = attachedContext(item);
        if (context == nullptr) {
            return;
        }
        const TitleMeaning& meaning = meanings.at(item.title);
        const bool isAmbiguous = meaning.context == nullptr
                                     ? meaning.uses > 1
                                     : !actsAlike(*context, *meaning.context) &&
                                           !leavesToCommand(*context, meaning, settings);
        if (!isAmbiguous) {
            return;
        }
        if (++tag == viewPresetTagBase) {
            tag += static_cast<std::int64_t>(settings.viewPresets().size());
        }
        item.tag = tag;
    });
}

FinderActionContextPointer contextOfSender(const MenuItem& sender, const Menu& menu,
                                           const SettingsReading& settings) {
    const bool isBare =
        std::holds_alternative<std::monostate>(sender.representedObject) && !sender.identifier;
    if (!isBare) {
        return actionContext(sender, settings);
    }
    const MenuItem* tagged = nullptr;
    const MenuItem* destination = nullptr;
    std::size_t destinationCount = 0;
    forEachActionableItem(menu, [&](const MenuItem& item) {
        if (item.title != sender.title) {
            return;
        }
        if (item.tag != 0 && item.tag == sender.tag) {
            tagged = &item;
        }
        const FinderActionContext* const context = attachedContext(item);
        if (context != nullptr && destinationKind(*context)) {
            destination = &item;
            ++destinationCount;
        }
    });
    if (tagged != nullptr &&
        (attachedContext(*tagged) != nullptr || namesTwoPresets(sender, settings))) {
        return actionContext(*tagged, settings);
    }
    if (FinderActionContextPointer context = actionContext(sender, settings)) {
        return context;
    }
    return destinationCount == 1 ? actionContext(*destination, settings) : nullptr;
}

}  // namespace quorva
