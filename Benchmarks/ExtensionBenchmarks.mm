#import <AppKit/AppKit.h>
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#import "Benchmarks/Floor.h"
#include "Benchmarks/Main.hpp"
#include "Benchmarks/Settings.hpp"
#import "Cocoa/FinderSync.h"
#import "Cocoa/PropertyListConversion.h"
#import "Cocoa/StringConversion.h"
#import "Simulator/EventRecorder.hpp"
#import "Simulator/FinderSync/FinderSync/FIFinderSyncController+Simulator.h"

// What Finder waits for, through the principal class and with the settings on disk, and beside it
// the floor. scripts/benchmark provides the machine: an empty home folder, a display, and a
// containing application that runs.

namespace {

namespace fs = std::filesystem;

NSArray<NSURL*>* selection(std::int64_t count) {
    NSMutableArray<NSURL*>* urls = [NSMutableArray array];
    for (std::int64_t index = 0; index < count; ++index) {
        const std::string path = "/Users/ada/Documents/file " + std::to_string(index);
        [urls addObject:[NSURL fileURLWithPath:quorva::foundationString(path) isDirectory:NO]];
    }
    return urls;
}

void writeSettings(std::int64_t entryCount) {
    const fs::path folder = benchmarks::settingsFolder();
    fs::remove_all(folder);
    fs::create_directories(folder);
    fs::remove("/tmp/quorva-finder-extension.log");
    for (const auto& [name, content] : benchmarks::settingsFiles(entryCount, "collapsed")) {
        NSError* error = nil;
        [[NSPropertyListSerialization
            dataWithPropertyList:quorva::FoundationObjectConverter().object(content)
                          format:NSPropertyListXMLFormat_v1_0
                         options:0
                           error:&error]
            writeToFile:quorva::foundationString((folder / name).string())
             atomically:NO];
    }
}

/// One machine with its extension and the floor of that extension's menu and clicks.
class Machine {
   public:
    Machine(std::int64_t entryCount, std::int64_t selectedCount) {
        writeSettings(entryCount);
        finderSync_ = [[FinderSync alloc] init];
        controller_ = [FIFinderSyncController defaultController];
        [controller_ beginWithSelectedItemURLs:selection(selectedCount)
                                   targetedURL:[NSURL fileURLWithPath:@"/Users/ada/Documents"
                                                          isDirectory:YES]];
        sender_ = [[NSMenuItem alloc] initWithTitle:quorva::foundationString("压缩为 ZIP")
                                             action:@selector(performFeatureChild:)
                                      keyEquivalent:@""];
        const std::vector<std::string> atStart = benchmarks::loggedMessages();
        const quorva::Menu menu = extension_.menu(quorva::MenuKind::contextualMenuForItems);
        const std::vector<std::string> afterMenu = benchmarks::loggedMessages();
        [finderSync_ performFeatureChild:sender_];
        const std::vector<std::string> afterClick = benchmarks::loggedMessages();
        const auto since = [](const auto& after, const auto& before) {
            return std::vector(after.begin() + static_cast<std::ptrdiff_t>(before.size()),
                               after.end());
        };
        floor_ = std::make_unique<benchmarks::Floor>(menu, since(afterMenu, atStart),
                                                     since(afterClick, afterMenu));
        // The first menu of a process takes the frameworks much longer.
        [finderSync_ menuForMenuKind:FIMenuKindContextualMenuForItems];
    }

    ~Machine() {
        [controller_ end];
        [sender_ release];
        [finderSync_ release];
    }

    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    quorva::FinderExtension& extension() { return extension_; }
    benchmarks::Floor& floor() { return *floor_; }
    FinderSync* finderSync() { return finderSync_; }
    NSMenuItem* sender() { return sender_; }

   private:
    quorva::FinderExtension extension_;
    std::unique_ptr<benchmarks::Floor> floor_;
    FinderSync* finderSync_;
    FIFinderSyncController* controller_;
    NSMenuItem* sender_;
};

/// Runs `work` as often as `benchmark` wants. What the simulator notes of it is let go of, and the
/// notifications that the process hears of itself are delivered, outside the time.
template <typename Work>
void measure(benchmark::State& benchmark, Work work) {
    @autoreleasepool {
        Machine machine(benchmark.range(0), 1);
        for ([[maybe_unused]] auto round : benchmark) {
            @autoreleasepool {
                work(machine);
            }
            benchmark.PauseTiming();
            simulator::takeRecordedEvents();
            @autoreleasepool {
                [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode beforeDate:[NSDate date]];
            }
            benchmark.ResumeTiming();
        }
    }
}

void menuValue(benchmark::State& benchmark) {
    measure(benchmark, [](Machine& machine) {
        benchmark::DoNotOptimize(
            machine.extension().menu(quorva::MenuKind::contextualMenuForItems));
    });
}

void menuValueFloor(benchmark::State& benchmark) {
    measure(benchmark, [](Machine& machine) { machine.floor().prepareMenu(); });
}

void menuRequest(benchmark::State& benchmark) {
    measure(benchmark, [](Machine& machine) {
        benchmark::DoNotOptimize(
            [machine.finderSync() menuForMenuKind:FIMenuKindContextualMenuForItems]);
    });
}

void menuRequestFloor(benchmark::State& benchmark) {
    measure(benchmark, [](Machine& machine) {
        benchmark::DoNotOptimize(machine.floor().menu(machine.finderSync()));
    });
}

void click(benchmark::State& benchmark) {
    measure(benchmark,
            [](Machine& machine) { [machine.finderSync() performFeatureChild:machine.sender()]; });
}

void clickFloor(benchmark::State& benchmark) {
    measure(benchmark, [](Machine& machine) { machine.floor().click(); });
}

void entryCounts(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("entries")->Arg(0)->Arg(10)->Arg(1000);
}
BENCHMARK(menuValue)->Apply(entryCounts);
BENCHMARK(menuValueFloor)->Apply(entryCounts);
BENCHMARK(menuRequest)->Apply(entryCounts);
BENCHMARK(menuRequestFloor)->Apply(entryCounts);
BENCHMARK(click)->Apply(entryCounts);
BENCHMARK(clickFloor)->Apply(entryCounts);

void refreshMonitoredFolders(benchmark::State& benchmark) {
    @autoreleasepool {
        writeSettings(0);
        const fs::path home = std::getenv("HOME");
        for (std::int64_t index = 0; index < benchmark.range(0); ++index) {
            fs::create_directories(home / ("folder " + std::to_string(index)));
        }
        const quorva::FinderExtension extension;
        for ([[maybe_unused]] auto round : benchmark) {
            @autoreleasepool {
                extension.start();
            }
            benchmark.PauseTiming();
            simulator::takeRecordedEvents();
            benchmark.ResumeTiming();
        }
        for (const auto& entry : fs::directory_iterator(home)) {
            if (entry.path().filename() != "Library") {
                fs::remove(entry);
            }
        }
    }
}
BENCHMARK(refreshMonitoredFolders)->ArgName("folders")->Arg(10)->Arg(1000)->Arg(10000);

}  // namespace

int main(int argumentCount, char** arguments) {
    @autoreleasepool {
        benchmarks::initialize(argumentCount, arguments);
        [NSApplication sharedApplication];
        benchmark::RunSpecifiedBenchmarks();
    }
    return EXIT_SUCCESS;
}
