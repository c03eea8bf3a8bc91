// Queries of single settings: sending them, and finding the records in their replies.

#include "wireless/setting_query.h"

#include <algorithm>

#include "npa/packet.h"
#include "util/debug_line.h"
#include "util/utility.h"
#include "wireless/wnpa_generator.h"

namespace {

/// From this offset on, a query and a record of the same setting have six equal bytes: flag,
/// command, kind of data, group and object number.
constexpr std::size_t RecordIdOffset = 3;
/// How long the packets of a reply are collected. The time starts at the end of the pause that
/// follows the request.
constexpr int ReplyTimeoutSeconds = 3;

}  // namespace

void visitRecords(std::span<const unsigned char> reply, npa::SettingKey key,
                  const std::function<bool(Record)>& visit) {
  const auto request = npa::query(key);
  const auto id = std::span(request).subspan(RecordIdOffset);
  // Tests every offset, because other bytes may precede a record.
  for (auto rest = reply; rest.size() >= RecordValueOffset; rest = rest.subspan(1)) {
    if (rest[0] == npa::StartByte &&
        std::ranges::equal(rest.subspan(RecordIdOffset, id.size()), id) && visit(rest)) {
      return;
    }
  }
}

std::optional<npa::Byte> statusIn(Record record) {
  return record.size() > RecordValueOffset ? std::optional(record[RecordValueOffset])
                                           : std::nullopt;
}

std::optional<npa::Byte> firstStatusIn(std::span<const unsigned char> reply, npa::SettingKey key) {
  std::optional<npa::Byte> status;
  visitRecords(reply, key, [&status](Record record) {
    status = statusIn(record);
    return status.has_value();
  });
  return status;
}

int wnpaGenerator::runQuery(const SettingQuery& query,
                            int (sendConfig::*operation)(unsigned char*, int)) {
  std::vector<unsigned char> request = outgoing(npa::query(query.key));
  return (m_Sender.*operation)(request.data(), static_cast<int>(request.size()));
}

std::vector<unsigned char> wnpaGenerator::collectReply(const SettingQuery& query) {
  util::debugLine("%s", query.announcement);
  return collectReply(outgoing(npa::query(query.key)), query.responseName);
}

std::vector<unsigned char> wnpaGenerator::collectReply(std::vector<unsigned char> request,
                                                       const char* responseName) {
  std::vector<unsigned char> reply = m_Sender.query(request, ReplyTimeoutSeconds);
  if (responseName != nullptr) {
    const int size = static_cast<int>(reply.size());
    util::debugLine("%s (%d bytes)", responseName, size);
    Utility::ShowBytes(reply.data(), size);
  }
  return reply;
}

int wnpaGenerator::dumpReply(const SettingQuery& query) {
  collectReply(query);
  return DumpedOnly;
}
