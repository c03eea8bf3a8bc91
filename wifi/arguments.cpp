#include "wifi/arguments.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <span>
#include <string_view>

#include "util/format.h"
#include "wifi/option_table.h"
#include "wifi/translation.h"
#include "wifi/usage_errors.h"

namespace wifi {

namespace {

using Command = Arguments::Command;

constexpr const char* PrinterHelp = translatable(
    "/dev/usb/lpN, BUS:DEVICE, a serial number, or a part of make and model; "
    "not needed for the only printer");

/// Returns the name of an option as CLI11 takes it, without the name of its value.
std::string nameOf(const OptionRow& row) {
  return std::string(row.name);
}

/// Builds CLI11's tree of the program's commands and options. A command that is not among the words
/// of the command line gets no options, because building the options of all commands takes longer
/// than the rest of the program's start.
class Grammar {
 public:
  Grammar(const std::vector<std::string>& words, Arguments& arguments) : m_Arguments(arguments) {
    m_App.name("zvkwifi");
    m_App.description(tr("Puts a USB printer's wireless adapter into a network."));
    m_App.require_subcommand(0, 1);
    translateLabels();
    const auto& [help, version] = ProgramOptions;
    m_App.set_version_flag(nameOf(version), "zvkwifi " ZVK_VERSION, tr(version.help));
    addHelp(m_App);
    addCommonOptions(m_App);

    const auto add = [&](const char* name, auto addWithOptions) {
      if (std::ranges::count(words, name) > 0) {
        addWithOptions();
      } else {
        subcommand(m_App, name);
      }
    };
    add("list", [this] { command(m_App, "list", Command::List); });
    add("status", [this] { withPrinters(command(m_App, "status", Command::Status)); });
    add("set", [this] { addSet(); });
    add("station", [this] { addStation(); });
    add("reset", [this] { withPrinter(command(m_App, "reset", Command::Reset)); });
    add("cert", [this] { addCert(); });
  }

  CLI::App& app() { return m_App; }

 private:
  /// Sets the headings of the help texts. The commands inherit them.
  void translateLabels() {
    CLI::FormatterBase& formatter = *m_App.get_formatter();
    formatter.label("Usage", tr("Usage"));
    formatter.label("OPTIONS", tr("OPTIONS"));
    formatter.label("SUBCOMMAND", tr("COMMAND"));
    formatter.label("Positionals", tr("Arguments"));
    formatter.label("REQUIRED", tr("required"));
    m_App.option_defaults()->group(tr("Options"));
  }

  static void addHelp(CLI::App& app) {
    app.set_help_flag(nameOf(ProgramOptions.front()) + ",-h", tr(ProgramOptions.front().help));
  }

  /// Adds the command `name` of the table. The last word of `name` is the command's name below
  /// `parent`.
  static CLI::App& subcommand(CLI::App& parent, std::string_view name) {
    const CommandRow& row = *std::ranges::find(CommandRows, name, &CommandRow::name);
    CLI::App& app =
        *parent.add_subcommand(std::string(name.substr(name.rfind(' ') + 1)), tr(row.help));
    app.group(tr("Commands"));
    return app;
  }

  CLI::App& command(CLI::App& parent, std::string_view name, Command command) {
    CLI::App& app = subcommand(parent, name);
    app.callback([this, command] { m_Arguments.command = command; });
    addCommonOptions(app);
    return app;
  }

  CLI::App& withPrinter(CLI::App& app) {
    app.add_option("PRINTER", m_Arguments.printers, tr(PrinterHelp))->type_name("")->expected(1);
    return app;
  }

  CLI::App& withPrinters(CLI::App& app) {
    app.add_option("PRINTER", m_Arguments.printers, tr(PrinterHelp))->type_name("");
    const auto& [all, jsonLines] = SeveralOptions;
    app.add_flag(nameOf(all), m_Arguments.all, tr(all.help));
    app.add_flag(nameOf(jsonLines), m_Arguments.jsonLines, tr(jsonLines.help));
    return app;
  }

  void addCommonOptions(CLI::App& app) {
    const auto& [json, quiet, verbose, trace] = CommonOptions;
    app.add_flag(nameOf(json), m_Arguments.json, tr(json.help));
    app.add_flag(nameOf(quiet), m_Arguments.quiet, tr(quiet.help));
    app.add_flag(nameOf(verbose), m_Arguments.verbose, tr(verbose.help));
    addText(app, trace, m_Arguments.traceFile);
  }

  static CLI::Option* addText(CLI::App& app, const OptionRow& row, std::string& value) {
    return app.add_option(nameOf(row), value, tr(row.help))->type_name(std::string(row.valueName));
  }

  static void addFlag(CLI::App& app, const OptionRow& row, bool& value) {
    app.add_flag(nameOf(row), value, tr(row.help));
  }

  /// Adds options. Each value that is given is appended to `list`, with the option's name without
  /// dashes.
  static void addListed(CLI::App& app, std::span<const OptionRow> rows,
                        std::vector<std::pair<std::string, std::string>>& list) {
    for (const OptionRow& row : rows) {
      const std::string key(row.name.substr(2));
      app.add_option_function<std::string>(
             nameOf(row), [&list, key](const std::string& value) { list.emplace_back(key, value); },
             tr(row.help))
          ->type_name(std::string(row.valueName));
    }
  }

  CLI::App& withProfile(CLI::App& app) {
    addListed(app, SettingOptions, m_Arguments.settings);
    const auto& [from, wait] = ProfileOptions;
    addText(app, from, m_Arguments.settingsFile);
    app.add_option(nameOf(wait), m_Arguments.waitSeconds, tr(wait.help))
        ->type_name(std::string(wait.valueName))
        ->check(CLI::Range(0, LongestWaitSeconds).description(""));
    return app;
  }

  void addSet() {
    CLI::App& app = withProfile(withPrinters(command(m_App, "set", Command::Set)));
    const auto& [dryRun, force] = SetOptions;
    addFlag(app, dryRun, m_Arguments.dryRun);
    addFlag(app, force, m_Arguments.force);
  }

  void addStation() {
    CLI::App& app = withProfile(command(m_App, "station", Command::Station));
    const auto& [force, jsonLines] = StationOptions;
    addFlag(app, force, m_Arguments.force);
    addFlag(app, jsonLines, m_Arguments.jsonLines);
  }

  void addCert() {
    CLI::App& cert = subcommand(m_App, "cert");
    cert.require_subcommand(1, 1);

    CertArguments& values = m_Arguments.cert;

    withPrinter(command(cert, "cert list", Command::CertList));

    CLI::App& request = withPrinter(command(cert, "cert request", Command::CertRequest));
    addListed(request, SubjectOptions, values.subject);
    const auto& [output, requestName, requestReplace] = RequestOptions;
    addText(request, output, values.file)->required();
    addText(request, requestName, values.name);
    addFlag(request, requestReplace, values.replace);

    CLI::App& install = withPrinter(command(cert, "cert install", Command::CertInstall));
    const auto& [file, name, replace] = InstallOptions;
    addText(install, file, values.file)->required();
    addText(install, name, values.name);
    addFlag(install, replace, values.replace);

    CLI::App& installCa = withPrinter(command(cert, "cert install-ca", Command::CertInstallCa));
    const auto& [caFile, caReplace] = InstallCaOptions;
    addText(installCa, caFile, values.file)->required();
    addFlag(installCa, caReplace, values.replace);

    const OptionRow& deleted = DeleteOptions.front();
    addText(withPrinter(command(cert, "cert delete", Command::CertDelete)), deleted, values.name)
        ->required();
    addText(withPrinter(command(cert, "cert delete-ca", Command::CertDeleteCa)), deleted,
            values.name)
        ->required();
  }

  Arguments& m_Arguments;
  CLI::App m_App;
};

/// Returns the words before the name of a command: "zvkwifi cert" for "zvkwifi cert list".
std::string wordsBefore(const CLI::App& app) {
  std::string words;
  for (const CLI::App* parent = app.get_parent(); parent != nullptr;
       parent = parent->get_parent()) {
    words.insert(0, parent->get_name() + (words.empty() ? "" : " "));
  }
  return words;
}

/// Checks the options that depend on the number of printers. Throws `UsageError`.
void checkSeveral(const Arguments& arguments) {
  if (arguments.all && !arguments.printers.empty()) {
    throw UsageError(tr("--all: expected no PRINTER besides it"));
  }
  const bool several =
      arguments.all || arguments.printers.size() > 1 || arguments.command == Command::Station;
  if (several && (arguments.verbose || !arguments.traceFile.empty())) {
    throw UsageError(tr("--verbose and --trace: expected a single PRINTER"));
  }
}

}  // namespace

void readArguments(const std::vector<std::string>& words, Arguments& arguments) {
  // `json` is set first. So an error in the rest of the command line is printed as a JSON document,
  // too.
  arguments.json = std::ranges::any_of(
      words, [](const std::string& word) { return word == "--json" || word == "--json-lines"; });
  rejectSecrets(words);
  rejectEmptyValues(words);
  Grammar grammar(words, arguments);
  CLI::App& app = grammar.app();
  try {
    // CLI11 expects the words in reverse order.
    app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
  } catch (const CLI::CallForHelp&) {
    const CLI::App* shown = &app;
    while (!shown->get_subcommands().empty()) {
      shown = shown->get_subcommands().front();
    }
    arguments.command = Command::Help;
    arguments.text = shown->help(wordsBefore(*shown), CLI::AppFormatMode::Normal);
  } catch (const CLI::CallForVersion& version) {
    arguments.command = Command::Help;
    arguments.text = std::string(version.what()) + "\n";
  } catch (const CLI::Error& error) {
    throw UsageError(usageProblem(error, app.remaining(true), !app.get_subcommands().empty()));
  }
  arguments.json = arguments.json || arguments.jsonLines;
  checkSeveral(arguments);
}

}  // namespace wifi
