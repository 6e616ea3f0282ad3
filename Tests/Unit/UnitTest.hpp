#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <exception>
#include <initializer_list>
#include <memory>
#include <new>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "QuorvaFinderExtension/FinderActionContext.hpp"
#include "QuorvaFinderExtension/FinderCustomDestinations.hpp"
#include "QuorvaFinderExtension/FinderCustomShortcutActions.hpp"
#include "QuorvaFinderExtension/FinderFeature.hpp"
#include "QuorvaFinderExtension/FinderViewPresetSettings.hpp"
#include "QuorvaFinderExtension/Menu.hpp"
#include "QuorvaFinderExtension/MenuRequest.hpp"
#include "QuorvaFinderExtension/SettingsFinding.hpp"
#include "Tests/FakePlatform/FakePlatform.hpp"

/// What the unit tests share: a new machine for each test, the places of the settings files, and
/// short ways to write what the files hold.
namespace quorva {

class UnitTest : public testing::Test {
 protected:
    UnitTest() { fakePlatform::reset(); }

    static inline const std::string settingsFolder =
        "/Users/ada/Library/Application Support/Quorva";
    static inline const std::string featureSettingsPath = settingsFolder + "/FeatureSettings.plist";
    static inline const std::string customDestinationsPath =
        settingsFolder + "/CustomDestinations.plist";
    static inline const std::string customShortcutActionsPath =
        settingsFolder + "/CustomShortcutActions.plist";
    static inline const std::string viewPresetsPath = settingsFolder + "/FinderViewPresets.plist";
    static inline const std::string temporaryLogPath = "/tmp/quorva-finder-extension.log";
    static inline const std::string containerLogPath = settingsFolder + "/FinderExtension.log";
    static inline const std::string queuePath = settingsFolder + "/ActionQueue";

    using URLs = std::set<FileURL>;

    static URLs directories(std::initializer_list<const char*> paths) {
        URLs urls;
        for (const char* const path : paths) {
            urls.insert(FileURL::directory(path));
        }
        return urls;
    }

    /// The folders monitored on the machine as made.
    static URLs defaultDirectories() {
        return directories({
            "/Applications",
            "/Users/ada",
            "/Users/ada/Desktop",
            "/Users/ada/Documents",
            "/Users/ada/Downloads",
            "/Users/ada/Library/Mobile Documents/com~apple~CloudDocs",
            "/Users/ada/Library/Mobile Documents/com~apple~CloudDocs/Desktop",
            "/Users/ada/Library/Mobile Documents/com~apple~CloudDocs/Documents",
            "/Users/ada/Movies",
            "/Users/ada/Music",
            "/Users/ada/Pictures",
            "/Volumes",
        });
    }

    static inline const std::exception_ptr outOfMemory = std::make_exception_ptr(std::bad_alloc());

    /// The messages of the diagnostic log, as the console got them.
    static const std::vector<std::string>& messages() { return platform().consoleLines; }

    /// The event of a message of the diagnostic log.
    static fakePlatform::Event message(const std::string& text) {
        return {fakePlatform::Event::Kind::consoleLine, text};
    }

    /// Looked up anew, because a test may start over with a new machine.
    static fakePlatform::State& platform() { return fakePlatform::state(); }
};

/// A test of a reader of settings, which tells what it finds.
class SettingsTest : public UnitTest {
 protected:
    using Finding = SettingsFinding::Kind;

    explicit SettingsTest(const char* fileName) : fileName_(fileName) {}

    /// What `read` returns, which is the same when nobody wants to know what it finds.
    template <typename Read>
    static auto reading(Read read) {
        findings_.clear();
        const auto value = read(&findings_);
        EXPECT_EQ(read(nullptr), value) << "asking for findings makes a difference";
        return value;
    }

    /// What the last reading found.
    static const SettingsFindings& findings() { return findings_; }

    struct FindingRow {
        Finding kind;
        std::string path;
        std::string value;
        std::string_view wanted;
    };

    /// `rows` as findings in the file of this test.
    [[nodiscard]] SettingsFindings found(const std::vector<FindingRow>& rows) const {
        SettingsFindings findings;
        for (const FindingRow& row : rows) {
            findings.push_back({row.kind, fileName_, row.path, row.value, row.wanted});
        }
        return findings;
    }

    // Why the machine can't read a file.
    static std::string noSuchFile(const std::string& path) {
        return "The file " + path + " does not exist.";
    }
    static std::string noPermission(const std::string& path) {
        return "No permission for " + path + ".";
    }
    static inline const std::string notAPropertyList = "The data is not a property list.";

    static inline SettingsFindings findings_;

 private:
    const char* fileName_;
};

inline PropertyList::Array strings(std::initializer_list<const char*> texts) {
    PropertyList::Array array;
    for (const char* const text : texts) {
        array.emplace_back(text);
    }
    return array;
}

inline PropertyList::Array list(std::initializer_list<PropertyList> values) {
    return {values.begin(), values.end()};
}

using TextMember = std::pair<const char*, const char*>;

/// A dictionary of texts, as the entries of the settings files are.
inline PropertyList texts(std::initializer_list<TextMember> members) {
    PropertyList::Dictionary dictionary;
    for (const auto& [key, text] : members) {
        dictionary.emplace(key, text);
    }
    return dictionary;
}

inline PropertyList destination(const char* id, const char* name, const char* path) {
    return texts({{"id", id}, {"name", name}, {"path", path}});
}

inline PropertyList preset(const char* id, const char* name, const char* viewMode = "list",
                           const char* sortMode = "name") {
    return texts({{"id", id}, {"name", name}, {"viewMode", viewMode}, {"sortMode", sortMode}});
}

inline PropertyList shortcut(const char* id, const char* name, const char* shortcutName) {
    return texts(
        {{"id", id}, {"name", name}, {"kind", "shortcut"}, {"shortcutName", shortcutName}});
}

inline PropertyList script(const char* id, const char* name, const char* scriptPath) {
    return texts({{"id", id}, {"name", name}, {"kind", "script"}, {"scriptPath", scriptPath}});
}

/// A request of items, with the settings as they are when it asks for them.
inline MenuRequest request(const FinderSelection& selectedURLs = {},
                           const std::optional<FileURL>& targetedURL = std::nullopt) {
    return {MenuKind::contextualMenuForItems, selectedURLs, targetedURL, {}};
}

/// The context attached to `item`, null when something else is.
inline const FinderActionContext* attachedContext(const MenuItem& item) {
    const auto* const context = std::get_if<FinderActionContextPointer>(&item.representedObject);
    return context == nullptr ? nullptr : context->get();
}

inline std::vector<std::string> titles(const std::vector<MenuItem>& items) {
    std::vector<std::string> result;
    for (const MenuItem& item : items) {
        result.push_back(item.isSeparator ? "-" : item.title);
    }
    return result;
}

/// Whether `value` equals itself and none of `others`, each of which differs from it in one field.
template <typename Value>
void expectEveryFieldCounts(const Value& value, std::initializer_list<Value> others) {
    EXPECT_TRUE(value == Value(value));
    for (const Value& other : others) {
        EXPECT_FALSE(value == other) << "field " << &other - others.begin();
    }
}

// Readable failures.

inline void PrintTo(const FileURL& url, std::ostream* stream) {
    *stream << url.path() << (url.hasDirectoryPath() ? " (directory)" : " (file)");
}

inline void PrintTo(const SettingsFinding& value, std::ostream* stream) {
    *stream << value.fileName << ": kind " << static_cast<int>(value.kind) << " | " << value.path
            << " | " << value.value << " | " << value.wanted;
}

inline void PrintTo(const FinderCustomDestination& value, std::ostream* stream) {
    *stream << value.id << " | " << value.name << " | " << value.path;
}

inline void PrintTo(const FinderCustomShortcutAction& value, std::ostream* stream) {
    *stream << value.id << " | " << value.name << " | "
            << (value.kind == FinderCustomShortcutAction::Kind::script ? "script" : "shortcut")
            << " | " << value.shortcutName << " | " << value.scriptPath;
}

inline void PrintTo(const FinderViewPresetSetting& value, std::ostream* stream) {
    *stream << value.id << " | " << value.name << " | " << value.viewMode << " | "
            << value.sortMode;
}

inline void PrintTo(FinderFeature feature, std::ostream* stream) {
    *stream << rawValue(feature);
}

inline void PrintTo(const FinderActionContext& context, std::ostream* stream) {
    *stream << context.actionID() << " | " << context.title() << " | case "
            << static_cast<int>(context.action().actionCase()) << " | "
            << context.selectedURLs().urls().size() << " selected | "
            << (context.targetedURL() ? context.targetedURL()->path() : "no target") << " | "
            << context.destinationPath() << " | " << context.presetID();
}

}  // namespace quorva
