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
  std::string name;  ///< the certificate's name in the printer; if empty, the default name
  bool replace = false;
  /// The subject of a request: option without dashes, and value.
  std::vector<std::pair<std::string, std::string>> subject;
};

/// The command line.
struct Arguments {
  enum class Command {
    Guide,  ///< no command was given: the program asks step by step
    Help,   ///< prints `text`
    List,
    Status,
    Set,
    Station,
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
  /// The names of printers. If there is no name, the command works on all printers if `all` is
  /// true, and on the only printer if it is false. Only `status` and `set` accept several printers.
  std::vector<std::string> printers;
  bool all = false;
  bool json = false;
  bool jsonLines = false;  ///< one document for each printer; `json` is true, too
  bool quiet = false;
  bool verbose = false;
  std::string traceFile;  ///< empty: no trace

  /// The settings of `set`: key and value of each one, in order.
  std::vector<std::pair<std::string, std::string>> settings;
  std::string settingsFile;
  int waitSeconds = 60;
  bool dryRun = false;
  bool force = false;

  CertArguments cert;
};

/// Reads `words`, the arguments after the program's name. Throws `UsageError` if they are wrong.
/// The text of the error contains no option value that may be a secret. Sets `arguments.json` even
/// if it throws.
void readArguments(const std::vector<std::string>& words, Arguments& arguments);

}  // namespace wifi
