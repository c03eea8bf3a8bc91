#pragma once

#include <cstddef>
#include <span>

#include "npa/packet.h"

/// One kind of exchange: how much it reads, how long it waits, how many attempts it makes, and
/// which reply it expects. The adapter needs the pauses: they are part of its protocol and not
/// tuning.
///
/// An attempt writes the request, pauses, and reads once. The exchange ends with the first reply
/// that is a refusal or the expected one, or after the last attempt.
///
///     const npa::Outcome outcome = sender.run(exchanges::GetTroubleCode, request);
struct Exchange {
  /// The raw bytes that arrived. It may be empty or end anywhere, so check the size before an
  /// access.
  using Reply = std::span<const npa::Byte>;

  std::size_t bufferSize;         ///< the most bytes of the reply that are read
  unsigned int pauseAfterWrite;   ///< seconds between request and reading
  int attempts = 1;               ///< the most attempts that are made
  unsigned int pauseBetween = 0;  ///< seconds between a failed attempt and the next
  bool canBeRefused = true;       ///< true if flag byte 0xD4 ends the exchange
  /// Returns true if this is the expected reply to a request of `requestSize` bytes.
  bool (*isExpected)(Reply reply, std::size_t requestSize);
};

namespace npa {

/// The result of an exchange.
struct Outcome {
  enum class Kind {
    Accepted,    ///< the expected reply arrived
    Refused,     ///< the adapter refused the request (flag byte 0xD4)
    Unexpected,  ///< another reply arrived in the last attempt
    NoAnswer,    ///< no byte arrived in the last attempt
  };

  Kind kind;
  Bytes reply;  ///< the raw bytes of the last attempt
};

}  // namespace npa

/// The exchanges. Each has the name of the `sendConfig` operation that runs it.
namespace exchanges {

extern const Exchange SetConfig;
extern const Exchange ResetIna;
extern const Exchange GetAdapterDescriptor;
extern const Exchange GetTroubleCode;
extern const Exchange GetSsid;
extern const Exchange GetIp;

}  // namespace exchanges
