#include "Simulator/FinderCommand/MenuEntry.hpp"

#include <algorithm>
#include <stdexcept>

#include "Simulator/FinderCommand/Terminal.hpp"
#include "Simulator/Text.hpp"

namespace simulator {
namespace {

using nlohmann::ordered_json;

void addEntries(const ordered_json& menu, const MenuEntry& parent, bool opens,
                std::vector<MenuEntry>& entries) {
    std::size_t index = 0;
    for (const ordered_json& item : menu.at("items")) {
        MenuEntry entry = {parent.titles, parent.indexPath, &item};
        entry.indexPath.push_back(index++);
        const bool isSeparator = item.contains("separator");
        const bool hasSubmenu = item.contains("submenu");
        const bool enabled = !isSeparator && item.at("enabled").get<bool>() && opens;
        entry.titles.push_back(isSeparator ? "" : item.at("title").get<std::string>());
        entry.isClickable = enabled && !hasSubmenu && !item.at("action").is_null();
        entries.push_back(entry);
        if (hasSubmenu) {
            addEntries(item["submenu"], entry, enabled, entries);
        }
    }
}

std::string line(const MenuEntry& entry) {
    const ordered_json& item = *entry.item;
    if (item.contains("separator")) {
        return styled("────────", Style::dim);
    }
    std::string title = escaped(entry.titles.back());
    const std::string arrow = item.contains("submenu") ? " ▸" : "";
    if (!item["enabled"]) {
        return styled("✕ " + title + arrow + "  (disabled)", Style::dim);
    }
    if (arrow.empty()) {
        return title;
    }
    return styled(title, Style::bold) + arrow +
           (item["submenu"]["items"].empty() ? styled("  (empty)", Style::dim) : "");
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
        line += (line.empty() ? "" : " ▸ ") + escaped(title);
    }
    return line;
}

const MenuEntry& entryNamed(const std::vector<MenuEntry>& entries,
                            const std::vector<std::string>& titles) {
    std::vector<const MenuEntry*> named;
    std::string list = "\nThere is to click:";
    for (const MenuEntry& entry : entries) {
        if (!entry.isClickable) {
            continue;
        }
        if (entry.titles == titles) {
            return entry;
        }
        list += "\n  " + breadcrumbs(entry.titles);
        if (titles.size() < entry.titles.size() &&
            std::equal(titles.rbegin(), titles.rend(), entry.titles.rbegin())) {
            named.push_back(&entry);
        }
    }
    if (named.size() == 1) {
        return *named.front();
    }
    throw std::runtime_error(
        (named.empty() ? "nothing can be clicked at " : "there are several entries ") +
        breadcrumbs(titles) + list);
}

std::string menuTree(const ordered_json& menu) {
    if (menu.is_null()) {
        return styled("(the extension gives no menu)", Style::dim) + "\n";
    }
    std::string tree;
    for (const MenuEntry& entry : menuEntries(menu)) {
        tree += std::string((4 * entry.titles.size()) - 2, ' ') + line(entry) + "\n";
    }
    return tree.empty() ? styled("  (empty)", Style::dim) + "\n" : tree;
}

}  // namespace simulator
