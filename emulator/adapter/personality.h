#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "emulator/adapter/network.h"
#include "emulator/certificates/certificate_object.h"
#include "npa/packet.h"

namespace emulator {

/// When a value of the adapter changes: after `afterQueries` queries for the value, but not before
/// `afterTime` has passed since the start. The count and the time begin again at a restart. If
/// there are networks, they also begin again at each change of settings or certificates.
struct Readiness {
  int afterQueries = 0;
  std::chrono::seconds afterTime{0};
};

/// A prescribed reply to method calls. The printer does not carry out a call for which a reply is
/// prescribed.
struct ObjectReply {
  std::string method;  ///< the name of the method; empty for all methods
  std::string file;    ///< the path of the file that `bytes` come from
  /// The status of the reply. If this is not set, the reply is one packet with `bytes`.
  std::optional<int> status{};
  /// The bytes after the flag byte of the packet.
  std::vector<npa::Byte> bytes{};
};

/// A setting that the adapter holds from the start, and the bytes of its value.
struct InitialSetting {
  npa::SettingKey key;
  npa::Bytes value;
};

/// How an emulated printer replies. The default values describe an adapter that has no faults and
/// is connected to its network.
struct Personality {
  bool refuseWrapped = false;
  bool refuseAll = false;
  bool silent = false;
  bool garbage = false;
  std::chrono::seconds replyDelay{0};
  /// The size to which each reply is cut, in bytes.
  std::optional<std::size_t> cutAt{};
  /// The size of the pieces in which a reply is sent, in bytes.
  std::optional<std::size_t> pieceSize{};
  /// The last byte of the reply to settings. 0x01 accepts them.
  npa::Byte settingsResult = 0x01;

  std::array<npa::Byte, 4> ipAddress = {192, 168, 1, 20};
  /// When the adapter gets its address. Until then the address is 0.0.0.0.
  Readiness addressAcquired{};
  npa::Byte troubleCode = 0;
  /// When the trouble code becomes 0. If this is not set, the trouble code does not change.
  std::optional<Readiness> troubleCleared{};
  std::string ssid{};
  /// Initial values of any settings. The other members of the personality take precedence.
  std::vector<InitialSetting> settings{};
  /// The networks in reach. If there are none, the adapter is always in a network. Otherwise the
  /// adapter has an address only while its settings fit one of these networks, or while it has the
  /// initial `ssid` and no host has stored settings of a network.
  std::vector<Network> networks{};
  /// How long a restart takes. The adapter restarts after it has stored settings and replied, and
  /// answers nothing during the restart. If this is not set, the adapter does not restart.
  std::optional<std::chrono::seconds> restartAfterStore{};
  std::string descriptor = "Emulated wireless adapter -";

  /// The 802.1x authentication status. Each number has its own record in the reply. If this is
  /// empty, the printer computes the status from its settings and certificates.
  std::vector<npa::Byte> authStatus{};
  /// 802.1x settings: puts a record of another setting before the queried one.
  bool otherRecordFirst = false;
  /// 802.1x settings: cuts the last record to this size in bytes. The packet around it is complete.
  std::optional<std::size_t> cutRecordAt{};
  /// 802.1x settings and method calls: the count of packets in a reply.
  std::size_t replyPackets = 1;

  CertificateRules certificates{};
  /// The prescribed replies to method calls. A call gets the last reply for its method. If no
  /// reply is prescribed for its method, the call gets the last reply without a method.
  std::vector<ObjectReply> objectReplies{};
};

}  // namespace emulator
