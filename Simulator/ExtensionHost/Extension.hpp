#pragma once

#include <cstddef>
#include <expected>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "QuorvaFinderExtension/FinderActionContext.hpp"

/// The extension that runs in this process, seen from where Finder stands: its principal object,
/// the menus that it hands out as AppKit has them, and clicks. Main thread only, and only within
/// `enterExtension`. Items and menus are JSON in the form of Documentation/ExtensionProtocol.md.
/// A `state` has the members "selectedPaths" and "targetedPath" of a request; its other members
/// mean nothing. What is passed in has been checked.
namespace simulator {

/// Runs `work`. An Objective-C exception that it lets out ends the process, as it does on a Mac.
void enterExtension(const std::function<void()>& work);

/// Makes the principal object of the main bundle. Returns false when there is none.
bool startExtension();

/// Asks for the menu, which stays the one that `clickItem` means. Null when the extension gives
/// none.
nlohmann::ordered_json requestMenu(unsigned long kind, const nlohmann::json& state);

/// Clicks the item of the last menu at `indexPath`: the very item, or one that `isRebuilt` of what
/// Finder keeps. Fails with one sentence when Finder's user could not click there.
std::expected<void, std::string> clickItem(const std::vector<std::size_t>& indexPath,
                                           bool isRebuilt, const nlohmann::json& state);

/// The last menu as a PNG in Base64, a point of `scale` pixels, with the submenus open that lie on
/// the way of `indexPath` and the one at its end. Fails with one sentence when there is no menu or
/// it is empty, when the path leads to no submenu, or when the picture would be too large.
std::expected<std::string, std::string> drawMenu(const std::vector<std::size_t>& indexPath,
                                                 unsigned scale);

/// Delivers an item made of `item` alone. `context` is what it represents when that is a context.
void sendItem(const nlohmann::json& item, const quorva::FinderActionContextPointer& context,
              const nlohmann::json& state);

/// The paths of the monitored folders, one for each URL of the set, in no particular order.
std::vector<std::string> monitoredPaths();

/// The name and the tool tip of the toolbar item.
nlohmann::ordered_json toolbarItem();

void runRunLoop(double seconds);

/// Runs the run loop until there is something to read from `descriptor`, or its end is reached.
void runRunLoopUntilReadable(int descriptor);

}  // namespace simulator
