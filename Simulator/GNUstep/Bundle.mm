#import <Foundation/Foundation.h>

#include <cstdlib>

#include "Cocoa/ObjectHolder.h"
#import "Simulator/GNUstep/ApplicationBundle.h"
#import "Simulator/GNUstep/MethodExchange.h"

using simulator::ownBundlePath;

namespace {

NSDictionary* ownInfoDictionary() {
    static const quorva::ObjectHolder<NSDictionary> info(
        simulator::infoDictionaryOfBundle(ownBundlePath()));
    return info.get();
}

/// The default string table of the process's own bundle in the language of `SIMULATOR_LANGUAGE`.
NSDictionary* ownStringTable() {
    const char* language = std::getenv("SIMULATOR_LANGUAGE");
    NSString* path =
        [NSString stringWithFormat:@"%@/Contents/Resources/%s.lproj/Localizable.strings",
                                   ownBundlePath(), language == nullptr ? "zh-Hans" : language];
    NSError* error = nil;
    NSString* text = [NSString stringWithContentsOfFile:path
                                               encoding:NSUTF8StringEncoding
                                                  error:&error];
    @try {
        return text.propertyListFromStringsFileFormat;
    } @catch (NSException* exception) {
        NSLog(@"%@ is not a string table: %@", path, exception.reason);
        return nil;
    }
}

}  // namespace

@interface NSBundle (Simulator)
- (NSURL*)simulatorBundleURL;
- (NSDictionary*)simulatorInfoDictionary;
- (NSString*)simulatorLocalizedStringForKey:(NSString*)key
                                      value:(NSString*)value
                                      table:(NSString*)table;
@end

/// macOS: a program in `Name.app/Contents/MacOS` has that bundle as its main bundle, with its
/// information in `Contents/Info.plist` and its strings in `Contents/Resources/LANGUAGE.lproj`.
/// GNUstep does not know that layout.
@implementation NSBundle (Simulator)

+ (void)load {
    simulator::exchangeMethods(self, @selector(bundleURL), @selector(simulatorBundleURL));
    simulator::exchangeMethods(self, @selector(infoDictionary), @selector(simulatorInfoDictionary));
    simulator::exchangeMethods(self, @selector(localizedStringForKey:value:table:),
                               @selector(simulatorLocalizedStringForKey:value:table:));
}

- (BOOL)simulatorIsApplicationBundle {
    return self == [NSBundle mainBundle] && ownBundlePath() != nil;
}

- (NSURL*)simulatorBundleURL {
    return [self simulatorIsApplicationBundle]
               ? [NSURL fileURLWithPath:ownBundlePath() isDirectory:YES]
               : [self simulatorBundleURL];
}

- (NSDictionary*)simulatorInfoDictionary {
    return [self simulatorIsApplicationBundle] ? ownInfoDictionary()
                                               : [self simulatorInfoDictionary];
}

- (NSString*)simulatorLocalizedStringForKey:(NSString*)key
                                      value:(NSString*)value
                                      table:(NSString*)table {
    if (![self simulatorIsApplicationBundle] || table.length > 0) {
        return [self simulatorLocalizedStringForKey:key value:value table:table];
    }
    static const quorva::ObjectHolder<NSDictionary> strings(ownStringTable());
    NSString* text = [strings.get() objectForKey:key];
    return text != nil ? text : value.length > 0 ? value : key;
}

@end
