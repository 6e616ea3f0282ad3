#pragma once

#include <filesystem>
#include <set>
#include <string>

namespace simulator {

/// The containing application's end of the action queue: performs a record by writing it down as a
/// line of "Performed.jsonl", and then deletes it.
///
/// A record is deleted only when its line is on disk, so none is lost; should the application end
/// between the two, the record is performed again. Several processes that drain one queue take
/// turns: each holds a lock of the queue's folder (`flock`) meanwhile.
class ActionQueue {
 public:
    /// `folder` is the "Quorva" folder of Application Support. It need not exist.
    explicit ActionQueue(std::filesystem::path folder) : folder_(std::move(folder)) {}

    /// Performs what is queued, oldest first. What is no record is left where it is and complained
    /// of once on standard error; what is not named like one is left in silence. Throws nothing.
    void drain() noexcept;

 private:
    void drainLocked(const std::filesystem::path& queue);
    void leaveAlone(const std::filesystem::path& file, const std::string& reason);

    std::filesystem::path folder_;
    /// What is no record, and records that are performed but could not be deleted.
    std::set<std::filesystem::path> leftAlone_;
};

}  // namespace simulator
