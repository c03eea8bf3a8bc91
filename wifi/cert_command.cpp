// What the certificate commands have in common.

#include "wifi/cert_command.h"

#include <cerrno>
#include <cstdio>
#include <unistd.h>

#include "util/format.h"
#include "wifi/console.h"
#include "wifi/printer_command.h"
#include "wifi/progress.h"
#include "wifi/results.h"
#include "wifi/shown_text.h"
#include "wifi/signals.h"
#include "wifi/trace.h"
#include "wifi/translation.h"

namespace wifi {

namespace {

/// Reads a line from the terminal and returns true if it is a yes. The end of the input and a
/// signal are a no.
bool readYes() {
  std::string line;
  for (;;) {
    char c = 0;
    const ssize_t count = ::read(STDIN_FILENO, &c, 1);
    if (count < 0 && errno == EINTR && Interruption::signal() == 0) {
      continue;
    }
    if (count <= 0) {
      std::fputs("\n", stderr);
      return false;
    }
    if (c == '\n') {
      break;
    }
    line.push_back(c);
  }
  // TRANSLATORS: the first letter of the word for "yes" in your language.
  return line == "y" || line == "Y" || line == "yes" || line == tr("y");
}

bool askToReplace(const std::string& name) {
  if (::isatty(STDIN_FILENO) != 1) {
    return false;
  }
  // TRANSLATORS: the letters are those of the answers; the capital one is taken without an answer.
  std::fputs(util::formatted(tr("The printer has a certificate \"%s\". Replace it? [y/N] "),
                             shown(name).c_str())
                 .c_str(),
             stderr);
  std::fflush(stderr);
  return readYes();
}

}  // namespace

int runOnCertificates(const Arguments& arguments, const CertCommand& command) {
  const session::Printer printer = choosePrinter(arguments);
  const Interruption interruption;
  Trace trace(arguments.traceFile, arguments.verbose);
  Progress progress(arguments.quiet || arguments.verbose);
  session::Certificates certificates(
      printer, {.onStep = [&](session::Step step) { progress.show(step); },
                .onTransfer = [&](auto direction, auto bytes) { trace.transfer(direction, bytes); },
                .isInterrupted =
                    [] {
                      return Interruption::signal() != 0;
                    }});
  const session::CertificateReport report = command.run(certificates, [&](const std::string& name) {
    progress.clear();
    return arguments.cert.replace || askToReplace(name);
  });
  progress.clear();

  const auto error = explainCertificates(report, command.refusalRemedy);
  if (arguments.json) {
    Json entry = reportJson(report.report, Fields::ResultOnly, progress.seconds(), error);
    if (command.addJson) {
      command.addJson(report, entry);
    }
    print(documentText({entry}));
  } else if (error) {
    printError(*error);
  } else {
    print(command.text(report));
  }
  const bool interrupted = report.report.result == session::Result::Interrupted;
  return exitStatusOf({&report.report, 1}, true, interrupted ? Interruption::signal() : 0);
}

}  // namespace wifi
