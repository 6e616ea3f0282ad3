#include "Platform/Workspace.hpp"

#import <AppKit/AppKit.h>

#import "Cocoa/ErrorConversion.h"
#import "Cocoa/URLConversion.h"
#include "QuorvaFinderExtension/Containment.hpp"

namespace {

std::optional<quorva::Error> launchError(NSError* error) {
    @try {
        return error == nil ? std::nullopt : std::optional(quorva::platformError(error));
    } @catch (NSException* exception) {
        return quorva::platformError(exception);
    }
}

}  // namespace

void quorva::openApplication(const FileURL& url, const OpenConfiguration& configuration,
                             std::function<void(const std::optional<Error>& error)> completion) {
    @try {
        NSWorkspaceOpenConfiguration* openConfiguration =
            [NSWorkspaceOpenConfiguration configuration];
        openConfiguration.activates = configuration.activates;
        openConfiguration.addsToRecentItems = configuration.addsToRecentItems;
        [[NSWorkspace sharedWorkspace]
            openApplicationAtURL:foundationURL(url)
                   configuration:openConfiguration
               completionHandler:^(NSRunningApplication*, NSError* error) {
                   @autoreleasepool {
                       contain([&] { completion(launchError(error)); });
                   }
               }];
    } @catch (NSException* exception) {
        completion(platformError(exception));
    }
}
