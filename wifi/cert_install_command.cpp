// zvkwifi cert install-ca, zvkwifi cert install

#include "util/clock.h"
#include "util/format.h"
#include "wifi/cert_command.h"
#include "wifi/commands.h"
#include "wifi/shown_text.h"
#include "wifi/translation.h"

namespace wifi {

namespace {

using session::CertificateUse;

std::string installedText(const session::CertificateReport& report) {
  return util::formatted(tr("The certificate \"%s\" is installed.\n"), shown(report.name).c_str());
}

}  // namespace

int certInstallCaCommand(const Arguments& arguments) {
  const session::CertificateFile file = session::readCertificateFile(
      arguments.cert.file, CertificateUse::Authority, util::timeOfDay());
  return runOnCertificates(
      arguments,
      {.run =
           [&](session::Certificates& certificates, const auto& mayReplace) {
             return certificates.installAuthority(file, mayReplace);
           },
       .text = installedText,
       .refusalRemedy = tr("\"zvkwifi cert list\" shows what the printer has. Delete what is not "
                           "needed any more.")});
}

int certInstallCommand(const Arguments& arguments) {
  const session::CertificateFile file =
      session::readCertificateFile(arguments.cert.file, CertificateUse::Printer, util::timeOfDay());
  const std::string name = session::checkedCertificateName(arguments.cert.name, "--name");
  return runOnCertificates(
      arguments,
      {.run = [&](session::Certificates& certificates,
                  const auto& mayReplace) { return certificates.install(file, name, mayReplace); },
       .text = installedText,
       .refusalRemedy =
           tr("Check that the certificate belongs to the last request of this printer, "
              "which \"zvkwifi cert request\" made.")});
}

}  // namespace wifi
