#include "QuorvaFinderExtension/FinderCustomDestinations.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

#include "Platform/FileManager.hpp"
#include "QuorvaFinderExtension/L10n.hpp"
#include "QuorvaFinderExtension/RawValue.hpp"
#include "QuorvaFinderExtension/SettingsFile.hpp"

namespace quorva {

namespace {

using namespace std::string_view_literals;
using Finding = SettingsFinding::Kind;
using Destinations = std::vector<FinderCustomDestination>;
using platform::SearchPathDirectory;

/// The standard folder `directory`, where the platform reports one.
std::optional<FinderCustomDestination> standardDestination(std::string id, std::string name,
                                                           SearchPathDirectory directory) {
    const std::vector<FileURL> urls = platform::urlsForDirectoryInUserDomain(directory);
    if (urls.empty()) {
        return std::nullopt;
    }
    return FinderCustomDestination{std::move(id), std::move(name), urls.front().path()};
}

Destinations defaultFileDestinations() {
    Destinations destinations;
    for (const auto& [key, directory] : {
             std::pair{"桌面", SearchPathDirectory::desktop},
             std::pair{"下载", SearchPathDirectory::downloads},
             std::pair{"文稿", SearchPathDirectory::documents},
         }) {
        const std::string title = L10n::t(key);
        if (auto destination = standardDestination(title, title, directory)) {
            destinations.push_back(*std::move(destination));
        }
    }
    return destinations;
}

/// The home folder and others around `folders`.
Destinations defaultQuickOpenDestinations(const Destinations& folders) {
    Destinations destinations = {
        {"home", L10n::t("用户目录"), platform::homeDirectoryForCurrentUser().path()}};
    destinations.insert(destinations.end(), folders.begin(), folders.end());
    if (auto pictures =
            standardDestination("pictures", L10n::t("图片"), SearchPathDirectory::pictures)) {
        destinations.push_back(*std::move(pictures));
    }
    destinations.push_back({"applications", L10n::t("应用程序"), "/Applications"});
    return destinations;
}

Destinations defaultApplicationDestinations(const SettingsPath& path) {
    Destinations destinations = {
        {"preview", L10n::t("预览"), "/System/Applications/Preview.app"},
        {"textedit", L10n::t("文本编辑"), "/System/Applications/TextEdit.app"},
        {"pages", "Pages", "/Applications/Pages.app"},
        {"numbers", "Numbers", "/Applications/Numbers.app"},
        {"keynote", "Keynote", "/Applications/Keynote.app"},
    };
    std::erase_if(destinations, [&path](const FinderCustomDestination& destination) {
        const bool isMissing = !platform::fileExistsAtPath(destination.path);
        if (isMissing) {
            path.report(Finding::missingApplication, destination.path);
        }
        return isMissing;
    });
    return destinations;
}

/// The catalogue has entries of its own for these two editors.
bool isCatalogueApplication(const FinderCustomDestination& destination) {
    return destination.id == "vscode" || destination.id == "cursor" ||
           destination.path == "/Applications/Visual Studio Code.app" ||
           destination.path == "/Applications/Cursor.app";
}

/// Whether every value in `root`, of whatever kind, has the right shape.
bool isUsable(const SettingsPath& file, const PropertyList& root) {
    const PropertyList::Dictionary* const lists = dictionaryAt(file, root);
    return lists != nullptr && std::ranges::all_of(*lists, [&file](const auto& list) {
               return stringDictionaries(file[list.first], list.second) != nullptr;
           });
}

std::optional<FinderCustomDestination> destinationOfEntry(const SettingsPath& place,
                                                          const PropertyList::Dictionary& entry) {
    place.reportUnknownKeys(entry, destinationKeys);
    const std::string* const id = requiredStringForKey(place, entry, "id");
    const std::string* const name = requiredStringForKey(place, entry, "name");
    const std::string* const path = requiredStringForKey(place, entry, "path");
    if (id == nullptr || name == nullptr || path == nullptr) {
        return std::nullopt;
    }
    return FinderCustomDestination{*id, *name, *path};
}

/// The user's application, unless the catalogue or `defaults` have it.
std::optional<FinderCustomDestination> applicationOfEntry(const SettingsPath& place,
                                                          const PropertyList::Dictionary& entry,
                                                          const Destinations& defaults) {
    std::optional<FinderCustomDestination> application = destinationOfEntry(place, entry);
    if (!application) {
        return std::nullopt;
    }
    if (isCatalogueApplication(*application)) {
        place.report(Finding::catalogueApplication, application->id);
        return std::nullopt;
    }
    if (std::ranges::any_of(defaults, [&application](const FinderCustomDestination& builtIn) {
            return builtIn.id == application->id || builtIn.path == application->path;
        })) {
        place.report(Finding::defaultApplication, application->id);
        return std::nullopt;
    }
    return application;
}

}  // namespace

std::string_view rawValue(FinderCustomDestinationKind kind) {
    switch (kind) {
        case FinderCustomDestinationKind::copy:
            return "copy";
        case FinderCustomDestinationKind::move:
            return "move";
        case FinderCustomDestinationKind::quickOpen:
            return "quickOpen";
        case FinderCustomDestinationKind::openApplication:
            return "openApplication";
    }
    std::unreachable();
}

std::optional<FinderCustomDestinationKind> finderCustomDestinationKindWithRawValue(
    std::string_view rawValue) {
    return caseWithRawValue(allFinderCustomDestinationKinds, rawValue);
}

FinderCustomDestinationFile::FinderCustomDestinationFile(SettingsFindings* findings)
    : file_("CustomDestinations.plist", findings), root_(propertyListInFile(file_)) {
    if (root_ && !isUsable(file_, *root_)) {
        root_.reset();
    }
    if (root_) {
        file_.reportUnknownKeys(*root_->dictionary(),
                                std::array{"copy"sv, "move"sv, "quickOpen"sv, "openApplication"sv});
    }
}

const PropertyList::Array* FinderCustomDestinationFile::savedEntries(
    FinderCustomDestinationKind kind) const {
    if (!root_) {
        return nullptr;
    }
    const auto found = root_->dictionary()->find(rawValue(kind));
    return found == root_->dictionary()->end() ? nullptr : found->second.array();
}

const std::vector<FinderCustomDestination>& FinderCustomDestinationFile::standardFolders() const {
    if (!standardFolders_) {
        standardFolders_ = defaultFileDestinations();
    }
    return *standardFolders_;
}

std::vector<FinderCustomDestination> FinderCustomDestinationFile::defaultDestinations(
    FinderCustomDestinationKind kind) const {
    switch (kind) {
        case FinderCustomDestinationKind::copy:
        case FinderCustomDestinationKind::move:
            return standardFolders();
        case FinderCustomDestinationKind::quickOpen:
            return defaultQuickOpenDestinations(standardFolders());
        case FinderCustomDestinationKind::openApplication:
            return defaultApplicationDestinations(file_);
    }
    std::unreachable();
}

bool FinderCustomDestinationFile::hasDefaults(FinderCustomDestinationKind kind) const {
    return savedEntries(kind) == nullptr;
}

std::vector<FinderCustomDestination> FinderCustomDestinationFile::destinations(
    FinderCustomDestinationKind kind) const {
    const PropertyList::Array* const entries = savedEntries(kind);
    if (entries == nullptr) {
        return defaultDestinations(kind);
    }
    const SettingsPath path = file_[rawValue(kind)];
    if (kind != FinderCustomDestinationKind::openApplication) {
        return validEntries(path, *entries, destinationOfEntry);
    }
    Destinations applications = defaultApplicationDestinations(file_);
    const auto convert = [defaults = applications](const SettingsPath& place,
                                                   const PropertyList::Dictionary& entry) {
        return applicationOfEntry(place, entry, defaults);
    };
    std::ranges::move(validEntries(path, *entries, convert), std::back_inserter(applications));
    return applications;
}

std::vector<FinderCustomDestination> FinderCustomDestinationSettings::destinations(
    FinderCustomDestinationKind kind) {
    return FinderCustomDestinationFile().destinations(kind);
}

}  // namespace quorva
