#pragma once

#include <string>

#include "settings/config_details.h"

/// Runs the commands that work on the printer's certificates. Each command creates its own
/// `CertMgr` for the configured printer.
///
///     std::string command = "-icer";
///     const int status = CertProc().run(command, config);
class CertProc {
 public:
  CertProc() = default;
  virtual ~CertProc() = default;
  CertProc(const CertProc&) = default;
  CertProc& operator=(const CertProc&) = default;

  /// Runs "-rcerdefs", "-csr" or "-icer" with the settings of `config`. Returns the exit status: 0
  /// on success, 1 on failure or for an unknown command, or 2 if the file to install does not
  /// exist. If no device is configured, throws the message of type `const char*` that the
  /// constructor of `CertMgr` throws.
  int run(std::string& command, configDetails& config);

  /// Returns true if there is a directory entry at `path`, of any kind, including a dangling
  /// symlink.
  static bool isFileExists(const char* path);
};
