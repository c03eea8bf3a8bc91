// zvkwifi cert delete, zvkwifi cert delete-ca

#include "util/format.h"
#include "wifi/cert_command.h"
#include "wifi/commands.h"
#include "wifi/shown_text.h"
#include "wifi/translation.h"

namespace wifi {

namespace {

using session::CertificateReport;
using session::Certificates;

int deleteWith(const Arguments& arguments,
               CertificateReport (Certificates::*remove)(const std::string&)) {
  const std::string& name = arguments.cert.name;
  if (name.empty()) {
    throw UsageError(
        tr("--name: expected the name of a certificate; \"zvkwifi cert list\" shows "
           "the names"));
  }
  return runOnCertificates(
      arguments,
      {.run = [&](Certificates& certificates, const auto&) { return (certificates.*remove)(name); },
       .text =
           [](const CertificateReport& report) {
             return util::formatted(tr("The certificate \"%s\" is deleted.\n"),
                                    shown(report.name).c_str());
           },
       .refusalRemedy = tr("A certificate from the factory cannot be deleted.")});
}

}  // namespace

int certDeleteCommand(const Arguments& arguments) {
  return deleteWith(arguments, &Certificates::remove);
}

int certDeleteCaCommand(const Arguments& arguments) {
  return deleteWith(arguments, &Certificates::removeAuthority);
}

}  // namespace wifi
