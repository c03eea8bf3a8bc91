#include "wifi/printer_workers.h"

#include <algorithm>
#include <unistd.h>
#include <utility>

#include "util/clock.h"
#include "wifi/console.h"
#include "wifi/shown_text.h"

namespace wifi {

namespace {

/// A worker is killed when it has taken the time for the confirmation (--wait) and this many
/// seconds more. The longest exchange without a reply takes less than these seconds.
constexpr int MarginSeconds = 180;

}  // namespace

PrinterWorkers::PrinterWorkers(const Arguments& arguments, const PrinterCommand& command)
    : m_Arguments(arguments),
      m_Command(command),
      m_OfWorkers(arguments),
      m_Workers(std::chrono::seconds(arguments.waitSeconds + MarginSeconds)) {
  m_OfWorkers.quiet = true;
}

void PrinterWorkers::start(session::Printer printer) {
  m_Workers.start([&] {
    // Only the first process shows progress.
    util::observePauses({});
    return bytesOf(runOnPrinter(m_OfWorkers, printer, m_Command));
  });
  m_Started.push_back({std::move(printer), Clock::now()});
}

std::optional<PrinterWorkers::Done> PrinterWorkers::next(const std::function<void()>& onTick) {
  const auto finished = m_Workers.next(onTick);
  return finished ? std::optional(doneFrom(*finished)) : std::nullopt;
}

std::optional<PrinterWorkers::Done> PrinterWorkers::nextWithin(std::chrono::milliseconds limit,
                                                               int descriptor) {
  const auto finished = m_Workers.nextWithin(limit, descriptor);
  return finished ? std::optional(doneFrom(*finished)) : std::nullopt;
}

PrinterWorkers::Done PrinterWorkers::doneFrom(const Workers::Finished& finished) const {
  const Started& started = m_Started[finished.index];
  Done done = {finished.index, started.printer, {}};
  if (finished.how == Workers::Finished::How::Returned) {
    if (auto outcome = outcomeFrom(finished.bytes)) {
      done.outcome = std::move(*outcome);
      return done;
    }
  }
  session::Report report;
  report.printer = started.printer;
  report.result = session::Result::Failed;
  const std::chrono::duration<double> took = Clock::now() - started.time;
  done.outcome = outcomeOf(report, m_Arguments, m_Command, took.count());
  return done;
}

void printNamed(const std::string& name, const Outcome& outcome) {
  if (outcome.error) {
    printError({name + ": " + outcome.error->message, outcome.error->remedy});
    return;
  }
  // A result of several lines is followed by an empty line.
  const bool hasSeveralLines = std::ranges::count(outcome.text, '\n') > 1;
  const std::string text = outcome.text + (hasSeveralLines ? "\n" : "");
  print(::isatty(STDOUT_FILENO) == 1 ? wrapped(text) : text);
}

}  // namespace wifi
