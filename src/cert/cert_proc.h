#pragma once

#include <string>

#include "settings/config_details.h"

/// Carries out the commands that work on the printer's certificates, each with a `CertMgr` of its
/// own for the configured printer.
class CertProc {
 public:
  CertProc() = default;
  virtual ~CertProc() = default;
  CertProc(const CertProc&) = default;
  CertProc& operator=(const CertProc&) = default;

  /// Runs "-rcerdefs", "-csr" or "-icer" with the settings of `config`. Returns the run's exit
  /// status: 0, 1 on failure and for any other command, 2 when the file to install is not there.
  /// Lets through what `CertMgr` throws when no device is configured.
  int run(std::string& command, configDetails& config);

  /// Whether there is a directory entry of that name, be it of any kind, a link that leads nowhere
  /// included.
  static bool isFileExists(const char* path);
};
