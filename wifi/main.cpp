#include <algorithm>
#include <array>
#include <clocale>
#include <cstdio>
#include <exception>
#include <new>
#include <system_error>
#include <unistd.h>

#include "session/new_file.h"
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

/// Drops what the library prints. The commands report the values that the library returns. The
/// library's diagnostics may contain secrets.
class NoOutput : public util::Output {
 public:
  void answer(std::string_view /*text*/) override {}
  void diagnostic(std::string_view /*text*/) override {}
};

int printText(const Arguments& arguments) {
  wifi::print(arguments.text);
  return wifi::StatusDone;
}

/// One row for each command: the function that runs it.
struct CommandFunction {
  Arguments::Command command;
  int (*run)(const Arguments& arguments);
};

constexpr auto CommandFunctions = std::to_array<CommandFunction>({
    {Arguments::Command::Guide, wifi::guideCommand},
    {Arguments::Command::Help, printText},
    {Arguments::Command::List, wifi::listCommand},
    {Arguments::Command::Status, wifi::statusCommand},
    {Arguments::Command::Set, wifi::setCommand},
    {Arguments::Command::Station, wifi::stationCommand},
    {Arguments::Command::Reset, wifi::resetCommand},
    {Arguments::Command::CertList, wifi::certListCommand},
    {Arguments::Command::CertRequest, wifi::certRequestCommand},
    {Arguments::Command::CertInstallCa, wifi::certInstallCaCommand},
    {Arguments::Command::CertInstall, wifi::certInstallCommand},
    {Arguments::Command::CertDelete, wifi::certDeleteCommand},
    {Arguments::Command::CertDeleteCa, wifi::certDeleteCaCommand},
});

int run(const Arguments& arguments) {
  return std::ranges::find(CommandFunctions, arguments.command, &CommandFunction::command)
      ->run(arguments);
}

/// Prints an error as JSON or as text, as the command line asks. Returns `status`.
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

/// Prints an error that has nothing to do with the command line or the printer. Returns the exit
/// status.
int failInternally(const Arguments& arguments, const Explanation& error) {
  if (arguments.json) {
    try {
      wifi::print(wifi::errorText(error));
      return wifi::StatusInternalError;
    } catch (const wifi::OutputError&) {
      // The error is printed on standard error instead.
    }
  }
  wifi::printError(error);
  return wifi::StatusInternalError;
}

/// Runs the program. Reports files that cannot be written.
int runWithFiles(const std::vector<std::string>& words, Arguments& arguments) {
  const auto remedy = [] {
    return std::string(tr("Check the permissions and the free space there, then try again."));
  };
  try {
    return runChecked(words, arguments);
  } catch (const wifi::OutputError& error) {
    // This error is not printed as JSON, because a part of a document may already be written.
    wifi::printError({error.what(), remedy()});
  } catch (const session::FileError& error) {
    return failInternally(
        arguments, {util::formatted(tr("%s cannot be written."), wifi::shown(error.what()).c_str()),
                    remedy()});
  } catch (const std::system_error& error) {
    return failInternally(arguments, {error.what(), remedy()});
  }
  return wifi::StatusInternalError;
}

}  // namespace

int main(int argc, char** argv) {
  // Sets only these two categories of the locale. Nothing depends on the others, and loading them
  // takes time.
  std::setlocale(LC_CTYPE, "");
  std::setlocale(LC_MESSAGES, "");
  ::bindtextdomain(wifi::TextDomain, ZVK_LOCALE_DIR);
  NoOutput noOutput;
  util::setOutput(&noOutput);
  Arguments arguments;
  try {
    return runWithFiles({argv + 1, argv + argc}, arguments);
  } catch (const std::bad_alloc&) {
    // An `Explanation` would need memory.
    std::fprintf(stderr, "zvkwifi: %s\n", tr("Out of memory."));
  } catch (const std::exception& error) {
    std::fprintf(stderr, "zvkwifi: %s\n", error.what());
  }
  return wifi::StatusInternalError;
}
