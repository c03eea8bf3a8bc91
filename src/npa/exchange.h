#pragma once

#include <cstddef>
#include <span>

#include "npa/packet.h"

/// One kind of exchange: the size of the reply that it reads, its pauses, the count of attempts,
/// and the reply that it expects. The pauses are part of the adapter's protocol: the adapter needs
/// them.
///
/// An attempt writes the request, pauses, and reads the reply. The exchange ends when the expected
/// reply or a refusal arrives, or after the last attempt.
///
///     const npa::Outcome outcome = sender.run(exchanges::GetTroubleCode, request);
struct Exchange {
  /// The raw bytes that arrived. A reply may be empty or cut at any byte, so check the size before
  /// you read a byte.
  using Reply = std::span<const npa::Byte>;

  std::size_t bufferSize;         ///< how many bytes of the reply are read at most
  unsigned int pauseAfterWrite;   ///< seconds between request and reading
  int attempts = 1;               ///< how many attempts are made at most
  unsigned int pauseBetween = 0;  ///< seconds between a failed attempt and the next
  bool canBeRefused = true;       ///< true if a reply with flag byte 0xD4 ends the exchange
  /// Returns true if this is the expected reply to a request of `requestSize` bytes.
  bool (*isExpected)(Reply reply, std::size_t requestSize);
};

namespace npa {

/// The result of an exchange.
struct Outcome {
  enum class Kind {
    Accepted,    ///< the expected reply arrived
    Refused,     ///< the adapter refused the request (flag byte 0xD4)
    Unexpected,  ///< the last attempt got a reply that is not the expected one
    NoAnswer,    ///< the last attempt got no byte
  };

  Kind kind;
  Bytes reply;  ///< the raw bytes that arrived in the last attempt
};

}  // namespace npa

/// The exchanges. Each exchange is named after the `sendConfig` operation that runs it.
namespace exchanges {

extern const Exchange SetConfig;
extern const Exchange ResetIna;
extern const Exchange GetAdapterDescriptor;
extern const Exchange GetTroubleCode;
extern const Exchange GetSsid;
extern const Exchange GetIp;

}  // namespace exchanges
