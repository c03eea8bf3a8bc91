// zvkwifi without a command: asks step by step

#include <cstdio>
#include <memory>
#include <unistd.h>
#include <vector>

#include "wifi/commands.h"
#include "wifi/guide_printer.h"
#include "wifi/guide_settings.h"
#include "wifi/printer_command.h"
#include "wifi/questions.h"
#include "wifi/results.h"
#include "wifi/secret_input.h"
#include "wifi/shown_text.h"
#include "wifi/signals.h"
#include "wifi/text_report.h"
#include "wifi/translation.h"

namespace wifi {

namespace {

using session::Printer;

int printUsage() {
  Arguments help;
  readArguments({"--help"}, help);
  std::fputs(help.text.c_str(), stderr);
  return StatusInvalid;
}

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    text.append(text.empty() ? "" : ", ").append(word);
  }
  return text;
}

/// Returns the printer and the settings, one line for each value. Contains only the length of the
/// secret, not the secret.
std::string summaryOf(const Printer& printer, const session::Profile& profile) {
  std::vector<LabelledValue> values = {
      {tr("Printer"), printerText(printer)},
      {tr("Network"), shown(profile.ssid)},
      {tr("Security"), securityText(profile.security)},
  };
  if (profile.security == session::Security::Enterprise) {
    values.push_back({tr("User"), shown(profile.user)});
    values.push_back({tr("Methods"), joined(profile.eapMethods)});
    values.push_back({tr("Inner method"),
                      profile.innerMethod.empty() ? tr("none") : profile.innerMethod.c_str()});
  }
  if (session::needsSecret(profile)) {
    values.push_back({tr("Length of the secret"), std::to_string(profile.secret.text().size())});
  }
  return labelledText(values);
}

int endWithoutSending() {
  say(tr("Nothing was sent."));
  return StatusInvalid;
}

}  // namespace

int guideCommand(const Arguments& given) {
  if (given.json) {
    throw UsageError(tr("expected a command; see zvkwifi --help"));
  }
  if (::isatty(STDIN_FILENO) != 1 || ::isatty(STDERR_FILENO) != 1) {
    return printUsage();
  }
  Arguments arguments = given;
  std::unique_ptr<session::Profile> profile;
  try {
    const Interruption interruption;
    say(tr(
        "This puts a printer into a wireless network. Ctrl-C ends it; nothing is sent before you "
        "agree."));
    const Printer printer = askForPrinter();
    arguments.printers = {printer.device};
    profile = askForProfile();
    say("\n" + summaryOf(printer, *profile));
    if (!askForConsent(tr("Send now? [y/N] "))) {
      return endWithoutSending();
    }
  } catch (const EndOfInput&) {
    return endWithoutSending();
  }
  return storeProfile(arguments, *profile);
}

}  // namespace wifi
