// zvkwifi cert list

#include "wifi/cert_command.h"
#include "wifi/commands.h"
#include "wifi/shown_text.h"
#include "wifi/translation.h"

namespace wifi {

namespace {

using session::AuthorityEntry;
using session::CertificateReport;

std::string textOf(const CertificateReport& report) {
  std::string text = std::string(tr("Certificates of the printer:")) + "\n";
  for (const std::string& name : report.certificates) {
    text.append("  ").append(shown(name)).append("\n");
  }
  if (report.certificates.empty()) {
    text.append("  ").append(tr("none")).append("\n");
  }
  text.append(tr("Certificates of authorities:")).append("\n");
  for (const AuthorityEntry& authority : report.authorities) {
    text.append("  ").append(shown(authority.name)).append("\n");
    text.append("    ").append(tr("File:")).append(" ");
    text.append(authority.file.empty() ? tr("not reported") : shown(authority.file)).append("\n");
    text.append("    ").append(tr("Common name:")).append(" ");
    text.append(authority.commonName.empty() ? tr("not reported") : shown(authority.commonName));
    text.append("\n");
  }
  if (report.authorities.empty()) {
    text.append("  ").append(tr("none")).append("\n");
  }
  return text;
}

}  // namespace

int certListCommand(const Arguments& arguments) {
  return runOnCertificates(arguments, {.run = [](session::Certificates& certificates,
                                                 const auto&) { return certificates.list(); },
                                       .text = textOf,
                                       .addJson = addCertificates});
}

}  // namespace wifi
