#pragma once

#include <optional>
#include <string>

#include "emulator/certificates/libcrypto.h"

namespace emulator {

/// An X.509 certificate, read from a PEM text (RFC 7468):
///
///     if (const auto certificate = X509Certificate::fromPem(content)) {
///       log(certificate->subject());  // /C=US/O=Example/CN=printer
///     }
class X509Certificate {
 public:
  /// Reads the first certificate in the text. Returns nothing if there is no certificate or if it
  /// is encrypted.
  static std::optional<X509Certificate> fromPem(const std::string& pem);

  /// Returns only the certificate as a PEM text, without the text around it.
  std::string pem() const;

  /// Returns true if the certificate belongs to the private key in the PEM text `keyPem`.
  bool fitsKey(const std::string& keyPem) const;

  /// Returns the subject or the issuer in one line.
  std::string subject() const;
  std::string issuer() const;

  /// Returns the printer's name for a CA certificate, such as RootCA_Jan__5_2020_To_Dec_25_2030:
  /// the part of the one-line subject after its first "CN=", and the first and the last day of
  /// validity. Returns nothing if the subject has no common name or a day cannot be read.
  std::optional<std::string> caName() const;

 private:
  explicit X509Certificate(CertificatePtr certificate) : m_Certificate(std::move(certificate)) {}

  CertificatePtr m_Certificate;
};

/// Returns a name in one line, such as /C=DE/CN=printer. Bytes that are not printable ASCII are
/// written as \xNN.
std::string oneLine(const X509_NAME* name);

}  // namespace emulator
