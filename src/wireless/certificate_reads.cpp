// The operations of wnpaGenerator that read the certificate settings, and its certificate actions.

#include <array>
#include <cstddef>

#include "npa/packet.h"
#include "util/debug_line.h"
#include "util/utility.h"
#include "wireless/setting_query.h"
#include "wireless/wnpa_generator.h"

namespace {

// The queries: setting, line before the request, name of the reply in the log.

constexpr SettingQuery Certificate = {
    .key = npa::settings::Certificate, .announcement = "get cert...", .responseName = "cert"};
// The log calls the reply "CSR", on purpose.
constexpr SettingQuery CaCertificate = {
    .key = npa::settings::CaCertificate, .announcement = "get CA cert...", .responseName = "CSR"};
constexpr SettingQuery CommonName = {.key = npa::settings::CertCommonName,
                                     .announcement = "Cert common name...",
                                     .responseName = "Common name resp"};
constexpr SettingQuery FriendlyName = {.key = npa::settings::CertFriendlyName,
                                       .announcement = "Cert Friendly name...",
                                       .responseName = "Friendly name"};
constexpr SettingQuery AlternateName = {.key = npa::settings::CertAlternateName,
                                        .announcement = "Cert alternate name...",
                                        .responseName = "Alternate name"};
constexpr SettingQuery SignRequest = {
    .key = npa::settings::CertRequest, .announcement = "get CSR...", .responseName = "CSR"};
constexpr SettingQuery GenerateStatus = {.key = npa::settings::CertGenerateStatus,
                                         .announcement = "generate certificate status...",
                                         .responseName = "generate cert status"};
constexpr SettingQuery Organization = {.key = npa::settings::CertOrganization,
                                       .announcement = "Cert Organization...",
                                       .responseName = "Cert org"};

/// The packet that makes the adapter generate a certificate: it sets the flag
/// `settings::CertGenerate` to 1. The length field is 6, as in a query, although 10 bytes follow
/// the field. The adapter expects this length field.
constexpr std::array<npa::Byte, 13> GeneratePacket = {0xA5, 0x00, 0x06, 0x50, 0xE0, 0xDA, 0x01,
                                                      0x2A, 0x0C, 0x00, 0x00, 0x01, 0x01};

/// Logs the organisation in a record, up to its first zero byte. Returns false and logs nothing if
/// the value is incomplete.
bool logOrganization(Record record) {
  const std::size_t size = npa::numberAt(record, RecordSizeOffset);
  const Record value = record.subspan(RecordValueOffset);
  if (size > value.size()) {
    return false;
  }
  const int count = static_cast<int>(size);
  // An empty value may have no byte to point at.
  const char* const text = size == 0 ? "" : reinterpret_cast<const char*>(value.data());
  util::debugLine("Organization (%d bytes): %.*s", count, count, text);
  return true;
}

}  // namespace

int wnpaGenerator::getCertCert() {
  return dumpReply(Certificate);
}

int wnpaGenerator::getCertCA() {
  return dumpReply(CaCertificate);
}

int wnpaGenerator::getCertCommonName() {
  return dumpReply(CommonName);
}

int wnpaGenerator::getCertFriendlyName() {
  return dumpReply(FriendlyName);
}

int wnpaGenerator::getCertAlternateName() {
  return dumpReply(AlternateName);
}

int wnpaGenerator::getCSR() {
  return dumpReply(SignRequest);
}

int wnpaGenerator::generateCertStatus() {
  return dumpReply(GenerateStatus);
}

int wnpaGenerator::generateCertificate() {
  util::debugLine("generate certificate...");
  collectReply(outgoing(GeneratePacket), "generate cert");
  return DumpedOnly;
}

int wnpaGenerator::getCertOrganization() {
  int result = -1;
  visitRecords(collectReply(Organization), Organization.key, [&](Record record) {
    if (logOrganization(record)) {
      result = 0;
    }
    return false;  // also look at the other records
  });
  return result;
}

int wnpaGenerator::getCertSettings() {
  util::debugLine("Certifcate settings...");
  getCertOrganization();
  getCertCommonName();
  return 0;
}

int wnpaGenerator::createCertSignRequest() {
  util::debugLine("createCertSignRequest...");
  m_Packet.clear();
  constructCertCommonName();
  frameBatch();
  Utility::ShowBytes(m_Packet.data(), static_cast<int>(m_Packet.size()));
  collectReply(m_Packet, "CSR response");
  const int result = 0;
  util::debugLine("ret = %d", result);
  return result;
}
