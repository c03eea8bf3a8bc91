#include "wifi/printer_command.h"

#include <algorithm>
#include <unistd.h>
#include <utility>
#include <vector>

#include "session/discovery.h"
#include "util/format.h"
#include "wifi/command_run.h"
#include "wifi/commands.h"
#include "wifi/console.h"
#include "wifi/results.h"
#include "wifi/several_printers.h"
#include "wifi/shown_text.h"
#include "wifi/text_report.h"
#include "wifi/translation.h"

namespace wifi {

namespace {

using session::Choice;

Explanation noPrinters() {
  return {tr("There is no USB printer on this machine."),
          tr("Check that the printer is switched on and its USB cable is plugged in.")};
}

/// Returns the only printer that `name` fits, or the only printer of the machine if `name` is
/// empty. Throws `CommandError` if there is no such printer.
session::Printer printerCalled(const std::string& name) {
  Choice choice = session::choosePrinter(name);
  switch (choice.problem) {
    case Choice::Problem::None:
      break;
    case Choice::Problem::NoPrinters:
      throw CommandError(StatusNoPrinter, noPrinters());
    case Choice::Problem::NoMatch:
      throw CommandError(StatusNoPrinter,
                         {util::formatted(tr("There is no printer \"%s\"."), shown(name).c_str()),
                          tr("\"zvkwifi list\" shows the printers.")});
    case Choice::Problem::Several:
      throw CommandError(
          StatusInvalid,
          {name.empty() ? std::string(tr("There are several printers."))
                        : util::formatted(tr("\"%s\" fits several printers."), shown(name).c_str()),
           util::formatted(tr("Name one of them:\n%s"), listText(choice.candidates).c_str())});
  }
  return std::move(choice.printer);
}

/// Returns the printers that the arguments name. Throws `CommandError` if a name does not fit
/// exactly one printer, or if the arguments name a printer twice.
std::vector<session::Printer> choosePrinters(const Arguments& arguments) {
  if (arguments.all) {
    std::vector<session::Printer> printers = session::findPrinters();
    if (printers.empty()) {
      throw CommandError(StatusNoPrinter, noPrinters());
    }
    return printers;
  }
  if (arguments.printers.empty()) {
    return {printerCalled("")};
  }
  std::vector<session::Printer> printers;
  for (const std::string& name : arguments.printers) {
    session::Printer printer = printerCalled(name);
    if (std::ranges::count(printers, printer.device, &session::Printer::device) > 0) {
      throw CommandError(
          StatusInvalid,
          {util::formatted(tr("\"%s\" is a printer that was named already."), shown(name).c_str()),
           tr("Name each printer once.")});
    }
    printers.push_back(std::move(printer));
  }
  return printers;
}

void printOutcome(const Arguments& arguments, const Outcome& outcome) {
  if (arguments.json) {
    print(documentText({outcome.entry}));
  } else if (outcome.error) {
    printError(*outcome.error);
  } else {
    print(::isatty(STDOUT_FILENO) == 1 ? wrapped(outcome.text) : outcome.text);
  }
}

}  // namespace

session::Printer choosePrinter(const Arguments& arguments) {
  return printerCalled(arguments.printers.empty() ? "" : arguments.printers.front());
}

Outcome outcomeOf(const session::Report& report, const Arguments& arguments,
                  const PrinterCommand& command, double seconds) {
  const bool accepted = report.result == session::Result::Stored && arguments.waitSeconds == 0;
  Outcome outcome;
  outcome.error = accepted ? std::nullopt : explain(report, command.profile);
  if (arguments.json) {
    outcome.entry = reportEntry(report, command.fields, seconds, outcome.error);
  } else if (!outcome.error) {
    outcome.text = command.text(report);
  }
  outcome.status = exitStatusOf(report, arguments.waitSeconds > 0, Interruption::signal());
  return outcome;
}

Outcome runOnPrinter(const Arguments& arguments, const session::Printer& printer,
                     const PrinterCommand& command) {
  CommandRun run(arguments);
  session::Session session(printer, run.hooks());
  const session::Report report = command.run(session);
  run.progress().clear();
  return outcomeOf(report, arguments, command, run.progress().seconds());
}

int runOnPrinters(const Arguments& arguments, const PrinterCommand& command) {
  const std::vector<session::Printer> printers = choosePrinters(arguments);
  if (printers.size() > 1) {
    return runOnSeveral(arguments, printers, command);
  }
  const Outcome outcome = runOnPrinter(arguments, printers.front(), command);
  printOutcome(arguments, outcome);
  return outcome.status;
}

PrinterCommand setOf(const Arguments& arguments, session::Profile& profile) {
  const session::Session::SetOptions options = {.waitSeconds = arguments.waitSeconds,
                                                .force = arguments.force};
  return {.fields = Fields::Set,
          .run = [&profile,
                  options](session::Session& session) { return session.set(profile, options); },
          .text = setText,
          .profile = &profile};
}

int storeProfile(const Arguments& arguments, session::Profile& profile) {
  return runOnPrinters(arguments, setOf(arguments, profile));
}

}  // namespace wifi
