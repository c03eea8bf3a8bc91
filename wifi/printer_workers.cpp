#include "wifi/printer_workers.h"

#include <algorithm>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "util/clock.h"
#include "wifi/shown_text.h"
#include "wifi/translation.h"

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
  Started started = {m_Count++, std::move(printer), Clock::now()};
  try {
    const std::size_t worker = m_Workers.start([&] {
      // Only the first process shows progress.
      util::observePauses({});
      return bytesOf(runOnPrinter(m_OfWorkers, started.printer, m_Command));
    });
    m_Started.emplace(worker, std::move(started));
  } catch (const std::system_error& error) {
    Outcome outcome = failed(started, Explanation{error.what(), tr("Nothing was sent.")});
    m_NotStarted.push_back({started.index, std::move(started.printer), std::move(outcome)});
  }
}

std::optional<PrinterWorkers::Done> PrinterWorkers::next(const std::function<void()>& onTick) {
  auto done = takeNotStarted();
  return done ? std::move(done) : doneFrom(m_Workers.next(onTick));
}

std::optional<PrinterWorkers::Done> PrinterWorkers::nextWithin(std::chrono::milliseconds limit,
                                                               int descriptor) {
  auto done = takeNotStarted();
  return done ? std::move(done) : doneFrom(m_Workers.nextWithin(limit, descriptor));
}

std::optional<PrinterWorkers::Done> PrinterWorkers::takeNotStarted() {
  if (m_NotStarted.empty()) {
    return std::nullopt;
  }
  Done done = std::move(m_NotStarted.front());
  m_NotStarted.pop_front();
  return done;
}

std::optional<PrinterWorkers::Done> PrinterWorkers::doneFrom(
    const std::optional<Workers::Finished>& finished) {
  if (!finished) {
    return std::nullopt;
  }
  const Started started = std::move(m_Started.extract(finished->index).mapped());
  std::optional<Outcome> outcome;
  if (finished->how == Workers::Finished::How::Returned) {
    outcome = outcomeFrom(finished->bytes);
  }
  return Done{started.index, started.printer, outcome ? std::move(*outcome) : failed(started, {})};
}

Outcome PrinterWorkers::failed(const Started& started,
                               const std::optional<Explanation>& reason) const {
  session::Report report;
  report.printer = started.printer;
  report.result = session::Result::Failed;
  const std::chrono::duration<double> took = Clock::now() - started.time;
  Outcome outcome = outcomeOf(report, m_Arguments, m_Command, took.count());
  if (reason) {
    outcome.error = reason;
    if (m_Arguments.json) {
      outcome.entry = reportEntry(report, m_Command.fields, took.count(), reason);
    }
  }
  return outcome;
}

void printNamed(ResultOutput& output, const std::string& name, const Outcome& outcome) {
  if (outcome.error) {
    printError({name + ": " + outcome.error->message, outcome.error->remedy});
    return;
  }
  // A result of several lines is followed by an empty line.
  const bool hasSeveralLines = std::ranges::count(outcome.text, '\n') > 1;
  const std::string text = outcome.text + (hasSeveralLines ? "\n" : "");
  output.print(::isatty(STDOUT_FILENO) == 1 ? wrapped(text) : text);
}

}  // namespace wifi
