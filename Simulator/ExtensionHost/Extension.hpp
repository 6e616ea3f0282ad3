#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "QuorvaFinderExtension/FinderActionContext.hpp"

/// The extension that runs in this process, seen from where Finder stands: its principal object,
/// the menus that it hands out as AppKit has them, and clicks. Main thread only. What is shown is
/// JSON in the form of Documentation/ExtensionProtocol.md.
///
/// An Objective-C exception that the extension lets out ends the process, as it does on a Mac.
namespace simulator {

/// What an item to deliver represents: nothing, a context, a dictionary (a JSON object), or an
/// object of a class that the extension does not use, by its string.
using RepresentedObject =
    std::variant<std::monostate, std::shared_ptr<const quorva::FinderActionContext>, nlohmann::json,
                 std::string>;

/// An item to deliver that no menu holds.
struct SentItem {
    std::string title;
    std::optional<std::string> identifier;
    std::int64_t tag = 0;
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

/// Asks for the menu, which stays the one that `clickItem` means. Null when the extension gives
/// none.
nlohmann::ordered_json requestMenu(unsigned long kind, const FinderState& state);

/// Clicks the item of the last menu at `indexPath`. Fails with one sentence when Finder's user
/// could not click there.
std::expected<void, std::string> clickItem(const std::vector<std::size_t>& indexPath,
                                           Delivery delivery, const FinderState& state);

/// Delivers an item made of `item` alone.
void sendItem(const SentItem& item, const FinderState& state);

/// The paths of the monitored folders, one for each URL of the set, in no particular order.
std::vector<std::string> monitoredPaths();

/// The name and the tool tip of the toolbar item.
nlohmann::ordered_json toolbarItem();

/// Runs the run loop for `seconds`.
void runRunLoop(double seconds);

/// Runs the run loop until there is something to read from `descriptor`, or its end is reached.
void runRunLoopUntilReadable(int descriptor);

}  // namespace simulator
