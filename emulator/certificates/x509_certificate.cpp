// Reads X.509 certificates with libcrypto, and makes the printer's names for them.

#include "emulator/certificates/x509_certificate.h"

#include <array>
#include <ctime>
#include <openssl/pem.h>
#include <string_view>
#include <utility>

namespace emulator {

namespace {

/// Returns a day such as Jan__5_2020 or Dec_25_2030. An underscore replaces the leading zero.
/// Returns nothing if the time cannot be read.
std::optional<std::string> dayText(const ASN1_TIME* time) {
  constexpr std::array<const char*, 12> months = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                  "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  constexpr int firstYear = 1900;
  constexpr int firstDayOfTwoDigits = 10;
  constexpr std::size_t yearDigits = 4;
  std::tm parts{};
  if (::ASN1_TIME_to_tm(time, &parts) != 1) {
    return std::nullopt;
  }
  std::string year = std::to_string(parts.tm_year + firstYear);
  year.insert(0, yearDigits - std::min(yearDigits, year.size()), '0');
  std::string text = months.at(static_cast<std::size_t>(parts.tm_mon));
  text.append(parts.tm_mday < firstDayOfTwoDigits ? "__" : "_");
  return text.append(std::to_string(parts.tm_mday)).append("_").append(year);
}

}  // namespace

std::optional<X509Certificate> X509Certificate::fromPem(const std::string& pem) {
  const BioPtr reader = readerOf(pem);
  CertificatePtr certificate(::PEM_read_bio_X509_AUX(reader.get(), nullptr, noPassword, nullptr));
  if (!certificate) {
    return std::nullopt;
  }
  return X509Certificate(std::move(certificate));
}

std::string X509Certificate::pem() const {
  return textBy([this](BIO* out) { return ::PEM_write_bio_X509(out, m_Certificate.get()); });
}

bool X509Certificate::fitsKey(const std::string& keyPem) const {
  const BioPtr reader = readerOf(keyPem);
  const KeyPtr key(::PEM_read_bio_PrivateKey(reader.get(), nullptr, noPassword, nullptr));
  return key && ::X509_check_private_key(m_Certificate.get(), key.get()) == 1;
}

std::string X509Certificate::subject() const {
  return oneLine(::X509_get_subject_name(m_Certificate.get()));
}

std::string X509Certificate::issuer() const {
  return oneLine(::X509_get_issuer_name(m_Certificate.get()));
}

std::optional<std::string> X509Certificate::caName() const {
  constexpr std::string_view mark = "CN=";
  const std::string line = subject();
  const std::size_t at = line.find(mark);
  const std::optional<std::string> start = dayText(::X509_get0_notBefore(m_Certificate.get()));
  const std::optional<std::string> end = dayText(::X509_get0_notAfter(m_Certificate.get()));
  if (at == std::string::npos || at + mark.size() == line.size() || !start || !end) {
    return std::nullopt;
  }
  return line.substr(at + mark.size()).append("_").append(*start).append("_To_").append(*end);
}

std::string oneLine(const X509_NAME* name) {
  const auto release = [](char* text) {
    OPENSSL_free(text);
  };
  const std::unique_ptr<char, decltype(release)> line(::X509_NAME_oneline(name, nullptr, 0),
                                                      release);
  return line ? line.get() : std::string();
}

}  // namespace emulator
