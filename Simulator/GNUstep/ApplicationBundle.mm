#import "Simulator/GNUstep/ApplicationBundle.h"

#import "Cocoa/ObjectHolder.h"

NSDictionary* simulator::infoDictionaryOfBundle(NSString* path) {
    NSString* infoPath = [path stringByAppendingPathComponent:@"Contents/Info.plist"];
    NSError* error = nil;
    NSData* data = [NSData dataWithContentsOfFile:infoPath];
    id info = data == nil ? nil
                          : [NSPropertyListSerialization propertyListWithData:data
                                                                      options:0
                                                                       format:nullptr
                                                                        error:&error];
    return [info isKindOfClass:[NSDictionary class]] ? info : nil;
}

NSString* simulator::bundlePathOfExecutable(NSString* executablePath) {
    NSString* folder = executablePath.stringByDeletingLastPathComponent;
    return [folder hasSuffix:@"/Contents/MacOS"]
               ? folder.stringByDeletingLastPathComponent.stringByDeletingLastPathComponent
               : nil;
}

NSString* simulator::ownBundlePath() {
    static const quorva::ObjectHolder<NSString> path(bundlePathOfExecutable(
        [[NSFileManager defaultManager] pathContentOfSymbolicLinkAtPath:@"/proc/self/exe"]));
    return path.get();
}

NSString* simulator::executablePathOfBundle(NSString* path) {
    NSString* name = [infoDictionaryOfBundle(path) objectForKey:@"CFBundleExecutable"];
    if (![name isKindOfClass:[NSString class]] || name.length == 0) {
        return nil;
    }
    NSString* executable = [[path stringByAppendingPathComponent:@"Contents/MacOS"]
        stringByAppendingPathComponent:name];
    BOOL isDirectory = NO;
    NSFileManager* fileManager = [NSFileManager defaultManager];
    return [fileManager fileExistsAtPath:executable isDirectory:&isDirectory] && !isDirectory &&
                   [fileManager isExecutableFileAtPath:executable]
               ? executable
               : nil;
}
