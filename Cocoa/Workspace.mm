#include "Platform/Workspace.hpp"

#import <AppKit/AppKit.h>

#import "Cocoa/ErrorConversion.h"
#import "Cocoa/SystemEntry.h"
#import "Cocoa/URLConversion.h"

void quorva::platform::openApplication(
    const FileURL& url, const OpenConfiguration& configuration,
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
                   enterFromSystem("completion of the launch", [&] {
                       completion(error == nil ? std::nullopt
                                               : std::optional(platformError(error)));
                   });
               }];
    } @catch (NSException* exception) {
        completion(platformError(exception));
    }
}
