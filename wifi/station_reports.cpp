#include "wifi/station_reports.h"

#include <cstdio>
#include <unistd.h>

#include "util/format.h"
#include "wifi/console.h"
#include "wifi/explanation.h"
#include "wifi/printer_workers.h"
#include "wifi/shown_text.h"
#include "wifi/translation.h"

namespace wifi {

namespace {

std::string summaryText(const Summary& summary) {
  return util::formatted(tr("Done: %zu, failed: %zu, skipped: %zu."), summary.done, summary.failed,
                         summary.skipped);
}

}  // namespace

StationReports::StationReports(const Arguments& arguments)
    : m_Arguments(arguments), m_Progress(arguments.quiet) {
  if (!arguments.quiet) {
    std::fputs(tr("Plug in the printers, one or several at a time. Ctrl-C ends.\n"), stderr);
  }
}

void StationReports::show(std::size_t underWay, const Summary& summary) {
  if (::isatty(STDERR_FILENO) == 1) {
    m_Progress.showText(util::formatted(tr("Under way: %zu."), underWay) + " " +
                        summaryText(summary));
  }
}

void StationReports::add(const session::Printer& printer, const Outcome& outcome) {
  m_Progress.clear();
  if (m_Arguments.jsonLines) {
    m_Output.print(documentText({outcome.entry}));
  } else if (m_Arguments.json) {
    m_Entries.push_back(outcome.entry);
  } else if (printer.serial) {
    const std::string serial = shown(*printer.serial);
    Outcome named = outcome;
    named.text.insert(0, serial + ": ");
    printNamed(m_Output, serial, named);
  } else {
    printNamed(m_Output, printerText(printer), outcome);
  }
  if (::isatty(STDERR_FILENO) == 1) {
    std::fputs("\a", stderr);
  }
}

void StationReports::finish(const Summary& summary) {
  m_Progress.clear();
  m_Output.print(m_Arguments.json ? documentText(m_Entries, summary) : summaryText(summary) + "\n");
  m_Output.finish();
}

}  // namespace wifi
