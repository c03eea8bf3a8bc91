#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "session/printer.h"
#include "wifi/arguments.h"
#include "wifi/console.h"
#include "wifi/json_report.h"
#include "wifi/outcome.h"
#include "wifi/progress.h"

namespace wifi {

/// Prints what a station does. The arguments must outlive this object.
class StationReports {
 public:
  explicit StationReports(const Arguments& arguments);

  /// Shows on a terminal how far the work is.
  void show(std::size_t underWay, const Summary& summary);
  void update() { m_Progress.update(); }

  /// Prints the outcome of a printer, or keeps it for the document at the end. Rings the bell of
  /// the terminal.
  void add(const session::Printer& printer, const Outcome& outcome);

  /// Returns true if standard output has failed.
  [[nodiscard]] bool hasFailed() const { return m_Output.hasFailed(); }

  /// Prints the summary, and the document if there is to be one. Throws `OutputError` if standard
  /// output has failed.
  void finish(const Summary& summary);

 private:
  const Arguments& m_Arguments;
  Progress m_Progress;
  ResultOutput m_Output;
  std::vector<JsonEntry> m_Entries;
};

}  // namespace wifi
