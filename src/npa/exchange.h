#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

/// One kind of special-purpose exchange: how long it waits, how often it tries, and how it judges
/// the raw reply. The pauses are waits for the adapter and part of its protocol, not tuning.
struct Exchange {
  using Reply = std::span<const std::uint8_t>;

  /// Judges the reply to a request of `requestLength` bytes. A value ends the exchange with that
  /// result; nothing means a failed attempt. May print what the user asked for. A byte that did not
  /// arrive is never looked at.
  using Judge = std::optional<int> (*)(Reply reply, std::size_t requestLength);

  /// The result when the last attempt, which brought `reply`, failed as well.
  using Verdict = int (*)(Reply reply);

  std::size_t bufferSize;        ///< how much of the reply is read
  unsigned int pauseAfterWrite;  ///< seconds between request and reading
  int attempts;                  ///< at most
  unsigned int pauseBetween;     ///< seconds between a failed attempt and the next
  Judge judge;
  Verdict afterLastAttempt;
};

/// The exchanges, by the operation of `sendConfig` that each belongs to.
namespace exchanges {

extern const Exchange SetConfig;
extern const Exchange ResetIna;
extern const Exchange GetAdapterDescriptor;
extern const Exchange GetTroubleCode;
extern const Exchange GetSsid;
extern const Exchange GetIp;

}  // namespace exchanges
