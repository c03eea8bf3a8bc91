#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "session/printer.h"
#include "wifi/arguments.h"
#include "wifi/console.h"
#include "wifi/outcome.h"
#include "wifi/printer_command.h"
#include "wifi/workers.h"

namespace wifi {

/// Runs a command on printers at the same time, each in a separate process, so that a printer that
/// hangs does not hold up the others. The arguments and the command must outlive this object.
class PrinterWorkers {
 public:
  /// The end of the work on one printer.
  struct Done {
    std::size_t index = 0;     ///< 0 for the printer that was started first
    session::Printer printer;  ///< as it was at the start
    Outcome outcome;
  };

  PrinterWorkers(const Arguments& arguments, const PrinterCommand& command);

  /// Starts the work on a printer. If there can be no further process, the work fails, and `next`
  /// and `nextWithin` return this failure first.
  void start(session::Printer printer);

  /// See `Workers`.
  [[nodiscard]] std::optional<Done> next(const std::function<void()>& onTick);
  [[nodiscard]] std::optional<Done> nextWithin(std::chrono::milliseconds limit, int descriptor);
  [[nodiscard]] std::size_t running() const { return m_Workers.running(); }
  void signal(int number) const { m_Workers.signal(number); }

 private:
  using Clock = std::chrono::steady_clock;
  struct Started {
    std::size_t index;
    session::Printer printer;
    Clock::time_point time;
  };

  /// Returns the outcome that the worker has returned. If it has not, the printer's command failed.
  std::optional<Done> doneFrom(const std::optional<Workers::Finished>& finished);
  /// Returns the outcome of a command that failed, for `reason` or because its worker has died.
  Outcome failed(const Started& started, const std::optional<Explanation>& reason) const;
  /// Returns a printer whose work could not start, if there is one.
  std::optional<Done> takeNotStarted();

  const Arguments& m_Arguments;
  const PrinterCommand& m_Command;
  Arguments m_OfWorkers;
  Workers m_Workers;
  std::map<std::size_t, Started> m_Started;  ///< by the indices of the workers
  std::deque<Done> m_NotStarted;
  std::size_t m_Count = 0;  ///< of the calls of `start`
};

/// Prints the text of an outcome, or an error on standard error, with `name` before the message.
void printNamed(ResultOutput& output, const std::string& name, const Outcome& outcome);

}  // namespace wifi
