#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "Benchmarks/Main.hpp"
#include "Benchmarks/Settings.hpp"
#include "QuorvaFinderExtension/FinderExtension.hpp"
#include "QuorvaFinderExtension/FinderSyncMenus.hpp"
#include "QuorvaFinderExtension/FinderViewPresetSettings.hpp"
#include "QuorvaFinderExtension/MenuItemResolution.hpp"
#include "QuorvaFinderExtension/MenuTransfer.hpp"
#include "QuorvaFinderExtension/SettingsReading.hpp"
#include "Tests/FakePlatform/FakePlatform.hpp"

// The core alone, on the platform in memory: what the extension itself costs, and how that grows
// with the settings.

namespace {

struct Allocations {
    std::size_t count = 0;
    std::size_t bytes = 0;
};

/// What was allocated since the start of the process.
Allocations allocated;

}  // namespace

void* operator new(std::size_t size) {
    ++allocated.count;
    allocated.bytes += size;
    if (void* const memory = std::malloc(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

using quorva::FileURL;
using quorva::FinderFeature;
using quorva::PropertyList;

/// A machine with these settings.
void setUp(const benchmarks::SettingsFiles& files) {
    fakePlatform::reset();
    fakePlatform::State& state = fakePlatform::state();
    for (const auto& [name, content] : files) {
        state.putPropertyList("/Users/ada/Library/Application Support/Quorva/" + name, content);
    }
    state.selectedItemURLs = {FileURL::file("/Users/ada/Documents/file")};
    state.targetedURL = FileURL::directory("/Users/ada/Documents");
}

/// What happened is forgotten between the rounds, so that every round finds the same machine.
void forgetHistory() {
    fakePlatform::State& state = fakePlatform::state();
    state.journal.clear();
    state.consoleLines.clear();
    state.unifiedLog.clear();
    state.entries.erase("/tmp/quorva-finder-extension.log");
    state.entries.erase("/Users/ada/Library/Application Support/Quorva/FinderExtension.log");
}

/// Runs `work` as often as `benchmark` wants, and counts what one round allocates.
template <typename Work>
void measure(benchmark::State& benchmark, Work work) {
    Allocations before;
    for ([[maybe_unused]] auto round : benchmark) {
        before = allocated;
        benchmark::DoNotOptimize(work());
        benchmark.PauseTiming();
        benchmark.counters["allocations"] = static_cast<double>(allocated.count - before.count);
        benchmark.counters["bytes"] = static_cast<double>(allocated.bytes - before.bytes);
        forgetHistory();
        benchmark.ResumeTiming();
    }
}

std::size_t itemCount(const quorva::Menu& menu) {
    return std::accumulate(menu.items.begin(), menu.items.end(), menu.items.size(),
                           [](std::size_t count, const quorva::MenuItem& item) {
                               return count + (item.submenu ? itemCount(*item.submenu) : 0);
                           });
}

void menu(benchmark::State& benchmark, const std::string& layout) {
    setUp(benchmarks::settingsFiles(benchmark.range(0), layout));
    quorva::FinderExtension extension;
    benchmark.counters["items"] =
        static_cast<double>(itemCount(extension.menu(quorva::MenuKind::contextualMenuForItems)));
    measure(benchmark, [&] { return &extension.menu(quorva::MenuKind::contextualMenuForItems); });
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgName("entries")->RangeMultiplier(10)->Range(10, 100000);
}
BENCHMARK_CAPTURE(menu, collapsed, "collapsed")->Arg(0)->Apply(sizes);
BENCHMARK_CAPTURE(menu, expanded, "expanded")->Arg(0)->Apply(sizes);

/// `count` identifiers, of commands of the catalogue and of ones that are no longer in it.
PropertyList identifiers(std::int64_t count) {
    std::vector<std::string> known;
    for (const FinderFeature feature : quorva::allFinderFeatures) {
        known.emplace_back(rawValue(feature));
        for (const std::string_view id : childIDs(feature)) {
            known.emplace_back(id);
        }
    }
    PropertyList::Array identifiers;
    for (std::int64_t index = 0; index < count; ++index) {
        const auto position = static_cast<std::size_t>(index);
        identifiers.emplace_back(index % 2 == 0 ? known[position / 2 % known.size()]
                                                : "former" + std::to_string(index));
    }
    return identifiers;
}

/// Reads feature settings that hold `count` identifiers wherever they hold any.
void orderAndEnabledSet(benchmark::State& benchmark) {
    const PropertyList ids = identifiers(benchmark.range(0));
    PropertyList::Dictionary order;
    for (const FinderFeature feature : quorva::allFinderFeatures) {
        order.emplace(rawValue(feature), ids);
    }
    setUp({{"FeatureSettings.plist", PropertyList::Dictionary{{"featureOrder", ids},
                                                              {"enabledFeatureIDs", ids},
                                                              {"enabledChildIDs", ids},
                                                              {"childOrderByFeatureID", order}}}});
    measure(benchmark, [] { return quorva::FinderFeatureSettings::menuSettings(); });
}
BENCHMARK(orderAndEnabledSet)->Apply(sizes);

/// Merges the user's applications with the built-in ones.
void merging(benchmark::State& benchmark) {
    setUp(
        {{"CustomDestinations.plist",
          PropertyList::Dictionary{
              {"openApplication", benchmarks::destinations("Application", benchmark.range(0))}}}});
    measure(benchmark, [] {
        return quorva::FinderCustomDestinationSettings::destinations(
            quorva::FinderCustomDestinationKind::openApplication);
    });
}
BENCHMARK(merging)->Apply(sizes);

/// Gives entries that all have one title tags of their own.
void tellingApart(benchmark::State& benchmark) {
    PropertyList::Array entries;
    for (std::int64_t index = 0; index < benchmark.range(0); ++index) {
        entries.emplace_back(PropertyList::Dictionary{
            {"id", "a"}, {"name", "Project"}, {"path", "/Volumes/" + std::to_string(index)}});
    }
    setUp({{"CustomDestinations.plist", PropertyList::Dictionary{{"copy", std::move(entries)}}}});
    const quorva::MenuRequest request = {
        quorva::MenuKind::contextualMenuForItems, {}, std::nullopt, {}};
    quorva::Menu menu = quorva::assembledMenu(request);
    measure(benchmark, [&] {
        quorva::tagAmbiguousItems(menu, request.settings);
        return &menu;
    });
}
BENCHMARK(tellingApart)->Apply(sizes);

/// Finds the last entry of all by its title, from the settings to the context.
void titleLookup(benchmark::State& benchmark) {
    setUp(benchmarks::settingsFiles(benchmark.range(0), "collapsed"));
    const std::string title = "View " + std::to_string(benchmark.range(0) - 1);
    measure(benchmark,
            [&] { return quorva::actionContextFromMenuTitle(title, quorva::SettingsReading()); });
}
BENCHMARK(titleLookup)->Apply(sizes);

/// Cleans up a preset's name of so many bytes and a number behind them.
void presetName(benchmark::State& benchmark) {
    std::string name;
    while (std::cmp_less(name.size(), benchmark.range(0))) {
        name += "列表 · 1 ";
    }
    name += "1";
    setUp({{"FinderViewPresets.plist",
            PropertyList::Array{PropertyList::Dictionary{
                {"id", "x"}, {"name", name}, {"viewMode", "list"}, {"sortMode", "name"}}}}});
    measure(benchmark, [] { return quorva::FinderViewPresetSettings::presets(); });
}
BENCHMARK(presetName)->Apply(sizes);

}  // namespace

int main(int argumentCount, char** arguments) {
    benchmarks::initialize(argumentCount, arguments);
    benchmark::RunSpecifiedBenchmarks();
}
