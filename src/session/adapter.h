#pragma once

#include <optional>
#include <span>
#include <string>

#include "npa/exchange.h"
#include "npa/replies.h"
#include "npa/send_config.h"

namespace session {

/// What the adapter reports. A member has no value if the adapter was not asked, did not answer, or
/// has no value yet. An adapter without a network has an empty SSID.
struct AdapterState {
  std::optional<std::string> ssid;
  std::optional<npa::Address> address;
  std::optional<npa::Byte> troubleCode;     ///< 0: no trouble
  std::optional<npa::Byte> authentication;  ///< the index of a text in `npa::AuthStatusTexts`
};

/// Makes single exchanges with the wireless adapter at one device. An operation makes one attempt,
/// with the pauses in npa/exchange.cpp, and stops reading after a whole packet. Packets are sent in
/// a wrapper. If the adapter refuses a wrapped packet, the operation makes a second attempt with
/// the bare packet, and later packets are sent bare.
///
///     Adapter adapter("/dev/usb/lp0");
///     const auto ssid = adapter.readSsid();
class Adapter {
 public:
  explicit Adapter(std::string device);

  /// Each of these operations queries one value. It returns nothing if the value does not arrive.
  /// `readSsid` returns an empty text if the adapter has no SSID.
  [[nodiscard]] std::optional<std::string> readSsid();
  [[nodiscard]] std::optional<npa::Address> readAddress();
  [[nodiscard]] std::optional<npa::Byte> readTroubleCode();
  /// Makes the second attempt, with the bare packet, also if no status arrives in the first
  /// attempt.
  [[nodiscard]] std::optional<npa::Byte> readAuthentication();

  /// Sends one packet of settings. `packet` is the bare packet. Returns `Accepted` if the adapter
  /// accepts the settings.
  [[nodiscard]] npa::Outcome::Kind store(std::span<const npa::Byte> packet);

  /// Resets the adapter.
  [[nodiscard]] npa::Outcome::Kind reset();

 private:
  struct Answer {
    npa::Outcome outcome;
    std::size_t requestSize;  ///< in bytes, including the wrapper if there was one
  };

  /// Makes one attempt of `exchange`. If the adapter refuses the wrapped packet, makes a second
  /// attempt with the bare packet.
  Answer ask(const Exchange& exchange, std::span<const npa::Byte> packet);
  Answer askOnce(const Exchange& exchange, std::span<const npa::Byte> packet);
  /// Returns the bytes to send for a packet: wrapped if `m_Wraps`, otherwise bare.
  npa::Bytes outgoing(std::span<const npa::Byte> packet) const;

  sendConfig m_Sender;
  bool m_Wraps = true;
};

}  // namespace session
