#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace wifi {

/// A wrong command line. The text says which part is wrong and what is allowed.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// What the certificate commands work on.
struct CertArguments {
  std::string file;  ///< the certificate to install, or the request to write
  std::string name;  ///< on the printer; empty: the usual name of the printer's own certificate
  bool replace = false;
  /// The subject of a request: option without dashes, and value.
  std::vector<std::pair<std::string, std::string>> subject;
};

/// The command line.
struct Arguments {
  enum class Command {
    Guide,  ///< step by step: no command was given
    Help,   ///< `text` is to be printed
    List,
    Status,
    Set,
    Reset,
    CertList,
    CertRequest,
    CertInstallCa,
    CertInstall,
    CertDelete,
    CertDeleteCa,
  };

  Command command = Command::Guide;
  std::string text;  ///< help or version
  /// Empty: the only one, or all if `all`. Only `status` and `set` take several.
  std::vector<std::string> printers;
  bool all = false;
  bool json = false;
  bool jsonLines = false;  ///< with `json`: a document for each printer
  bool quiet = false;
  bool verbose = false;
  std::string traceFile;  ///< empty: no trace

  /// Of `set`: key and value of each setting, in order.
  std::vector<std::pair<std::string, std::string>> settings;
  std::string settingsFile;
  int waitSeconds = 60;
  bool dryRun = false;
  bool force = false;

  CertArguments cert;
};

/// Reads the arguments after the program's name. Throws `UsageError`; its text contains no value of
/// an option that may hold a secret. `json` is set even then if the line asks for JSON.
void readArguments(const std::vector<std::string>& words, Arguments& arguments);

}  // namespace wifi
