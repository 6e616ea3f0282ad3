#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "Platform/PropertyList.hpp"
#include "QuorvaFinderExtension/FinderExtension.hpp"
#include "QuorvaFinderExtension/FinderViewPresetSettings.hpp"
#include "Tests/FakePlatform/FakePlatform.hpp"

namespace {

using quorva::FileURL;
using quorva::PropertyList;

const std::string settingsFolder = "/Users/ada/Library/Application Support/Quorva/";

PropertyList entries(const std::string& prefix, std::int64_t count) {
    PropertyList::Array entries;
    for (std::int64_t index = 0; index < count; ++index) {
        const std::string name = prefix + std::to_string(index);
        entries.emplace_back(PropertyList::Dictionary{
            {"id", name}, {"name", name}, {"path", "/Volumes/Archive/" + name}});
    }
    return entries;
}

/// A machine with `destinations` destinations of each kind and `selected` selected items.
void setUp(const std::string& layout, std::int64_t destinations, std::int64_t selected) {
    fakePlatform::State& state = fakePlatform::state();
    state = fakePlatform::State();
    state.putPropertyList(settingsFolder + "FeatureSettings.plist",
                          PropertyList::Dictionary{{"menuLayout", layout}});
    state.putPropertyList(settingsFolder + "CustomDestinations.plist",
                          PropertyList::Dictionary{
                              {"copy", entries("copy", destinations)},
                              {"move", entries("move", destinations)},
                              {"quickOpen", entries("open", destinations)},
                              {"openApplication", entries("application", destinations)},
                          });
    std::vector<FileURL> selection;
    selection.reserve(static_cast<std::size_t>(selected));
    for (std::int64_t index = 0; index < selected; ++index) {
        selection.push_back(FileURL::file("/Users/ada/Documents/file " + std::to_string(index)));
    }
    state.selectedItemURLs = std::move(selection);
    state.targetedURL = FileURL::directory("/Users/ada/Documents");
}

/// What happened is forgotten between the rounds, so that every round finds the same machine.
void forgetHistory() {
    fakePlatform::State& state = fakePlatform::state();
    state.journal.clear();
    state.consoleLines.clear();
    state.unifiedLog.clear();
    state.entries.erase("/tmp/quorva-finder-extension.log");
    state.entries.erase(settingsFolder + "FinderExtension.log");
}

void requestMenu(benchmark::State& benchmark, const std::string& layout) {
    setUp(layout, benchmark.range(0), benchmark.range(1));
    quorva::FinderExtension extension;
    for ([[maybe_unused]] auto round : benchmark) {
        benchmark::DoNotOptimize(extension.menu(quorva::MenuKind::contextualMenuForItems));
        benchmark.PauseTiming();
        forgetHistory();
        benchmark.ResumeTiming();
    }
}

void collapsedMenu(benchmark::State& benchmark) {
    requestMenu(benchmark, "collapsed");
}
void expandedMenu(benchmark::State& benchmark) {
    requestMenu(benchmark, "expanded");
}
BENCHMARK(collapsedMenu)
    ->ArgNames({"destinations", "selected"})
    ->ArgsProduct({{5, 100}, {1, 10000}});
BENCHMARK(expandedMenu)
    ->ArgNames({"destinations", "selected"})
    ->ArgsProduct({{5, 100}, {1, 10000}});

void click(benchmark::State& benchmark) {
    setUp("collapsed", 5, benchmark.range(0));
    const quorva::FinderExtension extension;
    quorva::MenuItem sender;
    sender.title = "压缩为 ZIP";
    for ([[maybe_unused]] auto round : benchmark) {
        extension.performFeatureChild(sender);
        benchmark.PauseTiming();
        setUp("collapsed", 5, benchmark.range(0));
        benchmark.ResumeTiming();
    }
}
BENCHMARK(click)->ArgName("selected")->Arg(1)->Arg(10000);

/// The clean-up of preset names must stay linear: as many bytes a second whatever the length.
void presetNames(benchmark::State& benchmark) {
    fakePlatform::state() = fakePlatform::State();
    std::string name;
    while (std::cmp_less(name.size(), benchmark.range(0))) {
        name += "列表 · 1 ";
    }
    fakePlatform::state().putPropertyList(
        settingsFolder + "FinderViewPresets.plist",
        PropertyList::Array{PropertyList::Dictionary{
            {"id", "x"}, {"name", name}, {"viewMode", "list"}, {"sortMode", "name"}}});
    for ([[maybe_unused]] auto round : benchmark) {
        benchmark::DoNotOptimize(quorva::FinderViewPresetSettings::presets());
    }
    benchmark.SetBytesProcessed(benchmark.iterations() * static_cast<std::int64_t>(name.size()));
}
BENCHMARK(presetNames)->ArgName("bytes")->RangeMultiplier(4)->Range(1 << 12, 1 << 20);

}  // namespace
