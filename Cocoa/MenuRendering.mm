#import "Cocoa/MenuRendering.h"

#import <objc/runtime.h>

#import "Cocoa/FinderActionContextObject.h"
#import "Cocoa/PropertyListConversion.h"
#import "Cocoa/StringConversion.h"

// `FinderSync` declares the method; here it is only a name.
#pragma clang diagnostic ignored "-Wundeclared-selector"

namespace quorva {
namespace {

class MenuRenderer {
   public:
    explicit MenuRenderer(id target) : target_(target) {}

    NSMenu* renderedMenu(const Menu& menu) {
        NSMenu* rendered =
            [[[NSMenu alloc] initWithTitle:foundationString(menu.title)] autorelease];
        rendered.autoenablesItems = NO;
        for (const MenuItem& item : menu.items) {
            [rendered addItem:item.isSeparator ? [NSMenuItem separatorItem] : renderedItem(item)];
        }
        return rendered;
    }

   private:
    NSMenuItem* renderedItem(const MenuItem& item) {
        const bool isActionable = item.action == MenuItem::Action::performFeatureChild;
        NSMenuItem* rendered = [[[NSMenuItem alloc]
            initWithTitle:foundationString(item.title)
                   action:isActionable ? @selector(performFeatureChild:) : nullptr
            keyEquivalent:@""] autorelease];
        rendered.target = isActionable ? target_ : nil;
        rendered.enabled = item.enabled;
        rendered.identifier = item.identifier ? foundationString(*item.identifier) : nil;
        rendered.tag = static_cast<NSInteger>(item.tag);
        rendered.representedObject = representedObject(item.representedObject);
        rendered.submenu = item.submenu ? renderedMenu(*item.submenu) : nil;
        return rendered;
    }

    id representedObject(const RepresentedObject& object) {
        if (const auto* context = std::get_if<FinderActionContextPointer>(&object)) {
            return [[[FinderActionContextObject alloc] initWithContext:*context] autorelease];
        }
        if (const auto* entries = std::get_if<PropertyList::Dictionary>(&object)) {
            return converter_.dictionary(*entries);
        }
        return nil;
    }

    id target_;
    FoundationObjectConverter converter_;
};

RepresentedObject representedObject(id object) {
    if (object == nil) {
        return {};
    }
    if ([object isKindOfClass:[FinderActionContextObject class]]) {
        return [static_cast<FinderActionContextObject*>(object) context];
    }
    if (auto entries = propertyListEntries(object)) {
        return std::move(*entries);
    }
    return ForeignObject{};
}

}  // namespace
}  // namespace quorva

NSMenu* quorva::renderedMenu(const Menu& menu, id target) {
    return MenuRenderer(target).renderedMenu(menu);
}

quorva::MenuItem quorva::menuItem(NSMenuItem* item) {
    MenuItem result;
    result.title = utf8String(item.title);
    const bool isActionable =
        item.action != nullptr && sel_isEqual(item.action, @selector(performFeatureChild:));
    result.action = isActionable ? MenuItem::Action::performFeatureChild : MenuItem::Action::none;
    result.enabled = [item isEnabled];
    // An empty identifier identifies nothing.
    if (item.identifier.length > 0) {
        result.identifier = utf8String(item.identifier);
    }
    result.tag = item.tag;
    result.representedObject = quorva::representedObject(item.representedObject);
    result.isSeparator = [item isSeparatorItem];
    return result;
}
