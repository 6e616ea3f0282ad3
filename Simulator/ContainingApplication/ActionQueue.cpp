#include "Simulator/ContainingApplication/ActionQueue.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <system_error>
#include <vector>

#include "Simulator/JSONText.hpp"
#include "Simulator/WriteAll.hpp"

namespace simulator {
namespace {

using nlohmann::json;
using std::filesystem::path;

[[noreturn]] void throwSystemError(const path& file) {
    throw std::filesystem::filesystem_error("failed", file,
                                            std::error_code(errno, std::generic_category()));
}

/// An open file.
class Descriptor {
 public:
    Descriptor(const path& file, int flags) : number_(open(file.c_str(), flags | O_CLOEXEC, 0600)) {
        if (number_ < 0) {
            throwSystemError(file);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(number_); }

    [[nodiscard]] int number() const { return number_; }

 private:
    int number_;
};

void synchronize(const path& file, const Descriptor& descriptor) {
    if (fsync(descriptor.number()) != 0) {
        throwSystemError(file);
    }
}

/// Appends `line` so that it is on disk when this returns. What an interrupted append left without
/// its line feed is closed off first.
void appendLine(const path& file, const std::string& line) {
    const Descriptor descriptor(file, O_RDWR | O_CREAT | O_APPEND);
    const off_t size = lseek(descriptor.number(), 0, SEEK_END);
    char last = '\n';
    if (size > 0 && pread(descriptor.number(), &last, 1, size - 1) != 1) {
        throwSystemError(file);
    }
    const std::string bytes = (last == '\n' ? "" : "\n") + line + "\n";
    if (writeAll(descriptor.number(), bytes) != 0) {
        throwSystemError(file);
    }
    synchronize(file, descriptor);
    if (size == 0) {
        const path folder = file.parent_path();
        synchronize(folder, Descriptor(folder, O_RDONLY | O_DIRECTORY));
    }
}

struct Record {
    path file;
    double createdAt;
    std::string line;
};

/// Throws when `file` holds no record.
Record record(const path& file) {
    if (!std::filesystem::is_regular_file(file)) {
        throw std::runtime_error("it is no file");
    }
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("it can't be read");
    }
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    const json content = parseJSON(text);
    if (!content.is_object() || !content.contains("actionID") || !content["actionID"].is_string() ||
        !content.contains("createdAt") || !content["createdAt"].is_number()) {
        throw std::runtime_error("it holds no action");
    }
    return {file, content["createdAt"].get<double>(), content.dump()};
}

}  // namespace

void ActionQueue::drain() noexcept {
    const path queue = folder_ / "ActionQueue";
    try {
        if (std::filesystem::exists(queue)) {
            const Descriptor lock(queue, O_RDONLY);
            while (flock(lock.number(), LOCK_EX) != 0) {
                if (errno != EINTR) {
                    throwSystemError(queue);
                }
            }
            drainLocked(queue);
        }
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "Quorva: the queue can't be drained: %s\n", exception.what());
    }
}

void ActionQueue::drainLocked(const path& queue) {
    std::vector<Record> records;
    for (const auto& entry : std::filesystem::directory_iterator(queue)) {
        const path& file = entry.path();
        if (file.extension() != ".json" || performed_.contains(file)) {
            continue;
        }
        try {
            records.push_back(record(file));
        } catch (const std::exception& exception) {
            complain(file, exception.what());
        }
    }
    std::ranges::sort(records, [](const Record& left, const Record& right) {
        return std::tie(left.createdAt, left.file) < std::tie(right.createdAt, right.file);
    });
    for (const Record& next : records) {
        appendLine(folder_ / "Performed.jsonl", next.line);
        std::error_code error;
        std::filesystem::remove(next.file, error);
        if (error) {
            performed_.insert(next.file);
            complain(next.file, "it can't be deleted: " + error.message());
        }
    }
}

void ActionQueue::complain(const path& file, const std::string& reason) {
    if (complainedOf_.insert(file).second) {
        std::fprintf(stderr, "Quorva: %s is left where it is: %s\n", file.c_str(), reason.c_str());
    }
}

}  // namespace simulator
