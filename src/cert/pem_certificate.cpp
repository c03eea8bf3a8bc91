// CertMgr's operations that read PEM certificates. No other file of src/ includes OpenSSL's
// headers.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <memory>
#include <openssl/asn1.h>
#include <openssl/bio.h>
#include <openssl/crypto.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>
#include <optional>
#include <string_view>

#include "cert/cert_mgr.h"
#include "cert/pem_text.h"
#include "util/c_text.h"
#include "util/debug_line.h"
#include "util/decimal.h"

namespace {

/// The size in bytes of the buffer for the one-line subject. OpenSSL leaves out components that do
/// not fit.
constexpr std::size_t SubjectSize = 256;
/// The size in bytes of the buffer for the validity text, which has 26 characters.
constexpr std::size_t ValiditySize = 128;

// The lengths of a UTCTime and of the longest accepted GeneralizedTime.
constexpr std::size_t ShortestDate = 13;
constexpr std::size_t LongestDate = 20;
/// Two-digit years above this number are 1950 to 1999 (RFC 5280, section 4.1.2.5.1).
constexpr int LastYearOfThisCentury = 49;

constexpr std::array MonthNames = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
/// The largest buffer size that `formatCMCADate` rejects. A validity text has 26 characters and a
/// zero byte, so with a buffer of 26 bytes the last character is cut.
constexpr int SizeTooSmall = 25;

/// Frees OpenSSL's objects.
struct Release {
  void operator()(BIO* bio) const { BIO_free(bio); }
  void operator()(X509* certificate) const { X509_free(certificate); }
};

using Bio = std::unique_ptr<BIO, Release>;
using Certificate = std::unique_ptr<X509, Release>;

/// Prepares OpenSSL. No configuration file is loaded, because an environment variable may name the
/// file, the file may load modules, and the program may run as root.
void prepareOpenSsl() {
  OPENSSL_init_crypto(OPENSSL_INIT_NO_LOAD_CONFIG, nullptr);
}

/// Reads the certificate in a file. Returns null and logs the failure if the file has no readable
/// certificate.
Certificate readCertificate(const char* path) {
  prepareOpenSsl();
  const Bio bio(BIO_new_file(path, "r"));
  if (!bio) {
    util::debugLine("Failed to read Pem file '%s'?!", path);
    return nullptr;
  }
  // If the file is encrypted, OpenSSL would ask for the pass phrase on the terminal. This empty
  // pass phrase prevents that.
  std::array<char, 1> noPassPhrase = {};
  Certificate certificate(PEM_read_bio_X509_AUX(bio.get(), nullptr, nullptr, noPassPhrase.data()));
  if (!certificate) {
    util::debugLine("PEM_read failed?!");
  }
  return certificate;
}

/// Returns the part of the one-line subject after its first "CN=".
std::string commonNameOf(const X509* certificate) {
  std::array<char, SubjectSize> buffer = {};
  X509_NAME_oneline(X509_get_subject_name(certificate), buffer.data(),
                    static_cast<int>(buffer.size()));
  constexpr std::string_view mark = "CN=";
  const std::string_view subject(buffer.data());
  const std::size_t at = subject.find(mark);
  return std::string(at == std::string_view::npos ? std::string_view()
                                                  : subject.substr(at + mark.size()));
}

/// A calendar date. The month is 0 if there is no date.
struct Date {
  int year = 0;
  int month = 0;
  int day = 0;
};

/// Returns the date of a time. The month is 0 if `getASN1Date` rejects the length of the time.
Date dateOf(const ASN1_TIME* time) {
  Date date;
  CertMgr::getASN1Date(const_cast<ASN1_TIME*>(time), date.year, date.month, date.day);
  return date;
}

/// Returns the validity text, or an empty text if a date cannot be read.
std::string validityOf(const X509* certificate) {
  Date start = dateOf(X509_get0_notBefore(certificate));
  Date end = dateOf(X509_get0_notAfter(certificate));
  std::array<char, ValiditySize> text = {};
  CertMgr::formatCMCADate(start.year, start.month, start.day, end.year, end.month, end.day,
                          text.data(), static_cast<int>(text.size()));
  return text.data();
}

/// Returns true for 1 to 12.
bool isMonth(int month) {
  return month >= 1 && month <= static_cast<int>(MonthNames.size());
}

/// Returns the day in two characters. In the printer's names "_" replaces a leading zero.
std::string dayText(int day) {
  return (day > 9 ? "" : "_") + std::to_string(day);
}

/// Returns a time in seconds since 1970, or nothing if it is invalid.
std::optional<std::time_t> secondsOf(const ASN1_TIME* time) {
  std::tm parts = {};
  return ASN1_TIME_to_tm(time, &parts) == 1 ? std::optional(::timegm(&parts)) : std::nullopt;
}

/// Returns the values of the certificate in `bytes`, in DER, or nothing if the bytes are not a
/// certificate with a valid start and end time.
std::optional<PemText::Certificate> certificateIn(const unsigned char* bytes, long size) {
  const Certificate certificate(d2i_X509(nullptr, &bytes, size));
  if (!certificate) {
    return std::nullopt;
  }
  const auto notBefore = secondsOf(X509_get0_notBefore(certificate.get()));
  const auto notAfter = secondsOf(X509_get0_notAfter(certificate.get()));
  if (!notBefore || !notAfter) {
    return std::nullopt;
  }
  PemText::Certificate values = {.commonName = commonNameOf(certificate.get()),
                                 .caName = {},
                                 .notBefore = *notBefore,
                                 .notAfter = *notAfter,
                                 // 1 means that the basic constraints mark a CA certificate.
                                 .isAuthority = X509_check_ca(certificate.get()) == 1};
  if (!values.commonName.empty()) {
    values.caName = values.commonName + "_" + validityOf(certificate.get());
  }
  return values;
}

/// One block of a PEM text. OpenSSL allocates the parts, and the destructor frees them.
struct Block {
  Block() = default;
  ~Block() {
    OPENSSL_free(label);
    OPENSSL_free(header);
    OPENSSL_clear_free(bytes, static_cast<std::size_t>(size));
  }
  Block(const Block&) = delete;
  Block& operator=(const Block&) = delete;

  char* label = nullptr;
  char* header = nullptr;
  unsigned char* bytes = nullptr;
  long size = 0;
};

}  // namespace

PemText readPemText(std::string_view text) {
  prepareOpenSsl();
  PemText result;
  const Bio bio(BIO_new_mem_buf(text.data(), static_cast<int>(text.size())));
  for (bool hasMore = bio != nullptr; hasMore;) {
    Block block;
    ERR_clear_error();
    hasMore = PEM_read_bio(bio.get(), &block.label, &block.header, &block.bytes, &block.size) == 1;
    if (hasMore) {
      result.labels.emplace_back(block.label);
      if (result.labels.size() == 1 && result.labels.front() == PEM_STRING_X509) {
        result.certificate = certificateIn(block.bytes, block.size);
      }
    } else {
      result.isDamaged = ERR_GET_REASON(ERR_peek_last_error()) != PEM_R_NO_START_LINE;
    }
  }
  ERR_clear_error();
  return result;
}

int CertMgr::getPEMCommonName(const char* path, std::string& commonName, std::string& caName) {
  const std::string file(util::textOf(path));
  const Certificate certificate = readCertificate(file.c_str());
  // Clears OpenSSL's queue of errors, because nothing reads these errors.
  ERR_clear_error();
  const std::string name = certificate ? commonNameOf(certificate.get()) : std::string();
  if (name.empty()) {
    return Failed;
  }
  commonName = name;
  const std::string validity = validityOf(certificate.get());
  if (validity.empty()) {
    return Failed;
  }
  caName = name + "_" + validity;
  return 0;
}

int CertMgr::getASN1Date(ASN1_TIME* t, int& year, int& month, int& day) {
  if (t == nullptr || ASN1_STRING_length(t) < 0) {
    return Failed;
  }
  const auto size = static_cast<std::size_t>(ASN1_STRING_length(t));
  if (size < ShortestDate || size > LongestDate) {
    return Failed;
  }
  std::string_view text(reinterpret_cast<const char*>(ASN1_STRING_get0_data(t)), size);
  // Removes the first `digits` characters of the text and returns the number in them.
  const auto next = [&text](std::size_t digits) {
    const int number = util::toInt(text.substr(0, digits));
    text.remove_prefix(digits);
    return number;
  };
  if (size == ShortestDate) {
    const int shortYear = next(2);
    year = shortYear + (shortYear > LastYearOfThisCentury ? 1900 : 2000);
  } else {
    year = next(4);
  }
  month = next(2);
  day = next(2);
  return 0;
}

int CertMgr::formatCMCADate(int& year1, int& month1, int& day1, int& year2, int& month2, int& day2,
                            char* out, int outSize) {
  if (outSize <= SizeTooSmall || !isMonth(month1) || !isMonth(month2)) {
    return 0;
  }
  const auto monthName = [](int month) {
    return MonthNames[static_cast<std::size_t>(month) - 1];
  };
  const int length = std::snprintf(
      out, static_cast<std::size_t>(outSize), "%s_%s_%04d_To_%s_%s_%04d", monthName(month1),
      dayText(day1).c_str(), year1, monthName(month2), dayText(day2).c_str(), year2);
  return std::min(length, outSize - 1);
}
