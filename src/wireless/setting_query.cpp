#include "wireless/setting_query.h"

#include <algorithm>
#include <memory>

#include "util/debug_line.h"
#include "util/utility.h"
#include "wireless/wnpa_generator.h"

namespace {

constexpr std::size_t RecordIdOffset = 3;
constexpr int ReplyTimeoutSeconds = 3;

}  // namespace

void visitRecords(std::span<const unsigned char> reply, const SettingQuery& query,
                  const std::function<bool(Record)>& visit) {
  const auto request = npa::query(query.group, query.object);
  const auto id = std::span(request).subspan(RecordIdOffset);
  for (auto rest = reply; rest.size() >= RecordValueOffset; rest = rest.subspan(1)) {
    if (rest[0] == npa::StartByte &&
        std::ranges::equal(rest.subspan(RecordIdOffset, id.size()), id) && visit(rest)) {
      return;
    }
  }
}

int wnpaGenerator::runQuery(const SettingQuery& query,
                            int (sendConfig::*exchange)(unsigned char*, int)) {
  std::vector<unsigned char> request = outgoing(npa::query(query.group, query.object));
  return (m_Exchange.*exchange)(request.data(), static_cast<int>(request.size()));
}

std::vector<unsigned char> wnpaGenerator::collectReply(const SettingQuery& query) {
  util::debugLine("%s", query.announcement);
  return collectReply(outgoing(npa::query(query.group, query.object)), query.responseName);
}

std::vector<unsigned char> wnpaGenerator::collectReply(std::vector<unsigned char> request,
                                                       const char* responseName) {
  unsigned char* reply = nullptr;
  const int count = m_Exchange.sendQuery(request.data(), static_cast<int>(request.size()), reply,
                                         ReplyTimeoutSeconds);
  const std::unique_ptr<unsigned char[]> owned(reply);
  if (responseName != nullptr) {
    util::debugLine("%s (%d bytes)", responseName, count);
    Utility::ShowBytes(owned.get(), count);
  }
  return {owned.get(), owned.get() + count};
}

int wnpaGenerator::dumpReply(const SettingQuery& query) {
  collectReply(query);
  return DumpedOnly;
}
