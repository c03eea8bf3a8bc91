#include "wifi/printer_command.h"

#include <unistd.h>

#include "session/discovery.h"
#include "util/format.h"
#include "wifi/command_run.h"
#include "wifi/commands.h"
#include "wifi/console.h"
#include "wifi/results.h"
#include "wifi/shown_text.h"
#include "wifi/text_report.h"
#include "wifi/translation.h"

namespace wifi {

namespace {

using session::Choice;

void printReport(const Arguments& arguments, const PrinterCommand& command,
                 const session::Report& report, double seconds) {
  const bool stored = report.result == session::Result::Stored && arguments.waitSeconds == 0;
  const auto error = stored ? std::nullopt : explain(report, command.profile);
  if (arguments.json) {
    print(documentText({reportJson(report, command.fields, seconds, error)}));
  } else if (!error) {
    const std::string text = command.text(report);
    print(::isatty(STDOUT_FILENO) == 1 ? wrapped(text) : text);
  }
  if (error && !arguments.json) {
    printError(*error);
  }
}

}  // namespace

session::Printer choosePrinter(const Arguments& arguments) {
  Choice choice = session::choosePrinter(arguments.printer);
  switch (choice.problem) {
    case Choice::Problem::None:
      break;
    case Choice::Problem::NoPrinters:
      throw CommandError(
          StatusNoPrinter,
          {tr("There is no USB printer on this machine."),
           tr("Check that the printer is switched on and its USB cable is plugged in.")});
    case Choice::Problem::NoMatch:
      throw CommandError(StatusNoPrinter, {util::formatted(tr("There is no printer \"%s\"."),
                                                           shown(arguments.printer).c_str()),
                                           tr("\"zvkwifi list\" shows the printers.")});
    case Choice::Problem::Several:
      throw CommandError(
          StatusInvalid,
          {arguments.printer.empty() ? std::string(tr("There are several printers."))
                                     : util::formatted(tr("\"%s\" fits several printers."),
                                                       shown(arguments.printer).c_str()),
           util::formatted(tr("Name one of them:\n%s"), listText(choice.candidates).c_str())});
  }
  return std::move(choice.printer);
}

int runOnPrinter(const Arguments& arguments, const PrinterCommand& command) {
  const session::Printer printer = choosePrinter(arguments);
  CommandRun run(arguments);
  session::Session session(printer, run.hooks());
  const session::Report report = command.run(session);
  run.progress().clear();
  printReport(arguments, command, report, run.progress().seconds());
  const int signal = report.result == session::Result::Interrupted ? Interruption::signal() : 0;
  return exitStatusOf({&report, 1}, arguments.waitSeconds > 0, signal);
}

int storeProfile(const Arguments& arguments, session::Profile& profile) {
  const session::Session::SetOptions options = {.waitSeconds = arguments.waitSeconds,
                                                .force = arguments.force};
  return runOnPrinter(
      arguments, {.fields = Fields::Set,
                  .run = [&](session::Session& session) { return session.set(profile, options); },
                  .text = setText,
                  .profile = &profile});
}

}  // namespace wifi
