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

/// Processes that work at the same time. Each worker is a fork of this process, so it has a copy of
/// the data of this process. It returns bytes through a pipe. If one worker dies or hangs, the
/// others continue.
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
    /// How the worker ended: it returned its result, it died before that, or it was killed because
    /// it exceeded `limit` and had nothing to read.
    enum class How { Returned, Died, Overdue };

    std::size_t index = 0;  ///< 0 for the worker that was started first
    How how = How::Died;
    std::string bytes;  ///< the function's result; complete only if `how` is `Returned`
  };

  /// A worker is killed if it takes longer than `limit`.
  explicit Workers(std::chrono::seconds limit) : m_Limit(limit) {}
  /// Sends SIGTERM to the workers that have not ended, and waits until they end or exceed `limit`.
  ~Workers();
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  /// Starts a process that calls `work` and ends. The process gets SIGTERM if its parent dies.
  /// Returns the worker's index. Throws `std::system_error` if the process cannot be created.
  std::size_t start(const std::function<std::string()>& work);

  /// Waits until a worker ends or exceeds `limit`, and returns its end. Each worker is returned
  /// once. Returns nothing after the last worker. Calls `onTick` at least once a second.
  [[nodiscard]] std::optional<Finished> next(const std::function<void()>& onTick);

  /// Waits until a worker ends, `descriptor` can be read, a signal arrives or `limit` has passed.
  /// Returns the end of the worker if there is one. With the descriptor -1 waits only for the rest.
  [[nodiscard]] std::optional<Finished> nextWithin(std::chrono::milliseconds limit, int descriptor);

  /// Returns the count of workers that have not ended.
  [[nodiscard]] std::size_t running() const { return m_Workers.size(); }

  /// Sends a signal to the workers that have not ended.
  void signal(int number) const;

 private:
  struct Worker {
    std::size_t index;
    pid_t process;
    util::UniqueFd pipe;
    std::string bytes;
    std::chrono::steady_clock::time_point end;  ///< when the worker is killed
  };

  /// Returns `limit`, or the time until the first worker exceeds its limit if that is shorter.
  int millisecondsToWait(std::chrono::milliseconds limit) const;
  /// Reads what a worker has written. Returns false at the end of its bytes or if the read fails.
  static bool readSome(Worker& worker);
  /// Takes the worker out of the list. Kills its process if it is overdue, otherwise waits for it.
  Finished finish(std::vector<Worker>::iterator worker, bool overdue);
  /// Removes the killed processes that have ended from the system's table.
  void reap();

  std::chrono::seconds m_Limit;
  std::vector<Worker> m_Workers;  ///< those that have not ended
  std::vector<pid_t> m_Killed;    ///< killed processes that may not have ended
  std::size_t m_Count = 0;        ///< of the workers that were started
};

}  // namespace wifi
