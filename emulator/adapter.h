#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <span>
#include <string_view>
#include <vector>

#include "emulator/message.h"
#include "emulator/message_log.h"
#include "emulator/packet_reader.h"
#include "emulator/personality.h"
#include "emulator/settings_store.h"

namespace emulator {

/// The emulated wireless adapter: request bytes in, reply bytes out. How the bytes travel is the
/// business of the door it stands behind.
///
/// A query is answered by the queried packet itself with the value's length and the value behind
/// it; inside a wrapper when the request was wrapped, and always for 802.1x settings, which are
/// looked for inside the data of a reply.
class Adapter {
 public:
  /// A piece of a reply, to be sent `delay` after the request arrived.
  struct Reply {
    std::chrono::milliseconds delay;
    Bytes bytes;
  };

  using Clock = std::chrono::steady_clock;

  /// `log` must outlive the adapter. `now` tells the time.
  Adapter(Personality personality, MessageLog& log,
          std::function<Clock::time_point()> now = Clock::now);

  /// Takes the next bytes from the host, in whatever pieces they come, and returns what the adapter
  /// answers to the packets that are complete now.
  std::vector<Reply> receive(std::span<const npa::Byte> bytes);

  const SettingsStore& settings() const { return m_Settings; }

 private:
  struct Answer {
    Bytes bytes;
    std::string_view meaning;
  };

  bool isReached(const Readiness& readiness, int earlierQueries) const;

  Answer answer(const Message& message);
  Answer answerQuery(const Message& message);
  Answer storeSettings(const Message& message);
  /// What a query for the setting gives now; `earlierQueries` went before it.
  Bytes currentValue(SettingKey key, int earlierQueries) const;
  /// The records of the reply to a query for an 802.1x setting.
  Bytes securityRecords(SettingKey key) const;
  std::vector<Reply> inPieces(Bytes bytes) const;

  Personality m_Personality;
  MessageLog& m_Log;
  PacketReader m_Reader;
  SettingsStore m_Settings;
  std::map<SettingKey, int> m_Queries;
  std::function<Clock::time_point()> m_Now;
  Clock::time_point m_Start;
};

}  // namespace emulator
