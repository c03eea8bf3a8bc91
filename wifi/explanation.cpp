#include "wifi/explanation.h"

#include <cstring>

#include "npa/status_texts.h"
#include "util/format.h"
#include "wifi/shown_text.h"
#include "wifi/translation.h"

namespace wifi {

namespace {

using session::OpenFailure;
using session::Report;
using session::Result;
using util::formatted;

Explanation explainPermission(const OpenFailure& failure) {
  Explanation explanation;
  explanation.message =
      formatted(tr("No permission to use %s, which belongs to %s, group %s."),
                shown(failure.node).c_str(), failure.owner.c_str(), failure.group.c_str());
  explanation.remedy =
      failure.groupMayUse
          ? formatted(tr("Join the group with \"sudo usermod -aG %s $USER\" and log in again."),
                      failure.group.c_str())
          : std::string(tr("Run the command as root."));
  return explanation;
}

Explanation explainBusy(const OpenFailure& failure) {
  if (failure.user) {
    return {formatted(tr("%s is in use by %s (process %d)."), shown(failure.node).c_str(),
                      shown(failure.user->name).c_str(), static_cast<int>(failure.user->pid)),
            tr("Wait until it is done, or end it.")};
  }
  return {formatted(tr("%s is in use by another program."), shown(failure.node).c_str()),
          tr("Wait until the printer has nothing to print, or look for the program as root.")};
}

Explanation explainMissing(const Report& report) {
  const bool failed = report.openFailure && report.openFailure->kind == OpenFailure::Kind::Failed;
  Explanation explanation;
  explanation.message =
      failed ? formatted(tr("%s cannot be opened: %s."), shown(report.openFailure->node).c_str(),
                         std::strerror(report.openFailure->error))
             : formatted(tr("There is no printer at %s."), shown(report.printer.device).c_str());
  explanation.remedy =
      tr("Check that the printer is switched on and its USB cable is plugged in. "
         "\"zvkwifi list\" shows the printers.");
  return explanation;
}

/// Explains why a printer that has stored the settings is not in the network. The remedy lists the
/// causes, the most likely one first.
Explanation explainNotJoined(const Report& report, const session::Profile* profile) {
  Explanation explanation;
  const session::AdapterState& state = report.state;
  const bool enterprise = profile != nullptr && profile->security == session::Security::Enterprise;
  if (!state.ssid) {
    explanation.message =
        tr("The settings are stored, but the printer has not answered since then.");
    explanation.remedy =
        tr("Wait a minute and run \"zvkwifi status\". If it does not answer either, switch the "
           "printer off and on.");
    return explanation;
  }
  explanation.message = tr("The settings are stored, but the printer is not in the network.");
  if (state.troubleCode && *state.troubleCode != 0) {
    explanation.message += formatted(tr(" It reports trouble code %d."), *state.troubleCode);
  }
  if (enterprise && state.authentication && *state.authentication < npa::AuthStatusTexts.size()) {
    explanation.message += formatted(tr(" Its authentication status is \"%s\"."),
                                     tr(npa::AuthStatusTexts[*state.authentication].data()));
  }
  if (enterprise) {
    explanation.remedy =
        tr("Check user, password and methods, then the certificates with \"zvkwifi cert list\", "
           "then that the network is in reach of the printer.");
  } else if (state.troubleCode == npa::Byte{0}) {
    explanation.remedy =
        tr("It has no address yet. Check that the network gives addresses (DHCP), then run "
           "\"zvkwifi status\" in a minute.");
  } else {
    explanation.remedy = tr(
        "Check the passphrase or key, then the spelling of the network's name, then that the "
        "network is in reach of the printer and on 2.4 GHz, then that it gives addresses (DHCP).");
  }
  return explanation;
}

Explanation explainInterrupted(const Report& report) {
  if (!report.sentSettings && !report.sentReset) {
    return {tr("Interrupted. Nothing was stored."), {}};
  }
  return {report.sentReset ? tr("Interrupted. The adapter may have been reset.")
                           : tr("Interrupted. The settings may have been stored."),
          tr("Run \"zvkwifi status\" to see the printer's network.")};
}

Explanation explainNoAnswer(const Report& report) {
  Explanation explanation;
  if (report.sentReset) {
    explanation.message = tr("The adapter did not answer. It may have been reset.");
  } else if (report.sentSettings) {
    explanation.message = tr("The adapter did not answer. The settings may have been stored.");
  } else {
    explanation.message = tr("The adapter does not answer. Nothing was stored.");
  }
  explanation.remedy = tr(
      "Check that the printer has a wireless adapter. Switch it off and on, wait a minute, and try "
      "again.");
  return explanation;
}

Explanation explainFailed() {
  return {tr("The process for this printer died or took too long. The settings may have been "
             "stored."),
          tr("Switch the printer off and on, wait a minute, and try again.")};
}

Explanation explainRefused(const Report& report) {
  return {report.sentSettings ? tr("The adapter refused the settings.")
                              : tr("The adapter refused the request."),
          tr("Check that the adapter supports this kind of network, or reset it with "
             "\"zvkwifi reset\" and try again.")};
}

}  // namespace

std::string nameOf(const session::Printer& printer) {
  std::string name = printer.make.value_or("");
  if (printer.model) {
    name.append(name.empty() ? "" : " ").append(*printer.model);
  }
  return shown(name.empty() ? printer.device : name);
}

std::string printerText(const session::Printer& printer) {
  const std::string name = nameOf(printer);
  return name == printer.device ? name : name + " (" + printer.device + ")";
}

std::optional<Explanation> explain(const Report& report, const session::Profile* profile) {
  switch (report.result) {
    case Result::NoPermission:
      return explainPermission(*report.openFailure);
    case Result::Busy:
      return explainBusy(*report.openFailure);
    case Result::NoSuchPrinter:
      return explainMissing(report);
    case Result::Stored:
      return explainNotJoined(report, profile);
    case Result::Interrupted:
      return explainInterrupted(report);
    case Result::NoAnswer:
      return explainNoAnswer(report);
    case Result::Refused:
      return explainRefused(report);
    case Result::Failed:
      return explainFailed();
    case Result::Ok:
    case Result::Unchanged:
    case Result::Confirmed:
    case Result::DryRun:
    case Result::Invalid:
    case Result::Skipped:
      break;
  }
  return std::nullopt;
}

}  // namespace wifi
