#pragma once

#include <optional>
#include <string>

#include "emulator/certificates/libcrypto.h"

namespace emulator {

/// An X.509 certificate, the first of a PEM text.
class X509Certificate {
 public:
  /// Reads the text; nothing when it holds no certificate, or only an encrypted one.
  static std::optional<X509Certificate> fromPem(const std::string& pem);

  /// The certificate alone as PEM text.
  std::string pem() const;

  /// Whether it is for the private key in a PEM text.
  bool fitsKey(const std::string& keyPem) const;

  /// The subject and the issuer in one line each.
  std::string subject() const;
  std::string issuer() const;

  /// What a printer calls a CA by: the subject's line from behind its first "CN=" to its end, and
  /// the days of its validity, as in RootCA_Jan__5_2020_To_Dec_25_2030. Nothing when the subject
  /// has no common name or the days cannot be read.
  std::optional<std::string> caName() const;

 private:
  explicit X509Certificate(CertificatePtr certificate) : m_Certificate(std::move(certificate)) {}

  CertificatePtr m_Certificate;
};

/// A name in one line, such as /C=DE/CN=printer, in printable ASCII; other bytes stand as \xNN.
std::string oneLine(const X509_NAME* name);

}  // namespace emulator
