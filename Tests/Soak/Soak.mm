#import <AppKit/AppKit.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#import "Benchmarks/Floor.h"
#import "Cocoa/FinderSync.h"
#import "Cocoa/StringConversion.h"
#include "Simulator/EventRecorder.hpp"
#import "Simulator/FinderSync/FinderSync/FIFinderSyncController+Simulator.h"

// Many menu requests and clicks in one process, through the principal class. Fails when memory or
// descriptors grow with them, or when a line of a log or a record is missing or too many.

namespace {

namespace fs = std::filesystem;

struct Counts {
    std::size_t temporaryLogLines;
    std::size_t logLines;
    std::size_t records;
    std::size_t descriptors;

    friend bool operator==(const Counts&, const Counts&) = default;
};

std::size_t entryCount(const fs::path& folder) {
    std::error_code none;
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder, none), fs::directory_iterator()));
}

std::size_t lineCount(const fs::path& file) {
    std::ifstream stream(file);
    return static_cast<std::size_t>(std::count(std::istreambuf_iterator<char>(stream), {}, '\n'));
}

Counts counts() {
    const fs::path folder = benchmarks::settingsFolder();
    return {lineCount("/tmp/quorva-finder-extension.log"),
            lineCount(folder / "FinderExtension.log"), entryCount(folder / "ActionQueue"),
            entryCount("/proc/self/fd")};
}

/// `count` times what `round` added to `before`.
Counts expected(const Counts& before, const Counts& round, std::size_t count) {
    const auto after = [count](std::size_t from, std::size_t to) {
        return from + count * (to - from);
    };
    return {after(before.temporaryLogLines, round.temporaryLogLines),
            after(before.logLines, round.logLines), after(before.records, round.records),
            round.descriptors};
}

/// In bytes.
struct Memory {
    double resident;
    /// What was allocated and not freed.
    double inUse;
};

Memory memory() {
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages;
    return {static_cast<double>(pages) * 4096, static_cast<double>(mallinfo2().uordblks)};
}

/// The slope of the resident memory over `values`, which are equally far apart, by least squares.
double residentSlope(const std::vector<Memory>& values) {
    const double mean = (static_cast<double>(values.size()) - 1) / 2;
    double covariance = 0;
    double variance = 0;
    for (std::size_t index = 0; index < values.size(); ++index) {
        const double distance = static_cast<double>(index) - mean;
        covariance += distance * values[index].resident;
        variance += distance * distance;
    }
    return covariance / variance;
}

/// The median of what was allocated from one of `values` to the next: what leaks is in each of
/// these steps, what a table takes when it grows in a few of them.
double medianStep(const std::vector<Memory>& values) {
    std::vector<double> steps;
    for (std::size_t index = 1; index < values.size(); ++index) {
        steps.push_back(values[index].inUse - values[index - 1].inUse);
    }
    std::ranges::sort(steps);
    return steps[steps.size() / 2];
}

bool isTerminal() {
    return isatty(STDOUT_FILENO) != 0;
}

/// How far it is, for whoever watches. Each takes the place of the last one.
void showProgress(const char* what, std::size_t done, std::size_t total) {
    if (isTerminal()) {
        std::printf("\r%s: %zu of %zu\033[K", what, done, total);
        std::fflush(stdout);
    }
}

/// Runs `round` `count` times, a fifth of it before memory is watched. Returns whether nothing grew
/// but what each round adds: `recordCount` records, and lines.
template <typename Round>
bool soak(const char* what, std::size_t count, std::size_t recordCount, Round round) {
    constexpr std::size_t sampleCount = 40;
    const auto run = [&round] {
        @autoreleasepool {
            round();
            simulator::waitForLaunches(20);
            simulator::takeRecordedEvents();
            // The process hears of its own notifications.
            [[NSRunLoop currentRunLoop] runMode:NSDefaultRunLoopMode beforeDate:[NSDate date]];
        }
    };
    run();
    const Counts before = counts();
    run();
    const Counts afterOne = counts();
    const std::size_t total = 1 + count / 5 + count;
    showProgress(what, 1, total);
    for (std::size_t index = 0; index < count / 5; ++index) {
        run();
    }
    std::vector<Memory> samples;
    std::size_t done = 0;
    while (done < count) {
        showProgress(what, total - count + done, total);
        const std::size_t next = count * (samples.size() + 1) / sampleCount;
        for (; done < next; ++done) {
            run();
        }
        samples.push_back(memory());
    }
    const Counts after = counts();
    const Counts wanted = expected(before, afterOne, total);
    const double rounds = static_cast<double>(count) / sampleCount;
    const double inUse = medianStep(samples) / rounds;
    std::printf("%s%s: %zu\n", isTerminal() ? "\r\033[K" : "", what, total);
    std::printf("  allocated memory: %+.1f bytes each\n", inUse);
    std::printf("  resident memory: %+.2f KiB per 1,000, %.1f MiB at the end\n",
                residentSlope(samples) / rounds * 1000 / 1024,
                samples.back().resident / 1024 / 1024);
    std::printf("  open descriptors: %zu, %zu at the start\n", after.descriptors,
                afterOne.descriptors);
    std::printf(
        "  lines of the two logs: %zu and %zu, of which %zu and %zu were expected\n",
        after.temporaryLogLines - before.temporaryLogLines, after.logLines - before.logLines,
        wanted.temporaryLogLines - before.temporaryLogLines, wanted.logLines - before.logLines);
    std::printf("  records: %zu, of which %zu were expected\n", after.records - before.records,
                wanted.records - before.records);
    // Of few rounds the frameworks' own caches are the larger part.
    const double limit = count < 10'000 ? 1024 : 16;
    return afterOne.records == before.records + recordCount &&
           afterOne.logLines > before.logLines && after == wanted && inUse < limit;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    const bool isFloor = argumentCount == 4 && std::string_view(arguments[3]) == "--floor";
    char folder[] = "/tmp/quorva-soak-XXXXXX";
    if ((argumentCount != 3 && !isFloor) || mkdtemp(folder) == nullptr ||
        setenv("HOME", folder, 1) != 0) {
        std::fprintf(stderr, "usage: QuorvaSoak MENUS CLICKS [--floor]\n");
        return EXIT_FAILURE;
    }
    // Every message of the extension goes to the console, which nobody reads here.
    if (std::freopen("/dev/null", "w", stderr) == nullptr) {
        return EXIT_FAILURE;
    }
    bool isFlat = false;
    @autoreleasepool {
        [NSApplication sharedApplication];
        FIFinderSyncController* const controller = [FIFinderSyncController defaultController];
        [controller
            beginWithSelectedItemURLs:@[ [NSURL fileURLWithPath:@"/Users/ada/a" isDirectory:NO] ]
                          targetedURL:[NSURL fileURLWithPath:@"/Users/ada" isDirectory:YES]];
        FinderSync* const finderSync = [[FinderSync alloc] init];
        NSMenuItem* const sender =
            [[NSMenuItem alloc] initWithTitle:quorva::foundationString("压缩为 ZIP")
                                       action:@selector(performFeatureChild:)
                                keyEquivalent:@""];
        const auto menus = static_cast<std::size_t>(std::atoll(arguments[1]));
        const auto clicks = static_cast<std::size_t>(std::atoll(arguments[2]));
        if (isFloor) {
            quorva::FinderExtension extension;
            benchmarks::Floor floor(extension.menu(quorva::MenuKind::contextualMenuForItems),
                                    std::vector<std::string>(6, "line"),
                                    std::vector<std::string>(3, "line"));
            isFlat = soak("menus of the floor", menus, 0, [&] { [floor.menu(finderSync) self]; }) &&
                     soak("clicks of the floor", clicks, 1, [&] { floor.click(); });
        } else {
            isFlat = soak("menu requests", menus, 0,
                          [&] { [finderSync menuForMenuKind:FIMenuKindContextualMenuForItems]; }) &&
                     soak("clicks", clicks, 1, [&] { [finderSync performFeatureChild:sender]; });
        }
        [sender release];
        [finderSync release];
    }
    fs::remove_all(folder);
    return isFlat ? EXIT_SUCCESS : EXIT_FAILURE;
}
