#import "Cocoa/MenuRendering.h"

#import <objc/runtime.h>

#import "Cocoa/FinderActionContextObject.h"
#import "Cocoa/PropertyListConversion.h"
#import "Cocoa/StringConversion.h"

// `FinderSync` declares the method; here it is only a name.
#pragma clang diagnostic ignored "-Wundeclared-selector"

// Outside the product's namespace, where `FinderActionContext` is the Objective-C class.
namespace {

class MenuRenderer {
   public:
    explicit MenuRenderer(id target) : target_(target) {}

    NSMenu* renderedMenu(const quorva::Menu& menu) {
        NSMenu* rendered =
            [[[NSMenu alloc] initWithTitle:quorva::foundationString(menu.title)] autorelease];
        rendered.autoenablesItems = NO;
        for (const quorva::MenuItem& item : menu.items) {
            [rendered addItem:item.isSeparator ? [NSMenuItem separatorItem] : renderedItem(item)];
        }
        return rendered;
    }

   private:
    NSMenuItem* renderedItem(const quorva::MenuItem& item) {
        const bool isActionable = item.action == quorva::MenuItem::Action::performFeatureChild;
        NSMenuItem* rendered = [[[NSMenuItem alloc]
            initWithTitle:quorva::foundationString(item.title)
                   action:isActionable ? @selector(performFeatureChild:) : nullptr
            keyEquivalent:@""] autorelease];
        rendered.target = isActionable ? target_ : nil;
        rendered.enabled = item.enabled;
        rendered.identifier = item.identifier ? quorva::foundationString(*item.identifier) : nil;
        rendered.tag = static_cast<NSInteger>(item.tag);
        rendered.representedObject = representedObject(item.representedObject);
        rendered.submenu = item.submenu ? renderedMenu(*item.submenu) : nil;
        return rendered;
    }

    id representedObject(const quorva::RepresentedObject& object) {
        if (const auto* context = std::get_if<quorva::FinderActionContextPointer>(&object)) {
            return [[[FinderActionContextObject alloc] initWithContext:*context] autorelease];
        }
        if (const auto* entries = std::get_if<quorva::PropertyList::Dictionary>(&object)) {
            return converter_.dictionary(*entries);
        }
        return nil;
    }

    id target_;
    quorva::FoundationObjectConverter converter_;
};

quorva::RepresentedObject representedObject(id object) {
    if (object == nil) {
        return {};
    }
    if ([object isKindOfClass:[FinderActionContextObject class]]) {
        return [static_cast<FinderActionContextObject*>(object) context];
    }
    if (auto entries = quorva::propertyListEntries(object)) {
        return std::move(*entries);
    }
    return quorva::ForeignObject{};
}

}  // namespace

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
    result.representedObject = ::representedObject(item.representedObject);
    result.isSeparator = [item isSeparatorItem];
    return result;
}
