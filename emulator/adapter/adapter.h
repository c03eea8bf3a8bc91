#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/packet_reader.h"
#include "emulator/adapter/message.h"
#include "emulator/adapter/message_log.h"
#include "emulator/adapter/network.h"
#include "emulator/adapter/personality.h"
#include "emulator/adapter/settings_store.h"
#include "emulator/certificates/certificate_object.h"

namespace emulator {

/// The emulated wireless adapter. It takes the bytes of requests and returns the bytes of replies.
/// A transport moves the bytes.
///
///     Adapter adapter(personality, log);
///     for (const Adapter::ReplyPiece& piece : adapter.receive(request)) {
///       sendLater(piece.bytes, piece.delay);
///     }
///
/// The reply to a query is the query, followed by the size of the value and the value. The reply is
/// wrapped if the request was wrapped. The reply to a query for an 802.1x setting is always
/// wrapped, because hosts search for the record inside the data of the reply. The certificate
/// object answers method calls.
class Adapter {
 public:
  /// A piece of a reply. The transport sends it when `delay` has passed since the request arrived.
  struct ReplyPiece {
    std::chrono::milliseconds delay;
    npa::Bytes bytes;
  };

  using Clock = std::chrono::steady_clock;

  /// A restart. The adapter answers nothing until `end`.
  struct Restart {
    Clock::time_point begin;  ///< when the reply has been sent; `postponeRestart` moves it
    Clock::time_point end;
  };

  /// `log` must outlive the adapter. `now` returns the time.
  Adapter(Personality personality, MessageLog& log,
          std::function<Clock::time_point()> now = Clock::now);

  /// Takes the next bytes from the host. The bytes of a packet may arrive in any pieces. Returns
  /// the replies to the packets that are now complete.
  std::vector<ReplyPiece> receive(std::span<const npa::Byte> bytes);

  /// If a restart was caused since the last call, postpones this restart by `delay` and returns it.
  /// Otherwise returns nothing.
  std::optional<Restart> postponeRestart(std::chrono::seconds delay);

  /// Drops an incomplete packet.
  void forgetPartialPacket() { m_Reader.dropPending(); }

  /// Sets the function that saves the state. The adapter calls this function after each change
  /// of settings or certificates, before it replies.
  void onChange(std::function<void()> save) { m_Save = std::move(save); }

  /// Sets the settings and certificates of an earlier run.
  void restore(const SettingsStore::Values& settings, CertificateStore certificates);

  /// Sets the state of the network that a real radio has found. From then on the adapter reports
  /// this state, and ignores what the personality and `Authentication` say about the network.
  void report(const LiveNetwork& network);

  const SettingsStore& settings() const { return m_Settings; }
  const CertificateStore& certificates() const { return m_Certificates.store(); }

  /// Returns a line of text for each setting, then for each certificate.
  std::vector<std::string> describe(bool showSecrets) const;

 private:
  /// A whole reply. Its bytes are empty if the adapter does not reply.
  struct Reply {
    npa::Bytes bytes;
    std::string meaning;  ///< for the log
  };

  bool isRestarting() const { return m_Now() < m_Restart.end; }
  /// If the personality demands a restart, restarts after `delay`, when the reply has been sent.
  void restart(std::chrono::milliseconds delay);
  /// Returns whether the settings and certificates are right for one of the networks, or why not.
  Membership membership() const;
  /// Joins the network for which settings and certificates are right, or leaves the network.
  void join();
  /// Presets the address and the trouble code that fit the membership.
  void presetNetworkValues(Membership membership);
  /// Restarts the time and the counts of queries on which a `Readiness` depends: the time at
  /// `start`, and the counts at 0.
  void startCounting(Clock::time_point start);

  /// Returns true if `readiness` is reached. `earlierQueries` is the count of earlier queries for
  /// the same setting.
  bool isReached(const Readiness& readiness, int earlierQueries) const;

  Reply answer(const Message& message);
  Reply answerQuery(const Message& message);
  Reply storeSettings(const Message& message);
  Reply answerCall(const ParsedCall& call);
  /// Returns the reply that the personality prescribes for a call, or null if it prescribes none.
  const ObjectReply* findObjectReply(const ParsedCall& call) const;
  /// Returns a number that grows with every change of settings or certificates.
  unsigned long revision() const;
  /// Returns the value with which the adapter would now answer a query for the setting.
  /// `earlierQueries` is the count of earlier queries for the setting.
  npa::Bytes currentValue(npa::SettingKey key, int earlierQueries) const;
  /// Returns the records in the reply to a query for an 802.1x setting.
  npa::Bytes securityRecords(npa::SettingKey key) const;
  /// Splits a reply into the pieces, with the delays, that the personality prescribes.
  std::vector<ReplyPiece> inPieces(npa::Bytes bytes) const;

  Personality m_Personality;
  MessageLog& m_Log;
  catalogue::PacketReader m_Reader;
  SettingsStore m_Settings;
  CertificateObject m_Certificates;
  std::optional<LiveNetwork> m_Live;  ///< the last report of a real radio
  std::function<void()> m_Save;
  std::map<npa::SettingKey, int> m_Queries;  ///< the queries since `m_Start`
  std::function<Clock::time_point()> m_Now;
  Clock::time_point m_Start;
  Restart m_Restart{Clock::time_point::min(), Clock::time_point::min()};  ///< the last restart
  bool m_RestartIsNew = false;  ///< `postponeRestart` has not returned `m_Restart` yet
};

}  // namespace emulator
