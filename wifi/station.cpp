#include "wifi/station.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <optional>
#include <utility>

#include "session/discovery.h"
#include "wifi/plug_ins.h"
#include "wifi/printer_workers.h"
#include "wifi/results.h"
#include "wifi/signals.h"
#include "wifi/station_reports.h"

namespace wifi {

namespace {

using Clock = std::chrono::steady_clock;

/// A signal that arrives just before a wait is noticed after this time.
constexpr std::chrono::milliseconds LongestWait = std::chrono::seconds(1);

PlugIns::End endOf(const Outcome& outcome) {
  switch (outcome.status) {
    case StatusDone:
      return PlugIns::End::Done;
    case StatusNotConfirmed:
      return PlugIns::End::Unconfirmed;
    default:
      return PlugIns::End::Failed;
  }
}

class Station {
 public:
  Station(const Arguments& arguments, const PrinterCommand& command, UsbMonitor& monitor,
          const session::Machine& machine)
      : m_Arguments(arguments),
        m_Command(command),
        m_Monitor(monitor),
        m_Machine(machine),
        m_PlugIns(printers(),
                  {.force = arguments.force, .waited = std::chrono::seconds(arguments.waitSeconds)},
                  Clock::now()),
        m_Workers(arguments, command),
        m_Reports(arguments) {}

  int run() {
    while (Interruption::signal() == 0 && !m_Reports.hasFailed()) {
      m_Reports.show(m_Workers.running(), summary());
      const auto done = m_Workers.nextWithin(millisecondsToWait(), m_Monitor.descriptor());
      if (done) {
        take(*done);
      }
      const bool happened = m_Monitor.takeEvents();
      if (done || happened || (m_Next && Clock::now() >= *m_Next)) {
        look();
      }
      m_Reports.update();
    }
    // Ctrl-C reaches the workers too, but a signal from kill(1) does not.
    m_Workers.signal(SIGTERM);
    while (const auto done = m_Workers.next([this] { m_Reports.update(); })) {
      take(*done);
    }
    m_Reports.finish(summary());
    return m_PlugIns.failedCount() == 0 ? StatusDone : StatusSomeFailed;
  }

 private:
  /// Returns the printers that are there. Does not open them, because a worker may be about to.
  std::vector<session::Printer> printers() const {
    return session::findPrinters(m_Machine, session::StateTest::None);
  }

  Summary summary() const { return {m_PlugIns.doneCount(), m_PlugIns.failedCount(), m_Skipped}; }

  std::chrono::milliseconds millisecondsToWait() const {
    if (!m_Next) {
      return LongestWait;
    }
    const auto rest = std::chrono::ceil<std::chrono::milliseconds>(*m_Next - Clock::now());
    return std::clamp(rest, std::chrono::milliseconds(0), LongestWait);
  }

  /// Finds out which printers were plugged in, and starts the work on those that are ready.
  void look() {
    PlugIns::Decision decision = m_PlugIns.decide(printers(), Clock::now());
    m_Next = decision.next;
    for (const session::Printer& printer : decision.done) {
      ++m_Skipped;
      session::Report report;
      report.printer = printer;
      report.result = session::Result::Skipped;
      m_Reports.add(printer, outcomeOf(report, m_Arguments, m_Command, 0.0));
    }
    for (session::Printer& printer : decision.ready) {
      m_Workers.start(std::move(printer));
    }
  }

  void take(const PrinterWorkers::Done& done) {
    m_PlugIns.finish(done.printer, endOf(done.outcome), Clock::now());
    m_Reports.add(done.printer, done.outcome);
  }

  const Arguments& m_Arguments;
  const PrinterCommand& m_Command;
  UsbMonitor& m_Monitor;
  const session::Machine& m_Machine;
  PlugIns m_PlugIns;
  PrinterWorkers m_Workers;
  StationReports m_Reports;
  std::optional<PlugIns::Time> m_Next;
  std::size_t m_Skipped = 0;
};

}  // namespace

int runStation(const Arguments& arguments, const PrinterCommand& command, UsbMonitor& monitor,
               const session::Machine& machine) {
  const Interruption interruption;
  return Station(arguments, command, monitor, machine).run();
}

}  // namespace wifi
