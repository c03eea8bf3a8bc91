#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "emulator/certificates/certificate_object.h"
#include "npa/packet.h"

namespace emulator {

/// When an adapter is through with something: after so many queries for it and after so much time.
struct Readiness {
  int afterQueries = 0;
  std::chrono::seconds afterTime{0};
};

/// What a method call is answered with instead of being carried out.
struct ObjectAnswer {
  std::string method;  ///< whose calls; empty for every call
  std::string file;    ///< that `bytes` are read from
  /// A status to reply with; without one the reply is `bytes`.
  std::optional<int> status{};
  /// All that follows the flag byte of the one packet that the reply is.
  std::vector<npa::Byte> bytes{};
};

/// How an emulated printer answers. The defaults are a well-behaved adapter that is connected.
struct Personality {
  bool refuseWrapped = false;
  bool refuseAll = false;
  bool silent = false;
  bool garbage = false;
  std::chrono::seconds answerAfter{0};
  /// Replies are cut to this size.
  std::optional<std::size_t> cutAt{};
  /// Replies go out in pieces of this size.
  std::optional<std::size_t> pieceSize{};
  /// The last byte of the answer to settings; 0x01 accepts them.
  npa::Byte settingsResult = 0x01;

  std::array<npa::Byte, 4> ipAddress = {192, 168, 1, 20};
  /// Until then the address is 0.0.0.0.
  Readiness addressAcquired{};
  npa::Byte troubleCode = 0;
  /// From then on the trouble code is 0.
  std::optional<Readiness> troubleOver{};
  std::string ssid{};
  std::string descriptor = "Emulated wireless adapter -";

  /// The 802.1x authentication status; of several each has a record in the reply. Without any it
  /// comes from the settings and certificates that the printer holds.
  std::vector<npa::Byte> authStatus{};
  /// Puts the record of another setting ahead of those asked for (802.1x settings).
  bool otherRecordFirst = false;
  /// Cuts the last record to this size, inside a packet that is whole (802.1x settings).
  std::optional<std::size_t> cutRecordAt{};
  /// How many packets a reply has (802.1x settings and method calls).
  std::size_t replyPackets = 1;

  CertificateRules certificates{};
  /// The last one for a method goes before the last one for every call.
  std::vector<ObjectAnswer> objectAnswers{};
};

}  // namespace emulator
