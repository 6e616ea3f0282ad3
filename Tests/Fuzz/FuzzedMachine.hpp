#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <source_location>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/PropertyList.hpp"
#include "QuorvaFinderExtension/FinderFeature.hpp"
#include "Tests/FakePlatform/FakePlatform.hpp"

/// What the fuzz targets share: values made of the fuzzer's bytes, and settings files that hold
/// them on a new machine.
namespace quorva {

/// Ends the process, which is a finding, unless `holds`.
inline void require(bool holds, const char* promise,
                    std::source_location location = std::source_location::current()) {
    if (!holds) {
        std::fprintf(stderr, "%s:%u: broken: %s\n", location.file_name(),
                     static_cast<unsigned>(location.line()), promise);
        std::abort();
    }
}

/// Whether what `projection` makes of an element of `range` is `value`.
template <typename Range, typename Value, typename Projection = std::identity>
bool contains(const Range& range, const Value& value, Projection projection = {}) {
    return std::ranges::find(range, value, projection) != std::ranges::end(range);
}

/// Whether JSON has a form for `text`: the reader's view of what is UTF-8.
inline bool isText(const std::string& text) {
    try {
        static_cast<void>(nlohmann::json(text).dump());
        return true;
    } catch (const nlohmann::json::exception&) {
        return false;
    }
}

inline const std::string settingsFolder = "/Users/ada/Library/Application Support/Quorva";

/// The fuzzer's bytes as values. Many strings are words that mean something, so that what is made
/// of them gets past the first check.
class FuzzedValues {
 public:
    FuzzedValues(const std::uint8_t* data, std::size_t size) : provider_(data, size) {}

    bool chance() { return provider_.ConsumeBool(); }

    std::size_t number(std::size_t last) {
        return provider_.ConsumeIntegralInRange<std::size_t>(0, last);
    }

    std::int64_t integer() { return provider_.ConsumeIntegral<std::int64_t>(); }

    std::string text() { return provider_.ConsumeRandomLengthString(); }

    std::string rest() { return provider_.ConsumeRemainingBytesAsString(); }

    /// One of `words` or, seldom, any text.
    std::string word(std::span<const std::string_view> words) {
        const std::size_t index = number(words.size() + words.size() / 8);
        return index < words.size() ? std::string(words[index]) : text();
    }

    /// The name of a feature or, seldom, another identifier.
    std::string featureID() {
        const std::size_t index = number(allFinderFeatures.size());
        return index < allFinderFeatures.size() ? std::string(rawValue(allFinderFeatures[index]))
                                                : identifier();
    }

    /// What a settings file may hold where an identifier stands.
    std::string identifier() {
        static const std::vector<std::string_view> words = [] {
            std::vector<std::string_view> all = {"",
                                                 "a",
                                                 "b",
                                                 "unknown",
                                                 "vscode",
                                                 "cursor",
                                                 "preview",
                                                 "collapsed",
                                                 "expanded",
                                                 "copy",
                                                 "move",
                                                 "openApplication",
                                                 "copyFilesToFolder",
                                                 "moveFilesToFolder"};
            for (const FinderFeature feature : allFinderFeatures) {
                const std::vector<std::string_view> ids = childIDs(feature);
                all.insert(all.end(), ids.begin(), ids.end());
            }
            return all;
        }();
        return word(words);
    }

    /// Any value, seldom deep.
    PropertyList value(int depth = 0) {
        switch (number(depth < 4 ? 8 : 6)) {
            case 0:
                return identifier();
            case 1:
                return chance();
            case 2:
                return integer();
            case 3:
                return provider_.ConsumeFloatingPoint<double>();
            case 4:
                return PropertyList::Date{provider_.ConsumeFloatingPoint<double>()};
            case 5:
                return dataWithText(text());
            case 6:
                return PropertyList::Unsupported{};
            case 7:
                return array([&] { return value(depth + 1); });
            default: {
                PropertyList::Dictionary dictionary;
                for (std::size_t count = number(4); count > 0; --count) {
                    dictionary.insert_or_assign(identifier(), value(depth + 1));
                }
                return dictionary;
            }
        }
    }

    /// What `make` makes or, seldom, any value.
    template <typename Make>
    PropertyList mostly(Make make) {
        return number(63) == 63 ? value() : PropertyList(make());
    }

    template <typename Make>
    PropertyList::Array array(Make make, std::size_t longest = 6) {
        PropertyList::Array values;
        for (std::size_t count = number(longest); count > 0; --count) {
            values.push_back(make());
        }
        return values;
    }

    template <typename MakeID>
    PropertyList identifiers(MakeID makeID, std::size_t longest = 24) {
        return array([&] { return mostly(makeID); }, longest);
    }

    PropertyList identifiers() {
        return identifiers([this] { return identifier(); });
    }

    PropertyList featureIDs() {
        return identifiers([this] { return featureID(); });
    }

    /// The orders of some features, mostly of their own commands.
    PropertyList childOrders() {
        PropertyList::Dictionary orders;
        for (std::size_t count = number(6); count > 0; --count) {
            const std::string feature = featureID();
            const auto known = finderFeatureWithRawValue(feature);
            const auto ids = known ? childIDs(*known) : std::vector<std::string_view>();
            orders.insert_or_assign(
                feature, mostly([&] { return identifiers([&] { return word(ids); }, 8); }));
        }
        return orders;
    }

    /// A list of dictionaries with some of `keys`. There are few names, so that many are equal.
    PropertyList entries(std::span<const std::string_view> keys) {
        static constexpr std::array<std::string_view, 6> names = {
            "A", "B", "", "桌面", "压缩为 ZIP", "列表 · 最近修改 2"};
        static constexpr std::array<std::string_view, 12> others = {"a",
                                                                    "b",
                                                                    "/a",
                                                                    "/b",
                                                                    "shortcut",
                                                                    "script",
                                                                    "vscode",
                                                                    "cursor",
                                                                    "preview",
                                                                    "",
                                                                    "/Applications/Pages.app",
                                                                    "/Applications/Cursor.app"};
        return array([&] {
            return mostly([&] {
                PropertyList::Dictionary entry;
                for (const std::string_view key : keys) {
                    if (number(31) != 31) {
                        entry.emplace(key, mostly([&] {
                                          return key == "name" ? word(names) : word(others);
                                      }));
                    }
                }
                return entry;
            });
        });
    }

    /// Puts a settings file of what `make` makes, or none, or one that is not a property list.
    /// Returns what it holds.
    template <typename Make>
    std::optional<PropertyList> putSettings(const std::string& fileName, Make make) {
        const std::string path = settingsFolder + "/" + fileName;
        switch (number(15)) {
            case 0:
                fakePlatform::state().entries.erase(path);
                return std::nullopt;
            case 1:
                fakePlatform::state().putFile(path, "not a property list");
                return std::nullopt;
            default:
                PropertyList value = mostly(make);
                fakePlatform::state().putPropertyList(path, value);
                return value;
        }
    }

    std::optional<PropertyList> putFeatureSettings() {
        return putSettings("FeatureSettings.plist", [this] {
            PropertyList::Dictionary root;
            const auto put = [&](const char* key, auto make) {
                if (number(3) != 3) {
                    root.emplace(key, mostly(make));
                }
            };
            put("enabledFeatureIDs", [this] { return featureIDs(); });
            put("featureOrder", [this] { return featureIDs(); });
            put("enabledChildIDs", [this] { return identifiers(); });
            put("groupsFeaturesUnderQuorva", [this] { return chance(); });
            put("menuLayout", [this] { return chance() ? "expanded" : "collapsed"; });
            put("childOrderByFeatureID", [this] { return childOrders(); });
            return root;
        });
    }

    std::optional<PropertyList> putCustomDestinations() {
        return putSettings("CustomDestinations.plist", [this] {
            static constexpr std::array<std::string_view, 3> keys = {"id", "name", "path"};
            PropertyList::Dictionary root;
            for (const char* const kind :
                 {"copy", "move", "quickOpen", "openApplication", "unknown"}) {
                if (chance()) {
                    root.emplace(kind, mostly([&] { return entries(keys); }));
                }
            }
            return root;
        });
    }

    std::optional<PropertyList> putCustomShortcutActions() {
        static constexpr std::array<std::string_view, 5> keys = {"id", "name", "kind",
                                                                 "shortcutName", "scriptPath"};
        return putSettings("CustomShortcutActions.plist", [this] { return entries(keys); });
    }

    std::optional<PropertyList> putViewPresets() {
        static constexpr std::array<std::string_view, 4> keys = {"id", "name", "viewMode",
                                                                 "sortMode"};
        return putSettings("FinderViewPresets.plist", [this] { return entries(keys); });
    }

 private:
    FuzzedDataProvider provider_;
};

}  // namespace quorva

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
