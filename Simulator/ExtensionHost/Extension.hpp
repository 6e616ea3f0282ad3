#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "QuorvaFinderExtension/FinderActionContext.hpp"

/// The extension that runs in this process, seen from where Finder stands: its principal object,
/// the menus that it hands out as AppKit has them, and clicks. Main thread only.
///
/// An Objective-C exception that the extension lets out ends the process, as it does on a Mac.
namespace simulator {

/// A value of a dictionary that a menu item represents.
struct Value {
    using Array = std::vector<Value>;
    using Dictionary = std::map<std::string, Value>;

    std::variant<std::monostate, bool, std::int64_t, std::uint64_t, double, std::string, Array,
                 Dictionary>
        content;
};

/// An object of a class that the extension does not use, by its text.
struct OtherObject {
    std::string text;
};

using RepresentedObject =
    std::variant<std::monostate, std::shared_ptr<const quorva::FinderActionContext>,
                 Value::Dictionary, OtherObject>;

struct ShownItem;

/// A menu as AppKit has it.
struct ShownMenu {
    std::string title;
    std::vector<ShownItem> items;
};

struct ShownItem {
    bool isSeparator = false;
    std::string title;
    bool enabled = false;
    /// The selector, absent for none and for the one that AppKit gives an item with a submenu.
    std::optional<std::string> action;
    /// The class of the target.
    std::optional<std::string> target;
    std::string keyEquivalent;
    std::optional<std::string> identifier;
    std::int64_t tag = 0;
    RepresentedObject representedObject;
    std::optional<ShownMenu> submenu;
};

/// An item to deliver that no menu holds.
struct SentItem {
    std::string title;
    std::optional<std::string> identifier;
    std::optional<std::int64_t> tag;
    RepresentedObject representedObject;
};

/// What Finder has selected and shows. Absent is what Finder does not give.
struct FinderState {
    std::optional<std::vector<std::string>> selectedPaths;
    std::optional<std::string> targetedPath;
};

enum class Delivery {
    /// The very item of the menu.
    intact,
    /// An item made anew of what Finder keeps: title, enabled state, tag, state and indentation.
    finder,
};

/// Makes the principal object of the main bundle. Fails with one sentence.
std::expected<void, std::string> startExtension();

/// Asks for the menu, which stays the one that `clickItem` means. Absent when the extension gives
/// none.
std::optional<ShownMenu> requestMenu(unsigned long kind, const FinderState& state);

/// Clicks the item of the last menu at `indexPath`. Fails with one sentence when Finder's user
/// could not click there.
std::expected<void, std::string> clickItem(const std::vector<std::size_t>& indexPath,
                                           Delivery delivery, const FinderState& state);

/// Delivers an item made of `item` alone.
void sendItem(const SentItem& item, const FinderState& state);

/// The paths of the monitored folders, one for each URL of the set, in no particular order.
std::vector<std::string> monitoredPaths();

struct ToolbarItem {
    std::optional<std::string> name;
    std::optional<std::string> toolTip;
};
ToolbarItem toolbarItem();

/// Runs the run loop for `seconds`.
void runRunLoop(double seconds);

/// Runs the run loop until there is something to read from `descriptor`, or its end is reached.
void runRunLoopUntilReadable(int descriptor);

}  // namespace simulator
