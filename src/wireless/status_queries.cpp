// The status queries of wnpaGenerator. Each query reads one setting of the adapter.

#include <optional>

#include "npa/packet.h"
#include "npa/status_texts.h"
#include "util/debug_line.h"
#include "wireless/setting_query.h"
#include "wireless/wnpa_generator.h"

namespace {

// The queries. A query that is sent as one of the exchanges in npa/exchange.h has no texts for the
// log.

constexpr SettingQuery Ssid = {.key = npa::settings::Ssid};
constexpr SettingQuery IpAddress = {.key = npa::settings::IpAddress};
constexpr SettingQuery TroubleCode = {.key = npa::settings::TroubleCode};
constexpr SettingQuery AdapterDescriptor = {.key = npa::settings::Descriptor};
constexpr SettingQuery AuthStatus = {.key = npa::settings::AuthStatus,
                                     .announcement = "802.1x Authentication status...",
                                     .responseName = "Auth status response"};
constexpr SettingQuery AuthEnabled = {.key = npa::settings::AuthEnabled,
                                      .announcement = "802.1x Auth enabled?..."};
constexpr SettingQuery CertAuthInstalled = {.key = npa::settings::CaInstalled,
                                            .announcement = "Certificate Authority installed?...",
                                            .responseName = "Cert auth installed"};
constexpr SettingQuery AllSecuritySettings = {.key = npa::settings::AllSecurity,
                                              .announcement = "All security settings...",
                                              .responseName = "All security settings"};
constexpr SettingQuery AuthCommonName = {.key = npa::settings::AuthCommonName,
                                         .announcement = "802.1x Auth common name...",
                                         .responseName = "Auth common name response"};

/// The result of a query whose reply has no status. A status is 0 to 255, so -1 is never a status.
constexpr int NoAnswer = -1;

/// Returns the text of an authentication status, or an empty text if the status is unknown. The
/// result ends in a zero byte, because the texts are literals.
const char* authStatusText(npa::Byte status) {
  return status < npa::AuthStatusTexts.size() ? npa::AuthStatusTexts[status].data() : "";
}

/// Logs a status as a number and in words.
void logStatus(npa::Byte status, const char* text) {
  util::debugLine("Status: %d (%s)", status, text);
}

/// Logs the first status in the records of the reply, as a number and in words. Returns the status,
/// or -1 if no record has a status.
int loggedStatus(std::span<const unsigned char> reply, const SettingQuery& query,
                 const char* (*text)(npa::Byte status)) {
  const auto status = firstStatusIn(reply, query.key);
  if (!status) {
    return NoAnswer;
  }
  logStatus(*status, text(*status));
  return *status;
}

}  // namespace

int wnpaGenerator::getSSID() {
  return runQuery(Ssid, &sendConfig::getSSID);
}

int wnpaGenerator::getIP() {
  return runQuery(IpAddress, &sendConfig::getIP);
}

int wnpaGenerator::getTroubleCode() {
  return runQuery(TroubleCode, &sendConfig::getTroubleCode);
}

int wnpaGenerator::getAdapterDescriptor() {
  return runQuery(AdapterDescriptor, &sendConfig::getAdapterDescriptor);
}

int wnpaGenerator::get802AuthStatus() {
  return loggedStatus(collectReply(AuthStatus), AuthStatus, authStatusText);
}

int wnpaGenerator::get802AuthEnabled() {
  return loggedStatus(collectReply(AuthEnabled), AuthEnabled,
                      [](npa::Byte status) { return status == 1 ? "enabled" : "disabled"; });
}

int wnpaGenerator::getCertAuthInstalled() {
  int result = NoAnswer;
  visitRecords(collectReply(CertAuthInstalled), CertAuthInstalled.key, [&](Record record) {
    // The low byte of the size field: 0 means that the record has no value.
    npa::Byte status = 0;
    if (record[RecordSizeOffset + 1] != 0) {
      const auto value = statusIn(record);
      if (!value) {
        return false;
      }
      status = *value;
      result = status;
    }
    logStatus(status, status == 1 ? "yes" : "no");
    return false;
  });
  return result;
}

int wnpaGenerator::getAllSecuritySettings() {
  return dumpReply(AllSecuritySettings);
}

int wnpaGenerator::get802AuthCommonName() {
  return dumpReply(AuthCommonName);
}
