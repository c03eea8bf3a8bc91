#pragma once

#include <ctime>
#include <string>
#include <string_view>

namespace session {

/// A checked certificate, ready to be sent.
struct CertificateFile {
  std::string fileName;  ///< the name under which the printer stores it, without folders
  std::string pem;
  /// The name that the printer gives to the certificate of an authority.
  std::string caName;
};

/// What a certificate is for.
enum class CertificateUse {
  Authority,  ///< the printer checks servers with it
  Printer,    ///< the printer shows it to servers
};

/// Reads the PEM file `path` and checks that it has exactly one certificate, which is valid at the
/// time `now`, is one of an authority if it has to be, and fits a request to the printer. Throws
/// `ProfileError`.
[[nodiscard]] CertificateFile readCertificateFile(const std::string& path, CertificateUse use,
                                                  std::time_t now);

/// Does the same with the content of a file.
[[nodiscard]] CertificateFile checkCertificate(std::string pem, const std::string& path,
                                               CertificateUse use, std::time_t now);

}  // namespace session
