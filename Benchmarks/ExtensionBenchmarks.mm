#import <AppKit/AppKit.h>
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#import "Cocoa/FinderSync.h"
#import "Cocoa/StringConversion.h"
#import "Simulator/FinderSync/FinderSync/FIFinderSyncController+Simulator.h"

// What Finder waits for: a menu request and a click, through the principal class, with the settings
// on disk. `menuValue` is the menu before it is rendered: the extension's own share. The rest of
// `menuRequest` is GNUstep's, which lays out and measures every item as it is added.

namespace {

namespace fs = std::filesystem;

/// A home folder of its own for this process.
fs::path home() {
    static const fs::path path = [] {
        const fs::path folder = fs::temp_directory_path() / "quorva-benchmarks";
        fs::remove_all(folder);
        fs::create_directories(folder / "Library/Application Support/Quorva");
        ::setenv("HOME", folder.c_str(), 1);
        return folder;
    }();
    return path;
}

NSDictionary* destinations(std::int64_t count) {
    NSMutableArray* entries = [NSMutableArray array];
    for (std::int64_t index = 0; index < count; ++index) {
        NSString* name = quorva::foundationString("folder " + std::to_string(index));
        [entries addObject:[NSDictionary dictionaryWithObjectsAndKeys:name, @"id", name, @"name",
                                                                      name, @"path", nil]];
    }
    return [NSDictionary dictionaryWithObjectsAndKeys:entries, @"copy", entries, @"move", entries,
                                                      @"quickOpen", nil];
}

NSArray<NSURL*>* selection(std::int64_t count) {
    NSMutableArray<NSURL*>* urls = [NSMutableArray array];
    for (std::int64_t index = 0; index < count; ++index) {
        [urls addObject:[NSURL fileURLWithPath:quorva::foundationString("/Users/ada/file " +
                                                                        std::to_string(index))
                                   isDirectory:NO]];
    }
    return urls;
}

void setUp(std::int64_t destinationCount) {
    const fs::path folder = home() / "Library/Application Support/Quorva";
    fs::remove(folder / "FinderExtension.log");
    fs::remove_all(folder / "ActionQueue");
    [destinations(destinationCount)
        writeToFile:quorva::foundationString((folder / "CustomDestinations.plist").string())
         atomically:NO];
}

void menuValue(benchmark::State& benchmark) {
    @autoreleasepool {
        setUp(benchmark.range(0));
        quorva::FinderExtension extension;
        FIFinderSyncController* controller = [FIFinderSyncController defaultController];
        [controller beginWithSelectedItemURLs:selection(benchmark.range(1)) targetedURL:nil];
        for ([[maybe_unused]] auto round : benchmark) {
            @autoreleasepool {
                benchmark::DoNotOptimize(extension.menu(quorva::MenuKind::contextualMenuForItems));
            }
        }
        [controller end];
    }
}
BENCHMARK(menuValue)
    ->ArgNames({"destinations", "selected"})
    ->ArgsProduct({{0, 10, 1000}, {1, 10000}})
    ->Unit(benchmark::kMillisecond);

void menuRequest(benchmark::State& benchmark) {
    @autoreleasepool {
        setUp(benchmark.range(0));
        FinderSync* finderSync = [[FinderSync alloc] init];
        FIFinderSyncController* controller = [FIFinderSyncController defaultController];
        [controller beginWithSelectedItemURLs:selection(benchmark.range(1)) targetedURL:nil];
        for ([[maybe_unused]] auto round : benchmark) {
            @autoreleasepool {
                benchmark::DoNotOptimize(
                    [finderSync menuForMenuKind:FIMenuKindContextualMenuForItems]);
            }
        }
        [controller end];
        [finderSync release];
    }
}
BENCHMARK(menuRequest)
    ->ArgNames({"destinations", "selected"})
    ->ArgsProduct({{0, 10, 1000}, {1, 10000}})
    ->Unit(benchmark::kMillisecond);

void click(benchmark::State& benchmark) {
    @autoreleasepool {
        setUp(0);
        FinderSync* finderSync = [[FinderSync alloc] init];
        FIFinderSyncController* controller = [FIFinderSyncController defaultController];
        [controller beginWithSelectedItemURLs:selection(benchmark.range(0)) targetedURL:nil];
        NSMenuItem* sender =
            [[[NSMenuItem alloc] initWithTitle:quorva::foundationString("压缩为 ZIP")
                                        action:@selector(performFeatureChild:)
                                 keyEquivalent:@""] autorelease];
        for ([[maybe_unused]] auto round : benchmark) {
            @autoreleasepool {
                [finderSync performFeatureChild:sender];
            }
        }
        [controller end];
        [finderSync release];
    }
}
BENCHMARK(click)->ArgName("selected")->Arg(1)->Arg(10000)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argumentCount, char** arguments) {
    @autoreleasepool {
        home();
        [NSApplication sharedApplication];
        benchmark::Initialize(&argumentCount, arguments);
        if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments)) {
            return EXIT_FAILURE;
        }
        // Every message of the extension goes to the console, which is not what is measured here.
        if (std::freopen("/dev/null", "w", stderr) == nullptr) {
            return EXIT_FAILURE;
        }
        benchmark::RunSpecifiedBenchmarks();
        fs::remove_all(home());
    }
    return EXIT_SUCCESS;
}
