#pragma once

#include <string_view>

#include "emulator/adapter/network.h"
#include "emulator/radio/lease_pipe.h"

namespace emulator {

/// Computes the state that the adapter reports from the events of wpa_supplicant and udhcpc. A
/// failure is reported until the radio is connected, because wpa_supplicant never stops trying.
class RadioEvents {
 public:
  /// `authenticates` is true for a network with 802.1x.
  explicit RadioEvents(bool authenticates);

  /// Takes an event of wpa_supplicant. Ignores unknown events.
  void take(std::string_view event);
  /// Takes a report of udhcpc.
  void take(const LeaseEvent& event);

  /// Returns true from the end of the handshake to the end of the connection.
  bool isConnected() const { return m_IsConnected; }
  const LiveNetwork& network() const { return m_Network; }

 private:
  void disconnect();

  bool m_Authenticates;
  bool m_IsConnected = false;
  npa::Byte m_Cause;  ///< the 802.1x status if an EAP failure follows
  LiveNetwork m_Network;
};

}  // namespace emulator
