#pragma once

#include <optional>
#include <set>
#include <string_view>
#include <vector>

#include "Platform/FileURL.hpp"
#include "Platform/Logger.hpp"
#include "Platform/PropertyList.hpp"
#include "QuorvaFinderExtension/Menu.hpp"

namespace quorva {

/// Where Finder shows the menu. The values are FinderSync's `FIMenuKind`; a value that is not among
/// them is possible, because the system may add kinds.
enum class MenuKind : unsigned long {
    contextualMenuForItems = 0,
    contextualMenuForContainer = 1,
    contextualMenuForSidebar = 2,
    toolbarItemMenu = 3,
};

/// The extension as Finder sees it, without the framework's class around it: the object that Finder
/// creates once in each of its processes and asks for menus.
///
/// Used from the main thread only. The operations that the system calls are `noexcept`, and nothing
/// that goes wrong in them reaches the system: an extension that ends takes the menu away until
/// Finder starts it again.
class FinderSync {
 public:
    /// The distributed notification by which the containing application says that it changed the
    /// settings. The text under "reason" of its user info says why.
    static constexpr std::string_view settingsChangedNotificationName =
        "app.ferrolin.Quorva.SettingsChanged";

    static constexpr std::string_view toolbarItemName = "Quorva";
    static constexpr std::string_view toolbarItemToolTip = "Send selected files to Quorva";

    /// Sets the monitored folders, with the reason "started".
    FinderSync() noexcept;

    /// The menu for the current selection and target, built anew from the settings as they are now.
    /// The kind is logged and makes no other difference. Should the building itself fail, an empty
    /// menu.
    [[nodiscard]] Menu menu(MenuKind kind) const noexcept;

    /// Hands a clicked item over to the containing application.
    void performFeatureChild(const MenuItem& sender) const noexcept;

    /// Sets the monitored folders anew. `userInfo` is what the notification carried, absent when it
    /// carried nothing.
    void handleSettingsChanged(const std::optional<PropertyList::Dictionary>& userInfo) noexcept;

 private:
    void refreshMonitoredDirectories(std::string_view reason);

    Logger logger_;
};

/// The user's real home folder. Inside the App Sandbox the platform reports the container instead,
/// so the account's home and the standard folders are consulted for one that is not in a container.
FileURL realUserHomeURL();

/// The folders for which Finder asks this extension for menus.
std::set<FileURL> monitoredDirectoryURLs();

/// `urls`, each as it is, in standard form, and with symbolic links resolved as a directory.
std::set<FileURL> normalizedDirectoryVariants(const std::vector<FileURL>& urls);

/// The items selected in Finder now. Empty when Finder gives none.
FinderSelection currentFinderSelection();

}  // namespace quorva
