#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Certificates made with OpenSSL.
namespace support {

/// What a certificate says.
struct CertificateText {
  /// Components of the subject in order, such as {"CN", "RootCA"}.
  std::vector<std::pair<std::string, std::string>> subject = {{"CN", "RootCA"}};
  /// The validity dates as they stand in it: 13 characters are a UTCTime, all else is put down as a
  /// GeneralizedTime.
  std::string from = "200105000000Z";
  std::string to = "301225000000Z";
};

/// A self-signed certificate in PEM form.
std::string certificatePem(const CertificateText& text = {});

/// The same in DER form.
std::string certificateDer(const CertificateText& text = {});

}  // namespace support
