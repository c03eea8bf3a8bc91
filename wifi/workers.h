#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

#include "util/unique_fd.h"

namespace wifi {

/// Processes that work at the same time. Each is a fork of this one, so it has what this process
/// knows, and it returns bytes through a pipe. What happens to one does not affect the others.
///
///     Workers workers(limit);
///     for (const Printer& printer : printers) {
///       workers.start([&] { return resultOf(printer); });
///     }
///     while (const auto finished = workers.next(onTick)) { ... }
class Workers {
 public:
  /// The end of one worker.
  struct Finished {
    /// How it ended: with its result, early, or because its time was over.
    enum class How { Returned, Died, Overdue };

    std::size_t index = 0;  ///< 0 for the worker that was started first
    How how = How::Died;
    std::string bytes;  ///< what its function returned; incomplete unless `how` is `Returned`
  };

  /// A worker is killed if it takes longer than `limit`.
  explicit Workers(std::chrono::seconds limit) : m_Limit(limit) {}
  /// Kills the workers that have not ended.
  ~Workers();
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  /// Starts a process that calls `work` and ends. The process gets SIGTERM if this one dies. Throws
  /// `std::system_error` if there can be no further process.
  void start(const std::function<std::string()>& work);

  /// Waits for the next worker that ends, and returns its end; nothing if all have ended. Calls
  /// `onTick` about once a second. Returns once for each worker.
  [[nodiscard]] std::optional<Finished> next(const std::function<void()>& onTick);

  /// Waits until a worker ends, `descriptor` can be read, a signal arrives or `limit` has passed.
  /// Returns the end of the worker if there is one. With the descriptor -1 waits only for the rest.
  [[nodiscard]] std::optional<Finished> nextWithin(std::chrono::milliseconds limit, int descriptor);

  /// Returns the count of workers that have not ended.
  [[nodiscard]] std::size_t running() const;

  /// Sends a signal to the workers that have not ended.
  void signal(int number) const;

 private:
  struct Worker {
    pid_t process = -1;  ///< -1 once it has ended
    util::UniqueFd pipe;
    std::string bytes;
    std::chrono::steady_clock::time_point end;
  };

  /// Returns `limit`, or the time until the end of a worker's time if that is shorter.
  int millisecondsToWait(std::chrono::milliseconds limit) const;
  /// Reads what a worker has written. Returns false at the end of its bytes.
  static bool readSome(Worker& worker);
  Finished finish(std::size_t index, bool overdue);

  std::chrono::seconds m_Limit;
  std::vector<Worker> m_Workers;
};

}  // namespace wifi
