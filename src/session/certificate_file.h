#pragma once

#include <ctime>
#include <string>
#include <string_view>

namespace session {

/// A checked certificate, ready to be sent.
struct CertificateFile {
  std::string fileName;  ///< the name under which the printer stores it, without folders
  std::string pem;
  /// The name under which the printer lists this certificate if it is a CA certificate.
  std::string caName;
};

/// What a certificate is for.
enum class CertificateUse {
  Authority,  ///< the printer checks servers with it
  Printer,    ///< the printer shows it to servers
};

/// Reads the PEM file `path`. Throws `ProfileError` unless the file has exactly one certificate,
/// and this certificate is valid at the time `now`, fits a request to the printer and, for
/// `CertificateUse::Authority`, is the certificate of an authority.
[[nodiscard]] CertificateFile readCertificateFile(const std::string& path, CertificateUse use,
                                                  std::time_t now);

/// Does the same as `readCertificateFile` with `pem`, the content of the file `path`.
[[nodiscard]] CertificateFile checkCertificate(std::string pem, const std::string& path,
                                               CertificateUse use, std::time_t now);

}  // namespace session
