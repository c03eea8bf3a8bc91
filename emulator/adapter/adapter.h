#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/packet_reader.h"
#include "emulator/adapter/message.h"
#include "emulator/adapter/message_log.h"
#include "emulator/adapter/personality.h"
#include "emulator/adapter/settings_store.h"
#include "emulator/certificates/certificate_object.h"

namespace emulator {

/// The emulated wireless adapter: request bytes in, reply bytes out. How the bytes travel is the
/// business of the transport it stands behind.
///
/// A query is answered by the queried packet itself with the value's length and the value behind
/// it; inside a wrapper when the request was wrapped, and always for 802.1x settings, which are
/// looked for inside the data of a reply. Method calls go to the certificate object.
class Adapter {
 public:
  /// A piece of a reply, to be sent `delay` after the request arrived.
  struct Reply {
    std::chrono::milliseconds delay;
    npa::Bytes bytes;
  };

  using Clock = std::chrono::steady_clock;

  /// `log` must outlive the adapter. `now` tells the time.
  Adapter(Personality personality, MessageLog& log,
          std::function<Clock::time_point()> now = Clock::now);

  /// Takes the next bytes from the host, in whatever pieces they come, and returns what the adapter
  /// answers to the packets that are complete now.
  std::vector<Reply> receive(std::span<const npa::Byte> bytes);

  /// Drops the part of a packet whose rest has not come.
  void forgetPartialPacket() { m_Reader.dropPending(); }

  /// Has `keep` called whenever settings or certificates have changed, ahead of the reply that says
  /// so.
  void onChange(std::function<void()> keep) { m_Keep = std::move(keep); }

  /// Takes over what was stored in an earlier run.
  void restore(const SettingsStore::Values& settings, CertificateStore certificates);

  const SettingsStore& settings() const { return m_Settings; }
  const CertificateStore& certificates() const { return m_Certificates.store(); }

  /// One line in words for each setting, then for each certificate.
  std::vector<std::string> describe(bool showSecrets) const;

 private:
  struct Answer {
    npa::Bytes bytes;
    std::string meaning;
  };

  bool isReached(const Readiness& readiness, int earlierQueries) const;

  Answer answer(const Message& message);
  Answer answerQuery(const Message& message);
  Answer storeSettings(const Message& message);
  Answer answerCall(const ParsedCall& call);
  /// The answer that the personality has for a call, or null.
  const ObjectAnswer* findObjectAnswer(const ParsedCall& call) const;
  unsigned long revision() const;
  /// What a query for the setting gives now; `earlierQueries` went before it.
  npa::Bytes currentValue(npa::SettingKey key, int earlierQueries) const;
  /// The records of the reply to a query for an 802.1x setting.
  npa::Bytes securityRecords(npa::SettingKey key) const;
  std::vector<Reply> inPieces(npa::Bytes bytes) const;

  Personality m_Personality;
  MessageLog& m_Log;
  catalogue::PacketReader m_Reader;
  SettingsStore m_Settings;
  CertificateObject m_Certificates;
  std::function<void()> m_Keep;
  std::map<npa::SettingKey, int> m_Queries;
  std::function<Clock::time_point()> m_Now;
  Clock::time_point m_Start;
};

}  // namespace emulator
