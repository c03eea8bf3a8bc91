#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "session/printer.h"

namespace wifi {

/// Decides when a printer that is plugged in is to be set up. Discovery says which printers there
/// are at a time. This class waits until the kernel's driver had time to bind a new printer, and it
/// distinguishes a printer that restarts after it was set up from one that is plugged in again.
///
/// A printer is recognised by its serial number. A printer without a serial number is always a new
/// one, with two exceptions: a printer that comes back at the same port during the work has
/// restarted, and so has, with `Rules::force`, a printer that appears there soon after a success.
class PlugIns {
 public:
  using Time = std::chrono::steady_clock::time_point;

  /// How the work on a printer ended.
  enum class End {
    Done,         ///< the printer is set up
    Unconfirmed,  ///< the settings are stored, but the printer did not confirm them in time
    Failed,       ///< any other failure
  };

  struct Rules {
    bool force = false;              ///< set up again what is done
    std::chrono::seconds waited{0};  ///< how long the work waits for a confirmation
  };

  /// What is to be done now.
  struct Decision {
    std::vector<session::Printer> ready;  ///< set these up, and call `finish` for each
    std::vector<session::Printer> done;   ///< plugged in again, but done before
    std::optional<Time> next;             ///< when to decide again, even if nothing happens
  };

  /// Leaves the printers in `present` alone while they stay plugged in.
  PlugIns(std::span<const session::Printer> present, const Rules& rules, Time now);

  /// Takes the printers that are there now.
  [[nodiscard]] Decision decide(std::span<const session::Printer> printers, Time now);

  /// Notes the end of the work on a printer that was ready.
  void finish(const session::Printer& printer, End end, Time now);

  /// How many printers are set up, and how many failed at the last attempt.
  [[nodiscard]] std::size_t doneCount() const { return m_Done; }
  [[nodiscard]] std::size_t failedCount() const { return m_Failed; }

 private:
  struct Record {
    std::string address;  ///< of the last plug-in: the kernel gives a new one each time
    std::string device;   ///< changes when a driver binds the printer
    Time since;           ///< when the device was first seen
    std::optional<Time> gone;
    bool isHandled = true;  ///< false while the last plug-in needs a decision
    bool isWorking = false;
    std::optional<End> end;  ///< of the last work, if there was one
    Time ended;
  };

  /// True and the serial number, or false and the port.
  using Key = std::pair<bool, std::string>;
  static Key keyOf(const session::Printer& printer);

  /// Notes where the printer is.
  void see(Record& record, const session::Printer& printer, Time now) const;
  /// Returns true if a printer that comes back now only restarts.
  bool isRestart(const Record& record, Time now) const;
  /// Takes the result of an earlier work out of the counts.
  void discount(Record& record);

  Rules m_Rules;
  std::map<Key, Record> m_Records;
  std::size_t m_Done = 0;
  std::size_t m_Failed = 0;
};

}  // namespace wifi
