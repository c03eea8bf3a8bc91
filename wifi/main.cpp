#include <clocale>
#include <cstdio>
#include <exception>
#include <new>
#include <system_error>
#include <unistd.h>

#include "session/profile.h"
#include "util/format.h"
#include "util/output.h"
#include "wifi/arguments.h"
#include "wifi/commands.h"
#include "wifi/console.h"
#include "wifi/json_report.h"
#include "wifi/results.h"
#include "wifi/secret_input.h"
#include "wifi/shown_text.h"
#include "wifi/signals.h"
#include "wifi/translation.h"

namespace {

using wifi::Arguments;
using wifi::Explanation;
using wifi::tr;

/// Drops what the library prints: results are reported from its return values, and its diagnostics
/// contain secrets.
class NoOutput : public util::Output {
 public:
  void answer(std::string_view /*text*/) override {}
  void diagnostic(std::string_view /*text*/) override {}
};

int run(const Arguments& arguments) {
  switch (arguments.command) {
    case Arguments::Command::Help:
      wifi::print(arguments.text);
      return wifi::StatusDone;
    case Arguments::Command::Guide:
      return wifi::guideCommand(arguments);
    case Arguments::Command::List:
      return wifi::listCommand(arguments);
    case Arguments::Command::Status:
      return wifi::statusCommand(arguments);
    case Arguments::Command::Set:
      return wifi::setCommand(arguments);
    case Arguments::Command::Reset:
      return wifi::resetCommand(arguments);
    case Arguments::Command::CertList:
      return wifi::certListCommand(arguments);
    case Arguments::Command::CertRequest:
      return wifi::certRequestCommand(arguments);
    case Arguments::Command::CertInstallCa:
      return wifi::certInstallCaCommand(arguments);
    case Arguments::Command::CertInstall:
      return wifi::certInstallCommand(arguments);
    case Arguments::Command::CertDelete:
      return wifi::certDeleteCommand(arguments);
    case Arguments::Command::CertDeleteCa:
      return wifi::certDeleteCaCommand(arguments);
    default:
      break;
  }
  throw wifi::UsageError(tr("expected a command; see zvkwifi --help"));
}

/// Prints an error in the form that the command line asks for. Returns `status`.
int fail(const Arguments& arguments, int status, const Explanation& error) {
  if (arguments.json) {
    wifi::print(wifi::errorText(error));
  } else {
    wifi::printError(error);
  }
  return status;
}

std::string textOf(const session::ProfileError& error) {
  const std::string subject = wifi::shown(error.subject);
  if (error.got.empty()) {
    // TRANSLATORS: an option or a line of a file, and what is allowed there.
    return util::formatted(tr("%s: expected %s"), subject.c_str(), tr(error.expected));
  }
  return util::formatted(tr("%s: expected %s, got \"%s\""), subject.c_str(), tr(error.expected),
                         wifi::shown(error.got).c_str());
}

int runChecked(const std::vector<std::string>& words, Arguments& arguments) {
  const std::string nothingSent = tr("Nothing was sent.");
  try {
    wifi::readArguments(words, arguments);
    return run(arguments);
  } catch (const wifi::UsageError& error) {
    return fail(arguments, wifi::StatusInvalid, {error.what(), nothingSent});
  } catch (const session::ProfileError& error) {
    return fail(arguments, wifi::StatusInvalid, {textOf(error), nothingSent});
  } catch (const wifi::SecretError& error) {
    return fail(arguments, wifi::StatusInvalid, {error.what(), nothingSent});
  } catch (const wifi::CommandError& error) {
    return fail(arguments, error.status, error.explanation);
  } catch (const wifi::Interrupted&) {
    return fail(arguments, wifi::StatusSignalBase + wifi::Interruption::signal(),
                {tr("Interrupted. Nothing was stored."), {}});
  }
}

}  // namespace

int main(int argc, char** argv) {
  std::setlocale(LC_ALL, "");
  ::bindtextdomain(wifi::TextDomain, ZVK_LOCALE_DIR);
  NoOutput noOutput;
  util::setOutput(&noOutput);
  Arguments arguments;
  try {
    return runChecked({argv + 1, argv + argc}, arguments);
  } catch (const std::bad_alloc&) {
    wifi::printError({tr("Out of memory."), {}});
  } catch (const std::exception& error) {
    wifi::printError({error.what(), {}});
  }
  return wifi::StatusInternalError;
}
