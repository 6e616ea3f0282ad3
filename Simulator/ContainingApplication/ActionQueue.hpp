#pragma once

namespace simulator {

/// The containing application's end of the action queue: performs what is queued, oldest first, by
/// writing each record down as a line of "Performed.jsonl" in the user's "Quorva" folder of
/// Application Support, and then deletes it. There are two queues: the one in the extension's
/// container, and the one beside that file, which the simulator uses without a sandbox.
///
/// A record is deleted only when its line is on disk, so none is lost; should the application end
/// between the two, the record is performed again. Several processes that drain one queue take
/// turns: each holds a lock of the queue's folder (`flock`) meanwhile. What is not a record is left
/// where it is and complained of once on standard error; what is not named like one is left in
/// silence. Main thread only.
void drainQueue() noexcept;

}  // namespace simulator
