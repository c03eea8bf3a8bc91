#pragma once

#include <cstddef>
#include <span>

#include "npa/packet.h"

/// One kind of special-purpose exchange: how much it reads, how long it waits, how often it tries,
/// and which reply it expects. The pauses are waits for the adapter and part of its protocol, not
/// tuning.
///
/// An attempt writes the request, pauses, and reads once. The exchange ends with the first reply
/// that refuses the request or is the expected one, else after the last attempt.
struct Exchange {
  /// The raw bytes that came, from the first on. A byte that did not arrive is never looked at.
  using Reply = std::span<const npa::Byte>;

  std::size_t bufferSize;         ///< how many bytes of the reply are read, at most
  unsigned int pauseAfterWrite;   ///< seconds between request and reading
  int attempts = 1;               ///< at most
  unsigned int pauseBetween = 0;  ///< seconds between a failed attempt and the next
  bool canBeRefused = true;       ///< whether flag byte 0xD4 ends the exchange
  /// Whether this is the expected reply to a request of `requestSize` bytes.
  bool (*isExpected)(Reply reply, std::size_t requestSize);
};

namespace npa {

/// What came of an exchange.
struct Outcome {
  enum class Kind {
    Accepted,    ///< the expected reply came
    Refused,     ///< the adapter refused the request (flag byte 0xD4)
    Unexpected,  ///< the last attempt brought another reply
    NoAnswer,    ///< the last attempt brought no byte
  };

  Kind kind;
  Bytes reply;  ///< the raw bytes of the last attempt
};

}  // namespace npa

/// The exchanges, by the operation of `sendConfig` that each belongs to.
namespace exchanges {

extern const Exchange SetConfig;
extern const Exchange ResetIna;
extern const Exchange GetAdapterDescriptor;
extern const Exchange GetTroubleCode;
extern const Exchange GetSsid;
extern const Exchange GetIp;

}  // namespace exchanges
