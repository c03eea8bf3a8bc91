#pragma once

#include <optional>
#include <span>
#include <string>

#include "npa/exchange.h"
#include "npa/replies.h"
#include "npa/send_config.h"

namespace session {

/// What the adapter reports. A part is empty if the adapter did not answer the query, or has no
/// value yet.
struct AdapterState {
  std::optional<std::string> ssid;
  std::optional<npa::Address> address;
  std::optional<npa::Byte> troubleCode;     ///< 0: no trouble
  std::optional<npa::Byte> authentication;  ///< the index of a text in `npa::AuthStatusTexts`
};

/// Single exchanges with the wireless adapter at one device. An operation makes one attempt, with
/// the pauses of the table of exchanges, and stops reading after a whole packet. A packet is sent
/// in a wrapper first; if the adapter refuses wrappers, this and all later packets are sent bare.
///
///     Adapter adapter("/dev/usb/lp0");
///     const auto ssid = adapter.readSsid();
class Adapter {
 public:
  explicit Adapter(std::string device);

  /// Each queries one value and returns nothing if it did not arrive. The SSID is empty if the
  /// adapter has none.
  [[nodiscard]] std::optional<std::string> readSsid();
  [[nodiscard]] std::optional<npa::Address> readAddress();
  [[nodiscard]] std::optional<npa::Byte> readTroubleCode();
  [[nodiscard]] std::optional<npa::Byte> readAuthentication();

  /// Sends one bare packet of settings. The adapter has accepted it if the result is `Accepted`.
  [[nodiscard]] npa::Outcome::Kind store(std::span<const npa::Byte> packet);

  /// Resets the adapter.
  [[nodiscard]] npa::Outcome::Kind reset();

 private:
  struct Answer {
    npa::Outcome outcome;
    std::size_t requestSize;  ///< with the wrapper, if there was one
  };

  /// Makes one attempt of `exchange`, and a second one without the wrapper if that is refused.
  Answer ask(const Exchange& exchange, std::span<const npa::Byte> packet);
  Answer askOnce(const Exchange& exchange, std::span<const npa::Byte> packet);
  /// Returns the bytes to send for a packet.
  npa::Bytes outgoing(std::span<const npa::Byte> packet) const;

  sendConfig m_Sender;
  bool m_Wraps = true;
};

}  // namespace session
