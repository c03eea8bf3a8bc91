#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Certificates with arbitrary subjects and dates, created with OpenSSL.
namespace support {

/// The content of a certificate.
struct CertificateText {
  /// The components of the subject in order: short name and text.
  std::vector<std::pair<std::string, std::string>> subject = {{"CN", "RootCA"}};
  /// The validity dates. The dates are stored without a check: a text of 13 characters as a
  /// UTCTime, a text of another length as a GeneralizedTime.
  std::string from = "200105000000Z";
  std::string to = "301225000000Z";
  /// The CA flag of the basic constraints. Without a value the certificate has no basic
  /// constraints.
  std::optional<bool> isAuthority = {};
  /// The size in bytes of a comment that makes the certificate larger. If 0, there is no comment.
  std::size_t commentSize = 0;
};

/// Returns a self-signed certificate as PEM.
std::string certificatePem(const CertificateText& text = {});

/// Returns a self-signed certificate as DER.
std::string certificateDer(const CertificateText& text = {});

}  // namespace support
