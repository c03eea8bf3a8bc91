// The status queries of wnpaGenerator.

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "npa/packet.h"
#include "util/debug_line.h"
#include "util/utility.h"
#include "wireless/wnpa_generator.h"

/// A query for one setting. The texts are for those whose collected reply the generator looks at
/// itself.
struct StatusQuery {
  npa::Byte group;
  npa::Byte object;
  const char* announcement = nullptr;
  /// Opens the line that tells the reply's size, with a dump behind it; null for no such line.
  const char* responseName = nullptr;
};

namespace {

constexpr StatusQuery Ssid = {npa::GroupWireless, 0x08};
constexpr StatusQuery IpAddress = {npa::GroupNetworkAddress, 0x02};
constexpr StatusQuery TroubleCode = {npa::GroupWireless, 0x15};
constexpr StatusQuery AdapterDescriptor = {npa::GroupAdapter, 0x1F};
constexpr StatusQuery AuthStatus = {npa::Group8021x, 0x1D, "802.1x Authentication status...",
                                    "Auth status response"};
constexpr StatusQuery AuthEnabled = {npa::Group8021x, 0x13, "802.1x Auth enabled?...", nullptr};
constexpr StatusQuery CertAuthInstalled = {
    npa::Group8021x, 0x11, "Certificate Authority installed?...", "Cert auth installed"};
constexpr StatusQuery AllSecuritySettings = {npa::Group8021x, 0x25, "All security settings...",
                                             "All security settings"};
constexpr StatusQuery AuthCommonName = {npa::Group8021x, 0x1B, "802.1x Auth common name...",
                                        "Auth common name response"};

constexpr int ReplyTimeoutSeconds = 3;
constexpr int NoAnswer = -1;

/// The texts of the 802.1x authentication status, by its code.
constexpr std::array AuthStatusTexts = {
    "802.1x not enabled",
    "NOT authenticated (deprecated)",
    "Authenticated",
    "Not Connected",
    "Server Cert Not Yet Valid",
    "Server Cert Expired",
    "Other Server Cert Verification Failure",
    "Client Cert Verification Failed",
    "EAP Type Mismatch",
    "Authentication Failed (general)",
    "Authentication in Progress",
    "CA Certificate Not Installed",
};

const char* authStatusText(npa::Byte status) {
  return status < AuthStatusTexts.size() ? AuthStatusTexts[status] : "";
}

/// A record of a queried setting inside a reply:
///
///     A5 length(2) 50 E0 D8 00 group object size(2) value
using Record = std::span<const unsigned char>;

constexpr std::size_t RecordIdOffset = 3;
constexpr std::size_t RecordSizeLowByte = 10;
constexpr std::size_t RecordStatusOffset = 11;

/// Calls `visit` with the rest of the reply from each record of the queried setting on, in order,
/// until it returns true. The record's header is sure to be there, its value is not.
void visitRecords(std::span<const unsigned char> reply, const StatusQuery& query,
                  const std::function<bool(Record)>& visit) {
  const auto request = npa::query(query.group, query.object);
  const auto id = std::span(request).subspan(RecordIdOffset);
  for (auto rest = reply; rest.size() > RecordSizeLowByte; rest = rest.subspan(1)) {
    if (rest[0] == npa::StartByte &&
        std::ranges::equal(rest.subspan(RecordIdOffset, id.size()), id) && visit(rest)) {
      return;
    }
  }
}

/// The status of a record, which is its value's first byte; nothing when it did not arrive.
std::optional<npa::Byte> statusOf(Record record) {
  return record.size() > RecordStatusOffset ? std::optional(record[RecordStatusOffset])
                                            : std::nullopt;
}

void logStatus(npa::Byte status, const char* text) {
  util::debugLine("Status: %d (%s)", status, text);
}

/// The status of the first record, logged with its text.
int firstStatus(std::span<const unsigned char> reply, const StatusQuery& query,
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

int wnpaGenerator::runQuery(const StatusQuery& query,
                            int (sendConfig::*exchange)(unsigned char*, int)) {
  std::vector<unsigned char> request = outgoing(npa::query(query.group, query.object));
  return (m_Exchange.*exchange)(request.data(), static_cast<int>(request.size()));
}

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

std::vector<unsigned char> wnpaGenerator::collectReply(const StatusQuery& query) {
  util::debugLine("%s", query.announcement);
  std::vector<unsigned char> request = outgoing(npa::query(query.group, query.object));
  unsigned char* reply = nullptr;
  const int count = m_Exchange.sendQuery(request.data(), static_cast<int>(request.size()), reply,
                                         ReplyTimeoutSeconds);
  const std::unique_ptr<unsigned char[]> owned(reply);
  if (query.responseName != nullptr) {
    util::debugLine("%s (%d bytes)", query.responseName, count);
    Utility::ShowBytes(owned.get(), count);
  }
  return {owned.get(), owned.get() + count};
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
    if (record[RecordSizeLowByte] != 0) {
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
  collectReply(AllSecuritySettings);
  return NoAnswer;
}

int wnpaGenerator::get802AuthCommonName() {
  collectReply(AuthCommonName);
  return NoAnswer;
}
