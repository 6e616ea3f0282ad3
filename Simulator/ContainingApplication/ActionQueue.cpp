#include "Simulator/ContainingApplication/ActionQueue.hpp"

#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <system_error>
#include <tuple>
#include <vector>

#include "Simulator/FileDescriptor.hpp"
#include "Simulator/JSONText.hpp"
#include "Simulator/Text.hpp"

namespace simulator {
namespace {

using nlohmann::json;
using std::filesystem::path;

void require(bool succeeded, const path& file) {
    if (!succeeded) {
        throw std::filesystem::filesystem_error("failed", file,
                                                std::error_code(errno, std::generic_category()));
    }
}

/// Appends `line` so that it is on disk when this returns. What an interrupted append left without
/// its line feed is closed off first.
void appendLine(const path& file, const std::string& line) {
    const FileDescriptor descriptor(
        open(file.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
    require(descriptor.number() >= 0, file);
    const off_t size = lseek(descriptor.number(), 0, SEEK_END);
    char last = '\n';
    require(size == 0 || pread(descriptor.number(), &last, 1, size - 1) == 1, file);
    const std::string bytes = (last == '\n' ? "" : "\n") + line + "\n";
    require(writeAll(descriptor.number(), bytes) == 0, file);
    require(fsync(descriptor.number()) == 0, file);
    if (size == 0) {
        const path folder = file.parent_path();
        const FileDescriptor folderDescriptor(
            open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        require(fsync(folderDescriptor.number()) == 0, folder);
    }
}

struct Record {
    double createdAt;
    path file;
    std::string line;
};

/// Throws when `file` does not hold a record.
Record record(const path& file) {
    if (!std::filesystem::is_regular_file(file)) {
        throw std::runtime_error("it is not a file");
    }
    std::ifstream stream(file, std::ios::binary);
    const auto content = parseJSON<json>(stream);
    (void)content.at("actionID").get_ref<const std::string&>();
    return {content.at("createdAt").get<double>(), file, escaped(content.dump())};
}

path homeFolder() {
    const char* home = std::getenv("HOME");
    if (home == nullptr || *home != '/') {
        const passwd* const account = getpwuid(getuid());
        home = account == nullptr ? "/" : account->pw_dir;
    }
    return home;
}

/// The "Quorva" folder of Application Support in `home`.
path supportFolder(const path& home) {
    return home / "Library/Application Support/Quorva";
}

/// Where the extension puts its records: its home is its container, but in the simulator only
/// when that is asked for.
std::array<path, 2> queueFolders() {
    const path home = homeFolder();
    const path container = home / "Library/Containers/app.ferrolin.Quorva.FinderExtension/Data";
    return {supportFolder(container) / "ActionQueue", supportFolder(home) / "ActionQueue"};
}

/// In the user's own folder, and made with it: the extension's container is not for others' files.
path performedFile() {
    const path folder = supportFolder(homeFolder());
    std::filesystem::create_directories(folder);
    return folder / "Performed.jsonl";
}

/// Notes that `file`, which is not a record or can't be deleted, is not to be performed.
void leaveAlone(std::set<path>& leftAlone, const path& file, const std::string& reason) {
    leftAlone.insert(file);
    std::fprintf(stderr, "Quorva: %s is left where it is: %s\n", escaped(file.native()).c_str(),
                 escaped(reason).c_str());
}

void drain(const path& queue, const path& performed) {
    static std::set<path> leftAlone;
    if (!std::filesystem::exists(queue)) {
        return;
    }
    const FileDescriptor lock(open(queue.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    require(flock(lock.number(), LOCK_EX) == 0, queue);
    std::vector<Record> records;
    for (const auto& entry : std::filesystem::directory_iterator(queue)) {
        const path& file = entry.path();
        if (file.extension() != ".json" || leftAlone.contains(file)) {
            continue;
        }
        try {
            records.push_back(record(file));
        } catch (const std::exception& exception) {
            leaveAlone(leftAlone, file, exception.what());
        }
    }
    std::ranges::sort(records, {},
                      [](const Record& record) { return std::tie(record.createdAt, record.file); });
    for (const Record& next : records) {
        appendLine(performed, next.line);
        std::error_code error;
        std::filesystem::remove(next.file, error);
        if (error) {
            leaveAlone(leftAlone, next.file, "it can't be deleted: " + error.message());
        }
    }
}

}  // namespace

void drainQueue() noexcept {
    for (const path& queue : queueFolders()) {
        try {
            drain(queue, performedFile());
        } catch (const std::exception& exception) {
            std::fprintf(stderr, "Quorva: the queue can't be drained: %s\n",
                         escaped(exception.what()).c_str());
        }
    }
}

}  // namespace simulator
