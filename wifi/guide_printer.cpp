// The question about the printer.

#include "wifi/guide_printer.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <vector>

#include "session/device_access.h"
#include "session/discovery.h"
#include "util/format.h"
#include "wifi/commands.h"
#include "wifi/questions.h"
#include "wifi/results.h"
#include "wifi/shown_text.h"
#include "wifi/translation.h"

namespace wifi {

namespace {

using session::OpenFailure;
using session::Printer;

/// Returns the device file of usblp if there is exactly one, otherwise an empty text. A container
/// may have the device file without the folders that discovery reads.
std::string onlyDevice() {
  constexpr int mostDevices = 16;  // the limit of usblp
  std::string only;
  for (int i = 0; i < mostDevices; ++i) {
    const std::string device = session::UsblpPrefix + std::to_string(i);
    if (!session::deviceExists(device)) {
      continue;
    }
    if (!only.empty()) {
      return {};
    }
    only = device;
  }
  return only;
}

/// Asks for a printer that discovery does not find. Returns nothing if the user asks to look again,
/// or if no printer fits the answer.
std::optional<Printer> askForDevice() {
  const std::string usual = onlyDevice();
  if (usual.empty()) {
    say(
        tr("No USB printer was found. Check that the printer is switched on and its USB cable is "
           "plugged in. Press Enter to look again, or type the printer's device, such as "
           "/dev/usb/lp0."));
  } else {
    say(util::formatted(tr("No USB printer was found, but there is the device %s."),
                        usual.c_str()));
  }
  std::string device = ask(usual.empty() ? std::string(tr("Device: "))
                                         : util::formatted(tr("Device [%s]: "), usual.c_str()),
                           [](const std::string& /*answer*/) { return std::string(); });
  if (device.empty()) {
    device = usual;
  }
  const session::Choice choice = session::choosePrinter(device);
  if (choice.problem == session::Choice::Problem::None) {
    return choice.printer;
  }
  if (!device.empty()) {
    say(util::formatted(tr("There is no printer \"%s\"."), shown(device).c_str()));
  }
  return std::nullopt;
}

std::optional<Printer> askForOneOf(const std::vector<Printer>& printers) {
  if (printers.empty()) {
    return askForDevice();
  }
  if (printers.size() == 1) {
    say(util::formatted(tr("Printer: %s"), printerText(printers.front()).c_str()));
    return printers.front();
  }
  std::vector<std::string> items;
  std::ranges::transform(printers, std::back_inserter(items), printerText);
  return printers[askForChoice(tr("Which printer?"), items, std::nullopt)];
}

Explanation explanationOf(const Printer& printer, const OpenFailure& failure) {
  using Kind = OpenFailure::Kind;
  session::Report report;
  report.printer = printer;
  report.openFailure = failure;
  report.result = failure.kind == Kind::NoPermission ? session::Result::NoPermission
                  : failure.kind == Kind::Busy       ? session::Result::Busy
                                                     : session::Result::NoSuchPrinter;
  return explain(report, nullptr).value_or(Explanation{});
}

}  // namespace

session::Printer askForPrinter(const session::Machine& machine) {
  for (;;) {
    const std::optional<Printer> printer = askForOneOf(session::findPrinters(machine));
    if (!printer) {
      continue;
    }
    const std::optional<OpenFailure> failure = session::tryOpen(*printer, machine);
    if (!failure) {
      return *printer;
    }
    const Explanation explanation = explanationOf(*printer, *failure);
    if (failure->kind == OpenFailure::Kind::NoPermission) {
      throw CommandError(StatusNoPermission, explanation);
    }
    say(explanation.message + "\n" + explanation.remedy);
    ask(tr("Press Enter to try again: "), [](const std::string& /*answer*/) { return ""; });
  }
}

}  // namespace wifi
