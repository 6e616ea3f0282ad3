#pragma once

#include <sys/types.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace simulator {

/// The processes of this user that run a containing application out of any build folder. Only those
/// whose home is `home`, unless it is empty.
std::vector<pid_t> containingApplications(const std::filesystem::path& home);

/// Ends the containing applications whose home is `home`, but for `spared`, and waits until they
/// are gone.
void endContainingApplications(const std::filesystem::path& home,
                               const std::vector<pid_t>& spared = {});

/// The queue's and the application's files below a home folder.
class QuorvaFolder {
 public:
    explicit QuorvaFolder(const std::filesystem::path& home)
        : folder_(home / "Library/Application Support/Quorva") {}

    [[nodiscard]] std::filesystem::path queue() const { return folder_ / "ActionQueue"; }

    /// The texts of the records that are queued, by file name.
    [[nodiscard]] std::map<std::string, std::string> records() const;

    /// The lines that the containing application wrote about what it performed.
    [[nodiscard]] std::vector<std::string> performed() const;

 private:
    std::filesystem::path folder_;
};

/// Keeps the containing application from draining the queue, by the lock that it takes itself.
/// Without a queue there is nothing to keep.
class QueueHold {
 public:
    explicit QueueHold(const std::filesystem::path& queue);
    QueueHold(const QueueHold&) = delete;
    QueueHold& operator=(const QueueHold&) = delete;
    ~QueueHold();

 private:
    int descriptor_;
};

}  // namespace simulator
