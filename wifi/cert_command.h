#pragma once

#include <functional>
#include <string>

#include "session/certificates.h"
#include "wifi/arguments.h"
#include "wifi/json_report.h"

namespace wifi {

/// The parts of a command on the certificates of one printer, for `runOnCertificates`.
struct CertCommand {
  /// Runs an operation of `session::Certificates`. If the operation would replace a certificate, it
  /// first calls the question, which asks the user.
  std::function<session::CertificateReport(session::Certificates&,
                                           const session::Certificates::Question&)>
      run;
  /// Returns the text to print if the command succeeds.
  std::function<std::string(const session::CertificateReport&)> text;
  /// Adds the command's own keys to the JSON entry of the printer. May be empty.
  std::function<void(const session::CertificateReport&, Json&)> addJson = {};
  /// What the user can do if the printer refuses the request, translated.
  std::string refusalRemedy = {};
};

/// Finds the printer that the arguments name, runs a command on its certificates with progress,
/// trace and handling of signals, and prints the result. Returns the exit status. Throws
/// `CommandError` unless exactly one printer fits.
int runOnCertificates(const Arguments& arguments, const CertCommand& command);

/// Explains why a command on certificates did not succeed. Returns nothing if the command
/// succeeded.
[[nodiscard]] std::optional<Explanation> explainCertificates(
    const session::CertificateReport& report, const std::string& refusalRemedy);

}  // namespace wifi
