// The status queries of wnpaGenerator.

#include <optional>

#include "npa/packet.h"
#include "npa/status_texts.h"
#include "util/debug_line.h"
#include "wireless/setting_query.h"
#include "wireless/wnpa_generator.h"

namespace {

constexpr SettingQuery Ssid = {npa::GroupWireless, 0x08};
constexpr SettingQuery IpAddress = {npa::GroupNetworkAddress, 0x02};
constexpr SettingQuery TroubleCode = {npa::GroupWireless, 0x15};
constexpr SettingQuery AdapterDescriptor = {npa::GroupAdapter, 0x1F};
constexpr SettingQuery AuthStatus = {npa::Group8021x, 0x1D, "802.1x Authentication status...",
                                     "Auth status response"};
constexpr SettingQuery AuthEnabled = {npa::Group8021x, 0x13, "802.1x Auth enabled?...", nullptr};
constexpr SettingQuery CertAuthInstalled = {
    npa::Group8021x, 0x11, "Certificate Authority installed?...", "Cert auth installed"};
constexpr SettingQuery AllSecuritySettings = {npa::Group8021x, 0x25, "All security settings...",
                                              "All security settings"};
constexpr SettingQuery AuthCommonName = {npa::Group8021x, 0x1B, "802.1x Auth common name...",
                                         "Auth common name response"};

constexpr int NoAnswer = -1;

/// The texts are literals, and so end in a zero byte.
const char* authStatusText(npa::Byte status) {
  return status < npa::AuthStatusTexts.size() ? npa::AuthStatusTexts[status].data() : "";
}

/// The status of a record, which is its value's first byte; nothing when it did not arrive.
std::optional<npa::Byte> statusOf(Record record) {
  return record.size() > RecordValueOffset ? std::optional(record[RecordValueOffset])
                                           : std::nullopt;
}

void logStatus(npa::Byte status, const char* text) {
  util::debugLine("Status: %d (%s)", status, text);
}

/// The status of the first record, logged with its text.
int firstStatus(std::span<const unsigned char> reply, const SettingQuery& query,
                const char* (*text)(npa::Byte status)) {
  int result = NoAnswer;
  visitRecords(reply, query, [&](Record record) {
    const auto status = statusOf(record);
    if (status) {
      logStatus(*status, text(*status));
      result = *status;
    }
    return status.has_value();
  });
  return result;
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
  return firstStatus(collectReply(AuthStatus), AuthStatus, authStatusText);
}

int wnpaGenerator::get802AuthEnabled() {
  return firstStatus(collectReply(AuthEnabled), AuthEnabled,
                     [](npa::Byte status) { return status == 1 ? "enabled" : "disabled"; });
}

int wnpaGenerator::getCertAuthInstalled() {
  int result = NoAnswer;
  visitRecords(collectReply(CertAuthInstalled), CertAuthInstalled, [&](Record record) {
    npa::Byte status = 0;
    if (record[RecordSizeOffset + 1] != 0) {
      const auto value = statusOf(record);
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
