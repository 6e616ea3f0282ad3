#pragma once

#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <map>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "Platform/Data.hpp"
#include "Platform/Error.hpp"
#include "Platform/FileManager.hpp"
#include "Platform/FileURL.hpp"
#include "Platform/PropertyList.hpp"
#include "Platform/Workspace.hpp"

/// The platform in memory. A binary that links it runs the core on the machine that `state()`
/// describes: a test sets that machine up, calls the core, and looks at what became of it.
///
/// The functions of the platform may be called from several threads at once. `state()` itself takes
/// no lock: a test joins its threads before it looks.
namespace fakePlatform {

/// The functions of the platform. Each can be made to fail as its header says, and to throw.
enum class Operation {
    readFile,
    parsePropertyList,
    writeAtomically,
    openForAppending,
    writeToHandle,
    createDirectory,
    listDirectory,
    lookUpApplicationSupport,
    serializeJSON,
    localizeString,
    logToConsole,
    readClock,
    generateUUID,
    readSelection,
    setDirectoryURLs,
    postNotification,
    openApplication,
    countRunningApplications,
    findMainBundle,
    findHomeDirectory,
    findStandardDirectories,
    findAccount,
    readUserName,
    readTarget,
    readLastByte,
    checkExistence,
    standardizePath,
    resolveLinks,
    logToUnifiedLog,
};

struct File {
    std::string contents;
    bool readable = true;
    bool writable = true;
};

struct Directory {
    bool readable = true;
    bool writable = true;
};

struct SymbolicLink {
    std::string destination;
};

/// A pipe, a device or a socket: there, but not a regular file.
struct SpecialFile {};

/// What stands at a path.
struct Entry {
    std::variant<File, Directory, SymbolicLink, SpecialFile> content;
    /// Hidden by attribute. A name that starts with a dot is hidden whatever this says.
    bool hidden = false;
};

/// One step that something outside the process could have seen.
struct Event {
    enum class Kind {
        /// The text is the message.
        consoleLine,
        /// The text is the formatted record.
        unifiedLogRecord,
        /// The text is the path of the file that was written whole.
        fileWritten,
        /// The text is the path of the file to whose open handle bytes were written.
        fileAppended,
        /// The text is the path that was asked for, whether or not it existed.
        directoryCreated,
        /// The text is the name.
        notificationPosted,
        /// The text is the path of the application.
        applicationOpened,
        /// The text is empty.
        directoryURLsSet,
    };

    Kind kind;
    std::string text;

    friend bool operator==(const Event&, const Event&) = default;
    friend std::ostream& operator<<(std::ostream& stream, const Event& event);
};

struct UnifiedLogRecord {
    std::string subsystem;
    std::string category;
    std::string message;

    friend bool operator==(const UnifiedLogRecord&, const UnifiedLogRecord&) = default;
    friend std::ostream& operator<<(std::ostream& stream, const UnifiedLogRecord& record);
};

/// A request to open an application. The completion is held until a test calls it, on whichever
/// thread it likes.
struct Launch {
    quorva::FileURL url;
    quorva::platform::OpenConfiguration configuration;
    std::function<void(const std::optional<quorva::Error>&)> completion;
};

/// An operation that does not do its work: it reports an error or throws.
struct Failure {
    Operation operation;
    /// The path at which it fails; absent: everywhere.
    std::optional<std::string> path;
    std::variant<quorva::Error, std::exception_ptr> outcome;
};

/// A machine, and what happened on it. As made, it is the Mac of a user "ada" outside the sandbox:
/// home and standard directories exist below "/Users/ada", "/tmp" and "/Applications" exist,
/// nothing is installed, selected or running, and there are no settings.
struct State {
    State();

    // What a test sets up.

    std::map<std::string, Entry> entries;
    std::vector<Failure> failures;
    /// The calls that fail, by their position in `calls`.
    std::set<std::size_t> failingCalls;
    /// What those throw. Null when they only fail.
    std::exception_ptr failingCallsThrow;
    quorva::FileURL homeDirectory;
    std::map<quorva::platform::SearchPathDirectory, std::vector<quorva::FileURL>>
        standardDirectories;
    std::string userName;
    /// As Foundation names them.
    std::map<std::string, std::string> homeDirectoriesByUserName;
    /// As the account database has them.
    std::map<std::string, std::string> accountHomesByUserName;
    std::map<std::string, std::string, std::less<>> translations;
    double timeIntervalSince1970 = 0;
    /// How far the clock moves on each time it is read.
    double clockStep = 0;
    /// Given out first; counted ones follow.
    std::deque<std::string> uuids;
    std::optional<std::vector<quorva::FileURL>> selectedItemURLs;
    std::optional<quorva::FileURL> targetedURL;
    quorva::FileURL mainBundleURL;
    std::map<std::string, std::size_t, std::less<>> runningApplications;

    // What happened.

    std::vector<Event> journal;
    std::vector<std::string> consoleLines;
    std::vector<UnifiedLogRecord> unifiedLog;
    std::vector<std::string> notifications;
    std::vector<Launch> launches;
    std::set<quorva::FileURL> directoryURLs;
    /// The JSON objects that were serialised.
    std::vector<quorva::PropertyList> jsonObjects;

    /// Makes the machine what it is for a sandboxed process: the home folder and what Foundation
    /// names for the account are the container, and so are the standard directories. Of these
    /// Desktop, Downloads, Movies, Music and Pictures are links to the user's own. The real home
    /// can't be listed, and "/tmp" can't be written to.
    void enterSandbox();

    /// Puts a file at `path`, with the directories above it.
    File& putFile(const std::string& path, std::string contents);

    /// Puts a file at `path` that parses as `value`. No other contents are a property list.
    File& putPropertyList(const std::string& path, const quorva::PropertyList& value);

    /// Puts a directory at `path`, with those above it.
    Directory& putDirectory(const std::string& path);

    void putSpecialFile(const std::string& path);

    void putSymbolicLink(const std::string& path, const std::string& destination);

    /// Makes `operation` report `description`, at `path` or everywhere.
    void fail(Operation operation, const std::string& description = "injected failure",
              std::optional<std::string> path = std::nullopt);

    /// Makes `operation` throw `exception`, as what allocates may (`std::bad_alloc`) and as what
    /// the system calls back may.
    void raise(Operation operation, std::exception_ptr exception);

    /// What the file at `path` holds. Absent when no file stands there.
    [[nodiscard]] std::optional<std::string> contents(const std::string& path) const;

    /// The paths of the files below `directory`, sorted.
    [[nodiscard]] std::vector<std::string> filesBelow(const std::string& directory) const;

    // Used by the platform's functions.

    /// Notes the call of `operation`. Returns how it fails, and nothing when it does its work.
    [[nodiscard]] std::optional<quorva::Error> failureOf(Operation operation,
                                                         std::string_view path = {});
    /// What stands at `path` when links are followed, null when nothing does.
    [[nodiscard]] const Entry* find(const std::string& path) const;
    [[nodiscard]] Entry* find(const std::string& path);
    [[nodiscard]] std::string resolvingLinks(const std::string& path) const;
    void record(Event::Kind kind, std::string text);

    /// The functions of the platform that were called.
    std::vector<Operation> calls;
    /// How often the file at a path was read.
    std::map<std::string, int> reads;
    /// The paths of the files that were opened for appending; a handle's descriptor is an index.
    std::vector<std::string> openedFiles;
    std::map<std::string, quorva::PropertyList> propertyListsByContents;
    std::size_t uuidCount = 0;
};

/// The machine that the platform's functions work on.
State& state();

/// A new machine.
void reset();

}  // namespace fakePlatform
