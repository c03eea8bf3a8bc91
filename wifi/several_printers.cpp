#include "wifi/several_printers.h"

#include <csignal>
#include <unistd.h>
#include <vector>

#include "util/format.h"
#include "wifi/console.h"
#include "wifi/explanation.h"
#include "wifi/printer_workers.h"
#include "wifi/progress.h"
#include "wifi/results.h"
#include "wifi/signals.h"
#include "wifi/translation.h"

namespace wifi {

namespace {

/// Prints the outcomes of the printers.
class SeveralReports {
 public:
  SeveralReports(const Arguments& arguments, std::size_t count)
      : m_Arguments(arguments), m_Progress(arguments.quiet), m_Outcomes(count) {
    showCount();
  }

  void tick() { m_Progress.update(); }

  /// Takes the outcome of a printer. Prints the outcome now, except with --json and without
  /// --json-lines: then `finish` prints one document for all printers.
  void add(std::size_t index, const session::Printer& printer, Outcome outcome) {
    ++m_Done;
    m_Progress.clear();
    if (m_Arguments.jsonLines) {
      m_Output.print(documentText({outcome.entry}));
    } else if (!m_Arguments.json) {
      printNamed(m_Output, printerText(printer), outcome);
    }
    m_Outcomes[index] = std::move(outcome);
    showCount();
  }

  /// With --json and without --json-lines, prints one document for all printers. Returns the exit
  /// status. Throws `OutputError` if standard output has failed.
  int finish() {
    m_Progress.clear();
    std::vector<JsonEntry> entries;
    bool allDone = true;
    for (Outcome& outcome : m_Outcomes) {
      allDone = allDone && outcome.status == StatusDone;
      entries.push_back(std::move(outcome.entry));
    }
    if (m_Arguments.json && !m_Arguments.jsonLines) {
      m_Output.print(documentText(entries));
    }
    m_Output.finish();
    if (Interruption::signal() != 0) {
      return StatusSignalBase + Interruption::signal();
    }
    return allDone ? StatusDone : StatusSomeFailed;
  }

 private:
  /// Shows the count only on a terminal. Elsewhere the printed results show the progress.
  void showCount() {
    if (::isatty(STDERR_FILENO) == 1) {
      m_Progress.showText(
          util::formatted(tr("%zu of %zu printers are done"), m_Done, m_Outcomes.size()));
    }
  }

  const Arguments& m_Arguments;
  Progress m_Progress;
  ResultOutput m_Output;
  std::vector<Outcome> m_Outcomes;
  std::size_t m_Done = 0;
};

}  // namespace

int runOnSeveral(const Arguments& arguments, std::span<const session::Printer> printers,
                 const PrinterCommand& command) {
  const Interruption interruption;
  PrinterWorkers workers(arguments, command);
  for (const session::Printer& printer : printers) {
    workers.start(printer);
  }
  if (command.profile != nullptr) {
    command.profile->secret.clear();
  }
  SeveralReports reports(arguments, printers.size());
  bool signalled = false;
  const auto onTick = [&] {
    reports.tick();
    if (Interruption::signal() != 0 && !signalled) {
      // Ctrl-C reaches the workers too, but a signal from kill(1) does not.
      workers.signal(SIGTERM);
      signalled = true;
    }
  };
  while (auto done = workers.next(onTick)) {
    reports.add(done->index, done->printer, std::move(done->outcome));
  }
  return reports.finish();
}

}  // namespace wifi
