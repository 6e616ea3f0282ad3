#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace simulator {

/// An entry of a menu.
struct MenuEntry {
    /// The titles on the way to it, its own last. A separator's is empty.
    std::vector<std::string> titles;
    /// The positions on the way to it.
    std::vector<std::size_t> indexPath;
    /// The item as the extension's response shows it, within the menu.
    const nlohmann::ordered_json* item = nullptr;
    /// Whether it and what it lies in are enabled, it opens nothing, and has an action.
    bool isClickable = false;
};

/// Every entry of `menu` (null, or "title" and "items"), in the order in which they show, those of
/// a submenu behind the entry that opens it. They are good as long as `menu` is.
std::vector<MenuEntry> menuEntries(const nlohmann::ordered_json& menu);

/// The titles as one line for people: "Quorva ▸ 新建 ▸ 新建文件夹".
std::string breadcrumbs(const std::vector<std::string>& titles);

/// The entry that `titles` names: all the titles on the way to it, or so many of its last ones that
/// no other clickable entry is meant. Throws, with what there is to click, when there is none.
const MenuEntry& entryNamed(const std::vector<MenuEntry>& entries,
                            const std::vector<std::string>& titles);

/// `menu` as a tree, one entry a line: submenus indented, disabled entries dimmed and marked.
std::string menuTree(const nlohmann::ordered_json& menu);

}  // namespace simulator
