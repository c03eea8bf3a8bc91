// What the certificate commands have in common.

#include "wifi/cert_command.h"

#include <unistd.h>

#include "util/format.h"
#include "wifi/command_run.h"
#include "wifi/console.h"
#include "wifi/printer_command.h"
#include "wifi/questions.h"
#include "wifi/results.h"
#include "wifi/secret_input.h"
#include "wifi/shown_text.h"
#include "wifi/translation.h"

namespace wifi {

namespace {

/// Asks on the terminal whether to replace a certificate. Returns false if standard input is not a
/// terminal, at the end of the input, and after a signal.
bool askToReplace(const std::string& name) {
  if (::isatty(STDIN_FILENO) != 1) {
    return false;
  }
  try {
    return askForConsent(
        // TRANSLATORS: y and N are the answers; the capital one is the usual one.
        util::formatted(tr("The printer has a certificate \"%s\". Replace it? [y/N] "),
                        shown(name).c_str()));
  } catch (const Interrupted&) {
    return false;
  } catch (const EndOfInput&) {
    return false;
  }
}

}  // namespace

int runOnCertificates(const Arguments& arguments, const CertCommand& command) {
  const session::Printer printer = choosePrinter(arguments);
  CommandRun run(arguments);
  Progress& progress = run.progress();
  session::Certificates certificates(printer, run.hooks());
  const session::CertificateReport report = command.run(certificates, [&](const std::string& name) {
    progress.clear();
    return arguments.cert.replace || askToReplace(name);
  });
  progress.clear();

  const auto error = explainCertificates(report, command.refusalRemedy);
  if (arguments.json) {
    print(documentText({reportEntry(report.report, Fields::ResultOnly, progress.seconds(), error,
                                    [&](Json& entry) {
                                      if (command.addJson) {
                                        command.addJson(report, entry);
                                      }
                                    })}));
  } else if (error) {
    printError(*error);
  } else {
    print(command.text(report));
  }
  return exitStatusOf(report.report, true, Interruption::signal());
}

}  // namespace wifi
