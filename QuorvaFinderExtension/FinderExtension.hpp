#pragma once

#include <optional>
#include <string_view>

#include "Platform/Logger.hpp"
#include "Platform/PropertyList.hpp"
#include "QuorvaFinderExtension/Menu.hpp"
#include "QuorvaFinderExtension/MenuRequest.hpp"

namespace quorva {

/// The extension as Finder sees it, without the framework's class around it: what the system
/// creates once in each process of the extension and Finder asks for menus.
///
/// Used from the main thread only. May throw `std::bad_alloc`; whoever calls on the system's behalf
/// contains it.
class FinderExtension {
 public:
    /// The distributed notification by which the containing application says that it changed the
    /// settings. The string under "reason" of its user info says why.
    static constexpr std::string_view settingsChangedNotificationName =
        "app.ferrolin.Quorva.SettingsChanged";

    static constexpr std::string_view toolbarItemName = "Quorva";
    static constexpr std::string_view toolbarItemToolTip = "Send selected files to Quorva";

    FinderExtension() noexcept;

    /// Sets the monitored folders, with the reason "started".
    void start() const;

    /// The menu for the current selection and target, built anew from the settings as they are now.
    /// Valid until the next call.
    [[nodiscard]] const Menu& menu(MenuKind kind);

    /// Hands a clicked item of that menu over to the containing application.
    void performFeatureChild(const MenuItem& sender) const;

    /// Sets the monitored folders anew. `userInfo` is what the notification carried, absent when it
    /// carried nothing.
    void handleSettingsChanged(const std::optional<PropertyList::Dictionary>& userInfo) const;

 private:
    void refreshMonitoredDirectories(std::string_view reason) const;

    platform::Logger logger_;
    /// What Finder was given last, for the items that come back from it.
    Menu menu_;
};

}  // namespace quorva
