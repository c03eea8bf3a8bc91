// zvkwifi cert request

#include "util/format.h"
#include "wifi/cert_command.h"
#include "wifi/commands.h"
#include "wifi/shown_text.h"
#include "wifi/translation.h"

namespace wifi {

int certRequestCommand(const Arguments& arguments) {
  const session::CertificateSubject subject = session::readSubject(arguments.cert.subject);
  const std::string name = session::checkedCertificateName(arguments.cert.name, "--name");
  session::NewFile file(arguments.cert.file, "--output");
  return runOnCertificates(
      arguments,
      {.run =
           [&](session::Certificates& certificates, const auto& mayReplace) {
             return certificates.request(subject, name, file, mayReplace);
           },
       .text =
           [&](const session::CertificateReport&) {
             return util::formatted(
                 tr("The printer's certificate request is in %s. Let your authority sign it, then "
                    "run \"zvkwifi cert install\".\n"),
                 shown(arguments.cert.file).c_str());
           },
       .refusalRemedy = tr("Check the subject and the name of the certificate.")});
}

}  // namespace wifi
