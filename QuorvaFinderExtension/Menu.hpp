#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "Platform/PropertyList.hpp"
#include "QuorvaFinderExtension/FinderActionContext.hpp"

namespace quorva {

struct MenuItem;

/// A menu as a plain value. The Cocoa layer renders it and decides nothing about it.
struct Menu {
    std::string title;
    std::vector<MenuItem> items;

    friend bool operator==(const Menu&, const Menu&);
};

/// An attached object of a type that the extension does not use.
struct ForeignObject {
    friend bool operator==(const ForeignObject&, const ForeignObject&) = default;
};

/// What is attached to a menu item: nothing, a context, a dictionary, or something foreign.
using RepresentedObject = std::variant<std::monostate, FinderActionContextPointer,
                                       PropertyList::Dictionary, ForeignObject>;

/// An item of a menu as a plain value: one to show, or one that was clicked.
///
/// Every item has an empty key equivalent.
struct MenuItem {
    /// What a click on an item does.
    enum class Action {
        /// Nothing: a separator, a heading, or an item that opens a submenu.
        none,
        /// Sends `performFeatureChild:` to the principal object, which is the item's target.
        performFeatureChild,
    };

    std::string title;
    Action action = Action::none;
    bool enabled = true;
    std::optional<std::string> identifier;
    /// 0 when none was set.
    std::int64_t tag = 0;
    RepresentedObject representedObject;
    std::optional<Menu> submenu;
    bool isSeparator = false;

    static MenuItem separator();

    /// An item that only opens `submenu`, with the submenu's title.
    static MenuItem opening(Menu submenu);

    friend bool operator==(const MenuItem&, const MenuItem&) = default;
};

inline bool operator==(const Menu& left, const Menu& right) {
    return left.title == right.title && left.items == right.items;
}

inline MenuItem MenuItem::separator() {
    MenuItem item;
    item.isSeparator = true;
    return item;
}

inline MenuItem MenuItem::opening(Menu submenu) {
    MenuItem item;
    item.title = submenu.title;
    item.submenu = std::move(submenu);
    return item;
}

}  // namespace quorva
