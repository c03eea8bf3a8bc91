// The checks of a certificate before it is sent.

#include "session/certificate_file.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "cert/cert_mgr.h"
#include "cert/pem_text.h"
#include "cert/uploads.h"
#include "session/profile.h"
#include "session/translatable.h"
#include "util/unique_fd.h"

namespace session {

namespace {

/// A longer file is not read to its end, because no request can carry it.
constexpr std::size_t LargestFile = 65536;

constexpr const char* ReadableCertificate = translatable("a certificate file that can be read");
constexpr const char* OneCertificate = translatable("exactly one certificate in PEM form");
constexpr const char* Small = translatable("a certificate of at most about 11900 bytes");

std::string readFile(const std::string& path) {
  // With O_NONBLOCK, opening a named pipe does not wait for its other end.
  const util::UniqueFd file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat status = {};
  if (!file || ::fstat(file.get(), &status) != 0) {
    throw ProfileError::ofLastCall(path, ReadableCertificate);
  }
  if (!S_ISREG(status.st_mode)) {
    throw ProfileError(path, "", translatable("a regular file with a certificate"));
  }
  std::string content;
  std::array<char, 4096> part{};
  ssize_t count = 0;
  while ((count = ::read(file.get(), part.data(), part.size())) > 0) {
    content.append(part.data(), static_cast<std::size_t>(count));
    if (content.size() > LargestFile) {
      throw ProfileError(path, "", Small);
    }
  }
  if (count < 0) {
    throw ProfileError::ofLastCall(path, ReadableCertificate);
  }
  return content;
}

std::string fileNameOf(const std::string& path) {
  std::string name = path.substr(path.rfind('/') + 1);
  if (std::ranges::any_of(
          name, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; })) {
    throw ProfileError(path, "", translatable("a file name without control characters"));
  }
  return name;
}

/// Returns the date of a time in UTC, such as 2030-12-25.
std::string dateText(std::time_t time) {
  std::tm parts = {};
  ::gmtime_r(&time, &parts);
  std::array<char, 32> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d", &parts)};
}

/// Returns the certificate of a PEM text. Throws `ProfileError` unless the text has exactly one
/// block and this block is a certificate.
PemText::Certificate onlyCertificate(const std::string& pem, const std::string& path) {
  const PemText text = readPemText(pem);
  if (text.isDamaged || text.labels.size() != 1) {
    throw ProfileError(path, "", OneCertificate);
  }
  if (!text.certificate) {
    // The file may be of any kind, so its label may have any length. The usual labels are shorter
    // than this limit.
    constexpr std::size_t longestShown = 40;
    throw ProfileError(path, text.labels.front().substr(0, longestShown), OneCertificate);
  }
  return *text.certificate;
}

void requireDates(const PemText::Certificate& certificate, const std::string& path,
                  std::time_t now) {
  if (now < certificate.notBefore) {
    throw ProfileError(
        path, dateText(certificate.notBefore),
        translatable("a certificate that is valid already, by the clock of this computer"));
  }
  if (now > certificate.notAfter) {
    throw ProfileError(
        path, dateText(certificate.notAfter),
        translatable("a certificate that is still valid, by the clock of this computer"));
  }
}

}  // namespace

CertificateFile checkCertificate(std::string pem, const std::string& path, CertificateUse use,
                                 std::time_t now) {
  const PemText::Certificate certificate = onlyCertificate(pem, path);
  requireDates(certificate, path, now);
  const bool isAuthority = use == CertificateUse::Authority;
  if (isAuthority && !certificate.isAuthority) {
    throw ProfileError(path, certificate.commonName,
                       translatable("the certificate of an authority (CA)"));
  }
  CertificateFile file = {.fileName = fileNameOf(path), .pem = std::move(pem), .caName = {}};
  const std::string sentName = CertMgr::symbolToEntities(file.fileName.c_str());
  const auto request = isAuthority ? uploads::authorityRequest(sentName, file.pem)
                                   : uploads::signedRequest(CertMgr::LongestName, file.pem);
  if (!request) {
    throw ProfileError(path, "", Small);
  }
  // If a certificate has no common name, the printer uses the name of the file instead.
  file.caName = certificate.caName.empty() ? file.fileName : certificate.caName;
  return file;
}

CertificateFile readCertificateFile(const std::string& path, CertificateUse use, std::time_t now) {
  return checkCertificate(readFile(path), path, use, now);
}

}  // namespace session
