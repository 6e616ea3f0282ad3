#include "Simulator/FinderCommand/MenuEntries.hpp"

#include <algorithm>
#include <string_view>

#include "Simulator/FinderCommand/ExtensionProcess.hpp"
#include "Simulator/FinderCommand/Terminal.hpp"

namespace simulator {
namespace {

using nlohmann::ordered_json;

bool isSeparator(const ordered_json& item) {
    return item.contains("separator");
}

void addEntries(const ordered_json& menu, const MenuEntry& parent, bool opens,
                std::vector<MenuEntry>& entries) {
    const ordered_json& items = menu["items"];
    for (std::size_t index = 0; index < items.size(); ++index) {
        const ordered_json& item = items[index];
        if (isSeparator(item)) {
            continue;
        }
        MenuEntry entry = {parent.titles, parent.indexPath, item, false};
        entry.item.erase("submenu");
        entry.titles.push_back(item["title"]);
        entry.indexPath.push_back(index);
        const bool enabled = opens && item["enabled"];
        const bool hasSubmenu = item.contains("submenu");
        entry.isClickable = enabled && !hasSubmenu && !item["action"].is_null();
        entries.push_back(entry);
        if (hasSubmenu) {
            addEntries(item["submenu"], entry, enabled, entries);
        }
    }
}

void addLines(const ordered_json& menu, const std::string& indentation, std::string& tree) {
    for (const ordered_json& item : menu["items"]) {
        if (isSeparator(item)) {
            tree += indentation + styled("────────", Style::dim) + "\n";
            continue;
        }
        const std::string title = item["title"];
        const bool hasSubmenu = item.contains("submenu");
        if (!item["enabled"]) {
            const std::string_view arrow = hasSubmenu ? " ▸" : "";
            tree += indentation;
            tree += styled(std::string("✕ ").append(title).append(arrow).append("  (disabled)"),
                           Style::dim);
        } else if (hasSubmenu) {
            tree += indentation + styled(title, Style::bold) + " ▸";
            if (item["submenu"]["items"].empty()) {
                tree += styled("  (empty)", Style::dim);
            }
        } else {
            tree += indentation + title;
        }
        tree += "\n";
        if (hasSubmenu) {
            addLines(item["submenu"], indentation + "    ", tree);
        }
    }
}

bool endsWith(const std::vector<std::string>& titles, const std::vector<std::string>& end) {
    return titles.size() >= end.size() &&
           std::equal(end.begin(), end.end(),
                      titles.end() - static_cast<std::ptrdiff_t>(end.size()));
}

std::string whatThereIsToClick(const std::vector<MenuEntry>& entries) {
    std::string list;
    for (const MenuEntry& entry : entries) {
        if (entry.isClickable) {
            list += "\n  " + breadcrumbs(entry.titles);
        }
    }
    return list.empty() ? "\nThere is nothing to click." : "\nThere is to click:" + list;
}

}  // namespace

std::vector<MenuEntry> menuEntries(const ordered_json& menu) {
    std::vector<MenuEntry> entries;
    if (!menu.is_null()) {
        addEntries(menu, {}, true, entries);
    }
    return entries;
}

std::string breadcrumbs(const std::vector<std::string>& titles) {
    std::string line;
    for (const std::string& title : titles) {
        line += (line.empty() ? "" : " ▸ ") + title;
    }
    return line;
}

const MenuEntry& entryNamed(const std::vector<MenuEntry>& entries,
                            const std::vector<std::string>& titles) {
    const auto isClickable = [](const MenuEntry& entry) { return entry.isClickable; };
    std::vector<const MenuEntry*> named;
    for (const MenuEntry& entry : entries) {
        if (entry.titles == titles && entry.isClickable) {
            return entry;
        }
        if (endsWith(entry.titles, titles)) {
            named.push_back(&entry);
        }
    }
    std::string problem = "there is no entry ";
    if (!named.empty()) {
        const auto clickable = std::ranges::count_if(
            named, [&](const MenuEntry* entry) { return isClickable(*entry); });
        if (clickable == 1) {
            return **std::ranges::find_if(
                named, [&](const MenuEntry* entry) { return isClickable(*entry); });
        }
        problem = clickable > 1 ? "there are several entries " : "nothing can be clicked at ";
    }
    throw CommandError(problem + breadcrumbs(titles) + whatThereIsToClick(entries));
}

std::string menuTree(const ordered_json& menu) {
    if (menu.is_null()) {
        return styled("(the extension gives no menu)", Style::dim) + "\n";
    }
    std::string tree;
    addLines(menu, "  ", tree);
    return tree.empty() ? styled("  (empty)", Style::dim) + "\n" : tree;
}

}  // namespace simulator
