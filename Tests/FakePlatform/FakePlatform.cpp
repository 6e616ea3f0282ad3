#include "Tests/FakePlatform/FakePlatform.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <span>
#include <utility>

#include "Platform/Bundle.hpp"
#include "Platform/Console.hpp"
#include "Platform/Date.hpp"
#include "Platform/DistributedNotificationCenter.hpp"
#include "Platform/FileHandle.hpp"
#include "Platform/FinderSyncController.hpp"
#include "Platform/JSONSerialization.hpp"
#include "Platform/Logger.hpp"
#include "Platform/PathUtilities.hpp"
#include "Platform/PropertyListSerialization.hpp"
#include "Platform/RunningApplication.hpp"
#include "Platform/UUID.hpp"

namespace fakePlatform {

using quorva::Error;
using quorva::FileURL;
using quorva::PropertyList;
using quorva::platform::SearchPathDirectory;

namespace {

constexpr std::size_t symbolicLinkLimit = 32;

std::mutex mutex;
std::unique_ptr<State> current;

std::string parentOf(const std::string& path) {
    return FileURL::file(path).deletingLastPathComponent().path();
}

std::vector<std::string> componentsOf(const std::string& path) {
    std::vector<std::string> components;
    std::string component;
    for (const char character : path + '/') {
        if (character != '/') {
            component += character;
        } else if (!component.empty()) {
            components.push_back(std::exchange(component, {}));
        }
    }
    return components;
}

std::map<SearchPathDirectory, std::vector<FileURL>> standardDirectoriesBelow(const FileURL& home) {
    return {
        {SearchPathDirectory::documents, {home.appendingDirectory("Documents")}},
        {SearchPathDirectory::desktop, {home.appendingDirectory("Desktop")}},
        {SearchPathDirectory::applicationSupport,
         {home.appendingDirectory("Library/Application Support")}},
        {SearchPathDirectory::downloads, {home.appendingDirectory("Downloads")}},
        {SearchPathDirectory::movies, {home.appendingDirectory("Movies")}},
        {SearchPathDirectory::music, {home.appendingDirectory("Music")}},
        {SearchPathDirectory::pictures, {home.appendingDirectory("Pictures")}},
    };
}

std::string_view name(Event::Kind kind) {
    switch (kind) {
        case Event::Kind::consoleLine:
            return "console line";
        case Event::Kind::unifiedLogRecord:
            return "unified log record";
        case Event::Kind::fileWritten:
            return "file written";
        case Event::Kind::fileAppended:
            return "file appended";
        case Event::Kind::directoryCreated:
            return "directory created";
        case Event::Kind::notificationPosted:
            return "notification posted";
        case Event::Kind::applicationOpened:
            return "application opened";
        case Event::Kind::directoryURLsSet:
            return "directory URLs set";
    }
    return {};
}

/// Absent when JSON has no form for the value.
std::optional<nlohmann::json> json(const PropertyList& value) {
    if (const PropertyList::Dictionary* dictionary = value.dictionary()) {
        nlohmann::json object = nlohmann::json::object();
        for (const auto& [key, element] : *dictionary) {
            std::optional<nlohmann::json> member = json(element);
            if (!member) {
                return std::nullopt;
            }
            object[key] = *std::move(member);
        }
        return object;
    }
    if (const PropertyList::Array* array = value.array()) {
        nlohmann::json list = nlohmann::json::array();
        for (const PropertyList& element : *array) {
            std::optional<nlohmann::json> member = json(element);
            if (!member) {
                return std::nullopt;
            }
            list.push_back(*std::move(member));
        }
        return list;
    }
    if (const std::string* string = value.string()) {
        return *string;
    }
    if (const bool* boolean = value.boolean()) {
        return *boolean;
    }
    if (const std::int64_t* integer = value.integer()) {
        return *integer;
    }
    if (const double* real = value.real(); real != nullptr && std::isfinite(*real)) {
        return *real;
    }
    return std::nullopt;
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const Event& event) {
    return stream << name(event.kind) << ": " << event.text;
}

std::ostream& operator<<(std::ostream& stream, const UnifiedLogRecord& record) {
    return stream << record.subsystem << ':' << record.category << ": " << record.message;
}

State::State()
    : homeDirectory(FileURL::directory("/Users/ada")),
      standardDirectories(standardDirectoriesBelow(homeDirectory)),
      userName("ada"),
      homeDirectoriesByUserName({{"ada", "/Users/ada"}}),
      accountHomesByUserName({{"ada", "/Users/ada"}}),
      mainBundleURL(FileURL::directory(
          "/Applications/Quorva.app/Contents/PlugIns/QuorvaFinderExtension.appex")) {
    putDirectory("/tmp");
    putDirectory("/Applications");
    for (const auto& [directory, urls] : standardDirectories) {
        putDirectory(urls.front().path());
    }
    find("/Users/ada/Library")->hidden = true;
}

void State::enterSandbox() {
    homeDirectory = FileURL::directory(
        "/Users/ada/Library/Containers/app.ferrolin.Quorva.FinderExtension/Data");
    homeDirectoriesByUserName["ada"] = homeDirectory.path();
    for (auto& [directory, urls] : standardDirectories) {
        const FileURL real =
            std::exchange(urls, standardDirectoriesBelow(homeDirectory).at(directory)).front();
        if (directory == SearchPathDirectory::documents ||
            directory == SearchPathDirectory::applicationSupport) {
            putDirectory(urls.front().path());
        } else {
            putSymbolicLink(urls.front().path(), real.path());
        }
    }
    putDirectory("/Users/ada").readable = false;
    putDirectory("/tmp").writable = false;
}

File& State::putFile(const std::string& path, std::string contents) {
    putDirectory(parentOf(path));
    Entry& entry = entries[path];
    entry = {.content = File{.contents = std::move(contents)}};
    return std::get<File>(entry.content);
}

File& State::putPropertyList(const std::string& path, const PropertyList& value) {
    const std::string token = "property list " + std::to_string(propertyListsByContents.size() + 1);
    propertyListsByContents.emplace(token, value);
    return putFile(path, token);
}

Directory& State::putDirectory(const std::string& path) {
    std::string directory = "/";
    entries.try_emplace(directory, Entry{.content = Directory{}});
    for (const std::string& component : componentsOf(path)) {
        directory += (directory.ends_with('/') ? "" : "/") + component;
        entries.try_emplace(directory, Entry{.content = Directory{}});
    }
    return std::get<Directory>(entries.at(directory).content);
}

void State::putSpecialFile(const std::string& path) {
    putDirectory(parentOf(path));
    entries[path] = {.content = SpecialFile{}};
}

void State::putSymbolicLink(const std::string& path, const std::string& destination) {
    putDirectory(parentOf(path));
    entries[path] = {.content = SymbolicLink{.destination = destination}};
}

void State::fail(Operation operation, const std::string& description,
                 std::optional<std::string> path) {
    failures.push_back({operation, std::move(path), Error{description}});
}

void State::raise(Operation operation, std::exception_ptr exception) {
    failures.push_back({operation, std::nullopt, std::move(exception)});
}

std::optional<std::string> State::contents(const std::string& path) const {
    const Entry* const entry = find(path);
    const File* const file = entry == nullptr ? nullptr : std::get_if<File>(&entry->content);
    return file == nullptr ? std::nullopt : std::optional(file->contents);
}

std::vector<std::string> State::filesBelow(const std::string& directory) const {
    std::vector<std::string> paths;
    for (const auto& [path, entry] : entries) {
        if (path.starts_with(directory + '/') && std::holds_alternative<File>(entry.content)) {
            paths.push_back(path);
        }
    }
    return paths;
}

std::optional<Error> State::failureOf(Operation operation, std::string_view path) {
    calls.push_back(operation);
    if (failingCalls.contains(calls.size() - 1)) {
        if (failingCallsThrow != nullptr) {
            std::rethrow_exception(failingCallsThrow);
        }
        return Error{"injected failure"};
    }
    for (const Failure& failure : failures) {
        if (failure.operation == operation && (!failure.path || *failure.path == path)) {
            if (const auto* exception = std::get_if<std::exception_ptr>(&failure.outcome)) {
                std::rethrow_exception(*exception);
            }
            return std::get<Error>(failure.outcome);
        }
    }
    return std::nullopt;
}

std::string State::resolvingLinks(const std::string& path) const {
    std::vector<std::string> remaining = componentsOf(path);
    std::string resolved = "/";
    std::size_t followed = 0;
    for (std::size_t index = 0; index < remaining.size(); ++index) {
        if (remaining[index] == ".") {
            continue;
        }
        if (remaining[index] == "..") {
            resolved = parentOf(resolved);
            continue;
        }
        const std::string next =
            FileURL::directory(resolved).appendingFile(remaining[index]).path();
        const auto entry = entries.find(next);
        const auto* const link =
            entry == entries.end() ? nullptr : std::get_if<SymbolicLink>(&entry->second.content);
        if (link == nullptr || followed == symbolicLinkLimit) {
            resolved = next;
            continue;
        }
        ++followed;
        std::vector<std::string> components = componentsOf(link->destination);
        components.insert(components.end(),
                          remaining.begin() + static_cast<std::ptrdiff_t>(index) + 1,
                          remaining.end());
        if (link->destination.starts_with('/')) {
            resolved = "/";
        }
        remaining = std::move(components);
        index = static_cast<std::size_t>(-1);
    }
    return resolved;
}

const Entry* State::find(const std::string& path) const {
    const auto entry = entries.find(resolvingLinks(path));
    return entry == entries.end() || std::holds_alternative<SymbolicLink>(entry->second.content)
               ? nullptr
               : &entry->second;
}

Entry* State::find(const std::string& path) {
    return const_cast<Entry*>(std::as_const(*this).find(path));
}

void State::record(Event::Kind kind, std::string text) {
    journal.push_back({kind, std::move(text)});
}

State& state() {
    if (current == nullptr) {
        reset();
    }
    return *current;
}

void reset() {
    current = std::make_unique<State>();
}

}  // namespace fakePlatform

namespace quorva::platform {

using fakePlatform::Directory;
using fakePlatform::Entry;
using fakePlatform::Event;
using fakePlatform::File;
using fakePlatform::Operation;
using fakePlatform::state;

namespace {

using Lock = std::scoped_lock<std::mutex>;

std::unexpected<Error> failure(const std::string& description) {
    return std::unexpected(Error{description});
}

std::unexpected<Error> noSuchFile(const std::string& path) {
    return failure("The file " + path + " does not exist.");
}

std::unexpected<Error> noPermission(const std::string& path) {
    return failure("No permission for " + path + ".");
}

std::string textWithData(const Data& data) {
    std::string text(data.size(), '\0');
    std::ranges::copy(data, std::as_writable_bytes(std::span(text)).begin());
    return text;
}

/// Creates the directories of `path` that are missing, as long as nothing is in the way.
Result<void> createDirectories(const std::string& path) {
    std::vector<std::string> missing;
    std::string directory = state().resolvingLinks(path);
    while (state().find(directory) == nullptr) {
        missing.push_back(directory);
        directory = FileURL::file(directory).deletingLastPathComponent().path();
    }
    const auto* const existing = std::get_if<Directory>(&state().find(directory)->content);
    if (existing == nullptr) {
        return failure("A file is in the way at " + directory + ".");
    }
    if (!missing.empty() && !existing->writable) {
        return noPermission(directory);
    }
    for (const std::string& created : missing) {
        state().entries[created] = {.content = Directory{}};
    }
    return {};
}

}  // namespace

FileURL mainBundleURL() {
    const Lock lock(fakePlatform::mutex);
    if (state().failureOf(Operation::findMainBundle)) {
        return FileURL::directory("/");
    }
    return state().mainBundleURL;
}

std::string localizedString(std::string_view key) {
    const Lock lock(fakePlatform::mutex);
    if (state().failureOf(Operation::localizeString)) {
        return std::string(key);
    }
    const auto translation = state().translations.find(key);
    return translation == state().translations.end() ? std::string(key) : translation->second;
}

void logToConsole(std::string_view message) {
    const Lock lock(fakePlatform::mutex);
    if (state().failureOf(Operation::logToConsole)) {
        return;
    }
    state().consoleLines.emplace_back(message);
    state().record(Event::Kind::consoleLine, std::string(message));
}

Result<Data> dataWithContentsOfRegularFile(const FileURL& url, std::size_t byteLimit) {
    const Lock lock(fakePlatform::mutex);
    ++state().reads[url.path()];
    if (std::optional<Error> error = state().failureOf(Operation::readFile, url.path())) {
        return std::unexpected(*error);
    }
    const Entry* const entry = state().find(url.path());
    const File* const file = entry == nullptr ? nullptr : std::get_if<File>(&entry->content);
    if (file == nullptr) {
        return noSuchFile(url.path());
    }
    if (!file->readable) {
        return noPermission(url.path());
    }
    if (file->contents.size() > byteLimit) {
        return failure("The file " + url.path() + " is too large.");
    }
    return dataWithText(file->contents);
}

Result<void> writeDataAtomically(const Data& data, const FileURL& url) {
    const Lock lock(fakePlatform::mutex);
    if (std::optional<Error> error = state().failureOf(Operation::writeAtomically, url.path())) {
        return std::unexpected(*error);
    }
    const std::string path = state().resolvingLinks(url.path());
    const Entry* const parent =
        state().find(FileURL::file(path).deletingLastPathComponent().path());
    const Directory* const directory =
        parent == nullptr ? nullptr : std::get_if<Directory>(&parent->content);
    if (directory == nullptr) {
        return noSuchFile(url.path());
    }
    const Entry* const standing = state().find(path);
    if (!directory->writable ||
        (standing != nullptr && std::holds_alternative<Directory>(standing->content))) {
        return noPermission(url.path());
    }
    state().entries[path] = {.content = File{.contents = textWithData(data)}};
    state().record(Event::Kind::fileWritten, url.path());
    return {};
}

double timeIntervalSince1970() {
    const Lock lock(fakePlatform::mutex);
    (void)state().failureOf(Operation::readClock);
    const double now = state().timeIntervalSince1970;
    state().timeIntervalSince1970 += state().clockStep;
    return now;
}

Result<void> postDistributedNotification(std::string_view name) {
    const Lock lock(fakePlatform::mutex);
    if (std::optional<Error> error = state().failureOf(Operation::postNotification)) {
        return std::unexpected(*error);
    }
    state().notifications.emplace_back(name);
    state().record(Event::Kind::notificationPosted, std::string(name));
    return {};
}

Result<FileHandle> FileHandle::forAppendingToURL(const FileURL& url) {
    const Lock lock(fakePlatform::mutex);
    if (std::optional<Error> error = state().failureOf(Operation::openForAppending, url.path())) {
        return std::unexpected(*error);
    }
    const Entry* const entry = state().find(url.path());
    const File* const file = entry == nullptr ? nullptr : std::get_if<File>(&entry->content);
    if (file == nullptr) {
        return noSuchFile(url.path());
    }
    if (!file->writable) {
        return noPermission(url.path());
    }
    state().openedFiles.push_back(url.path());
    return FileHandle(static_cast<int>(state().openedFiles.size()) - 1);
}

FileHandle::FileHandle(FileHandle&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

FileHandle::~FileHandle() = default;

std::optional<char> FileHandle::lastByte() const {
    const Lock lock(fakePlatform::mutex);
    if (state().failureOf(Operation::readLastByte)) {
        return std::nullopt;
    }
    const File& file = std::get<File>(
        state().find(state().openedFiles[static_cast<std::size_t>(descriptor_)])->content);
    return file.readable && !file.contents.empty() ? std::optional(file.contents.back())
                                                   : std::nullopt;
}

Result<void> FileHandle::write(std::string_view bytes) const {
    const Lock lock(fakePlatform::mutex);
    const std::string path = state().openedFiles[static_cast<std::size_t>(descriptor_)];
    std::string& contents = std::get<File>(state().find(path)->content).contents;
    if (std::optional<Error> error = state().failureOf(Operation::writeToHandle, path)) {
        // A full disk takes what it has room for.
        contents += bytes.substr(0, bytes.size() / 2);
        return std::unexpected(*error);
    }
    contents += bytes;
    state().record(Event::Kind::fileAppended, path);
    return {};
}

FileURL homeDirectoryForCurrentUser() {
    const Lock lock(fakePlatform::mutex);
    if (state().failureOf(Operation::findHomeDirectory)) {
        return FileURL::directory("/");
    }
    return state().homeDirectory;
}

std::vector<FileURL> urlsForDirectoryInUserDomain(SearchPathDirectory directory) {
    const Lock lock(fakePlatform::mutex);
    if (state().failureOf(Operation::findStandardDirectories)) {
        return {};
    }
    return state().standardDirectories[directory];
}

Result<FileURL> urlForDirectoryInUserDomainCreating(SearchPathDirectory directory) {
    const Lock lock(fakePlatform::mutex);
    if (std::optional<Error> error = state().failureOf(Operation::lookUpApplicationSupport)) {
        return std::unexpected(*error);
    }
    const std::vector<FileURL>& urls = state().standardDirectories[directory];
    if (urls.empty()) {
        return failure("There is no such directory.");
    }
    const Result<void> created = createDirectories(urls.front().path());
    if (!created) {
        return std::unexpected(created.error());
    }
    return urls.front();
}

Result<void> createDirectoryWithIntermediateDirectories(const FileURL& url) {
    const Lock lock(fakePlatform::mutex);
    state().record(Event::Kind::directoryCreated, url.path());
    if (std::optional<Error> error = state().failureOf(Operation::createDirectory, url.path())) {
        return std::unexpected(*error);
    }
    return createDirectories(url.path());
}

Result<std::vector<FileURL>> contentsOfDirectorySkippingHiddenFiles(const FileURL& url) {
    const Lock lock(fakePlatform::mutex);
    if (std::optional<Error> error = state().failureOf(Operation::listDirectory, url.path())) {
        return std::unexpected(*error);
    }
    const Entry* const listed = state().find(url.path());
    const Directory* const directory =
        listed == nullptr ? nullptr : std::get_if<Directory>(&listed->content);
    if (directory == nullptr) {
        return noSuchFile(url.path());
    }
    if (!directory->readable) {
        return noPermission(url.path());
    }
    const std::string resolved = state().resolvingLinks(url.path());
    std::vector<FileURL> urls;
    for (const auto& [path, entry] : state().entries) {
        const FileURL parent = FileURL::file(path).deletingLastPathComponent();
        if (path == "/" || parent.path() != resolved) {
            continue;
        }
        const std::string name = path.substr(path.rfind('/') + 1);
        if (entry.hidden || name.starts_with('.')) {
            continue;
        }
        urls.push_back(std::holds_alternative<Directory>(entry.content)
                           ? url.appendingDirectory(name)
                           : url.appendingFile(name));
    }
    return urls;
}

bool fileExistsAtPath(const std::string& path) {
    const Lock lock(fakePlatform::mutex);
    if (state().failureOf(Operation::checkExistence, path)) {
        return false;
    }
    return state().find(path) != nullptr;
}

FileURL standardizedFileURL(const FileURL& url) {
    const Lock lock(fakePlatform::mutex);
    if (state().failureOf(Operation::standardizePath, url.path())) {
        return url;
    }
    std::vector<std::string> kept;
    for (const std::string& component : fakePlatform::componentsOf(url.path())) {
        if (component == ".." && !kept.empty()) {
            kept.pop_back();
        } else if (component != ".." && component != ".") {
            kept.push_back(component);
        }
    }
    std::string path = kept.empty() ? "/" : "";
    for (const std::string& component : kept) {
        path += '/' + component;
    }
    if (path.starts_with("/private/")) {
        const std::string shorter = path.substr(std::string_view("/private").size());
        if (state().resolvingLinks(shorter) == path) {
            path = shorter;
        }
    }
    return url.hasDirectoryPath() ? FileURL::directory(path) : FileURL::file(path);
}

std::string pathByResolvingSymbolicLinks(const std::string& path) {
    const Lock lock(fakePlatform::mutex);
    if (state().failureOf(Operation::resolveLinks, path)) {
        return path;
    }
    return state().resolvingLinks(path);
}

std::optional<std::vector<FileURL>> selectedItemURLs() {
    const Lock lock(fakePlatform::mutex);
    if (state().failureOf(Operation::readSelection)) {
        return std::nullopt;
    }
    return state().selectedItemURLs;
}

std::optional<FileURL> targetedURL() {
    const Lock lock(fakePlatform::mutex);
    if (state().failureOf(Operation::readTarget)) {
        return std::nullopt;
    }
    return state().targetedURL;
}

Result<void> setDirectoryURLs(const std::set<FileURL>& urls) {
    const Lock lock(fakePlatform::mutex);
    if (std::optional<Error> error = state().failureOf(Operation::setDirectoryURLs)) {
        return std::unexpected(*error);
    }
    state().directoryURLs = urls;
    state().record(Event::Kind::directoryURLsSet, {});
    return {};
}

Result<Data> jsonDataPrettyPrintedWithSortedKeys(const PropertyList& object) {
    const Lock lock(fakePlatform::mutex);
    if (std::optional<Error> error = state().failureOf(Operation::serializeJSON)) {
        return std::unexpected(*error);
    }
    state().jsonObjects.push_back(object);
    const std::optional<nlohmann::json> json = fakePlatform::json(object);
    if (!json) {
        return failure("Invalid type in JSON write.");
    }
    try {
        return dataWithText(json->dump(2));
    } catch (const nlohmann::json::type_error&) {
        return failure("Invalid string in JSON write.");
    }
}

Logger::Logger(const char* subsystem, const char* category) noexcept
    : log_(new std::pair<std::string, std::string>(subsystem, category)) {}

Logger::~Logger() {
    delete static_cast<std::pair<std::string, std::string>*>(log_);
}

namespace {

void recordInUnifiedLog(void* log, const std::string& message) {
    const Lock lock(fakePlatform::mutex);
    if (state().failureOf(Operation::logToUnifiedLog)) {
        return;
    }
    const auto& [subsystem, category] = *static_cast<std::pair<std::string, std::string>*>(log);
    state().unifiedLog.push_back({subsystem, category, message});
    state().record(Event::Kind::unifiedLogRecord, message);
}

}  // namespace

void Logger::menuRequested(unsigned long kind, long selected, std::string_view targeted,
                           long features, bool grouped, std::string_view layout) const {
    recordInUnifiedLog(
        log_, "Menu requested. kind=" + std::to_string(kind) +
                  ", selected=" + std::to_string(selected) + ", targeted=" + std::string(targeted) +
                  ", features=" + std::to_string(features) +
                  ", grouped=" + (grouped ? "true" : "false") + ", layout=" + std::string(layout));
}

void Logger::refreshedDirectories(std::string_view reason, long count) const {
    recordInUnifiedLog(log_, "FinderSync refreshed directories. reason=" + std::string(reason) +
                                 ", count=" + std::to_string(count));
}

std::string userName() {
    const Lock lock(fakePlatform::mutex);
    if (state().failureOf(Operation::readUserName)) {
        return {};
    }
    return state().userName;
}

std::optional<std::string> homeDirectoryForUser(const std::string& name) {
    const Lock lock(fakePlatform::mutex);
    if (state().failureOf(Operation::findAccount)) {
        return std::nullopt;
    }
    const auto home = state().homeDirectoriesByUserName.find(name);
    if (home == state().homeDirectoriesByUserName.end()) {
        return std::nullopt;
    }
    const auto account = state().accountHomesByUserName.find(name);
    return home->second.contains("/Library/Containers/") &&
                   account != state().accountHomesByUserName.end()
               ? account->second
               : home->second;
}

Result<PropertyList> propertyListWithData(const Data& data) {
    const Lock lock(fakePlatform::mutex);
    if (std::optional<Error> error = state().failureOf(Operation::parsePropertyList)) {
        return std::unexpected(*error);
    }
    const auto found = state().propertyListsByContents.find(textWithData(data));
    if (found != state().propertyListsByContents.end()) {
        return found->second;
    }
    return failure("The data is not a property list.");
}

std::size_t runningApplicationCount(std::string_view bundleIdentifier) {
    const Lock lock(fakePlatform::mutex);
    if (state().failureOf(Operation::countRunningApplications)) {
        return 0;
    }
    const auto count = state().runningApplications.find(bundleIdentifier);
    return count == state().runningApplications.end() ? 0 : count->second;
}

std::string newUUIDString() {
    const Lock lock(fakePlatform::mutex);
    (void)state().failureOf(Operation::generateUUID);
    if (!state().uuids.empty()) {
        std::string uuid = std::move(state().uuids.front());
        state().uuids.pop_front();
        return uuid;
    }
    std::string uuid(37, '\0');
    std::snprintf(uuid.data(), uuid.size(), "00000000-0000-4000-8000-%012zX", ++state().uuidCount);
    uuid.pop_back();
    return uuid;
}

void openApplication(const FileURL& url, const OpenConfiguration& configuration,
                     std::function<void(const std::optional<Error>& error)> completion) {
    std::optional<Error> error;
    {
        const Lock lock(fakePlatform::mutex);
        error = state().failureOf(Operation::openApplication);
        if (!error) {
            state().launches.push_back({url, configuration, std::move(completion)});
            state().record(Event::Kind::applicationOpened, url.path());
            return;
        }
    }
    completion(error);
}

}  // namespace quorva::platform
