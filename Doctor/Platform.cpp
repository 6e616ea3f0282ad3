// The platform as it is on this system, for the homes that are looked at, and without anything that
// would change a file. Reading files and property lists is Cocoa's.
#include "Doctor/Platform.hpp"

#include <pwd.h>
#include <unistd.h>

#include <utility>

#include "Platform/Bundle.hpp"
#include "Platform/Console.hpp"
#include "Platform/Data.hpp"
#include "Platform/Date.hpp"
#include "Platform/FileHandle.hpp"
#include "Platform/FileManager.hpp"
#include "Platform/PathUtilities.hpp"

namespace quorva {

namespace {

doctor::Homes& currentHomes() {
    static doctor::Homes homes;
    return homes;
}

std::unexpected<Error> refusal() {
    return std::unexpected(Error{"The doctor writes nothing."});
}

}  // namespace

void doctor::setHomes(Homes homes) {
    currentHomes() = std::move(homes);
}

std::string doctor::accountName() {
    const passwd* const account = ::getpwuid(::geteuid());
    return account == nullptr ? "" : account->pw_name;
}

namespace platform {

/// The Simplified Chinese of the catalogue: the tables of the translations are in a bundle, and
/// this program is in none.
std::string localizedString(std::string_view key) {
    return std::string(key);
}

std::string userName() {
    return doctor::accountName();
}

std::optional<std::string> homeDirectoryForUser(const std::string&) {
    return currentHomes().accountHome;
}

FileURL homeDirectoryForCurrentUser() {
    return FileURL::directory(currentHomes().home);
}

std::vector<FileURL> urlsForDirectoryInUserDomain(SearchPathDirectory directory) {
    const auto named = [](std::string_view name) {
        return std::vector{homeDirectoryForCurrentUser().appendingDirectory(name)};
    };
    switch (directory) {
        case SearchPathDirectory::documents:
            return named("Documents");
        case SearchPathDirectory::desktop:
            return named("Desktop");
        case SearchPathDirectory::applicationSupport:
            return named("Library/Application Support");
        case SearchPathDirectory::downloads:
            return named("Downloads");
        case SearchPathDirectory::movies:
            return named("Movies");
        case SearchPathDirectory::music:
            return named("Music");
        case SearchPathDirectory::pictures:
            return named("Pictures");
    }
    std::unreachable();
}

bool fileExistsAtPath(const std::string& path) {
    return !path.contains('\0') && ::access(path.c_str(), F_OK) == 0;
}

Result<FileURL> urlForDirectoryInUserDomainCreating(SearchPathDirectory) {
    return refusal();
}

Result<void> createDirectoryWithIntermediateDirectories(const FileURL&) {
    return refusal();
}

Result<std::vector<FileURL>> contentsOfDirectorySkippingHiddenFiles(const FileURL&) {
    return refusal();
}

Result<void> writeDataAtomically(const Data&, const FileURL&) {
    return refusal();
}

Result<FileHandle> FileHandle::forAppendingToURL(const FileURL&) {
    return refusal();
}

FileHandle::FileHandle(FileHandle&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)) {}

FileHandle::~FileHandle() {
    descriptor_ = -1;
}

std::optional<char> FileHandle::lastByte() const {
    return std::nullopt;
}

Result<void> FileHandle::write(std::string_view) const {
    return refusal();
}

void logToConsole(std::string_view) {}

double timeIntervalSince1970() {
    return 0;
}

}  // namespace platform

}  // namespace quorva
