// The table of events, with trouble codes and 802.1x statuses.

#include "emulator/radio/radio_events.h"

#include <algorithm>
#include <array>
#include <optional>

namespace emulator {

namespace {

// The codes of the setting "802.1x authentication status".
constexpr npa::Byte NotEnabled = 0;
constexpr npa::Byte Authenticated = 2;
constexpr npa::Byte NotConnected = 3;
constexpr npa::Byte ServerNotYetValid = 4;
constexpr npa::Byte ServerExpired = 5;
constexpr npa::Byte ServerRejected = 6;
constexpr npa::Byte ClientRejected = 7;
constexpr npa::Byte TypeMismatch = 8;
constexpr npa::Byte Failed = 9;
constexpr npa::Byte InProgress = 10;

/// What an event means. An event matches if it starts with `event` and contains `detail`.
struct EventRow {
  std::string_view event;
  std::string_view detail;
  std::optional<Membership> membership;
  std::optional<npa::Byte> cause;  ///< the 802.1x status if an EAP failure follows
};

constexpr std::string_view EapStatus = "CTRL-EVENT-EAP-STATUS";
constexpr std::string_view CertificateError = "CTRL-EVENT-EAP-TLS-CERT-ERROR";
constexpr std::string_view TempDisabled = "CTRL-EVENT-SSID-TEMP-DISABLED";

/// The first row that matches counts.
constexpr std::array Events = {
    EventRow{"CTRL-EVENT-NETWORK-NOT-FOUND", "", Membership::NoSuchNetwork, {}},
    EventRow{TempDisabled, "reason=AUTH_FAILED", Membership::Refused, {}},
    // The reason is WRONG_KEY. If the access point ignores a wrong WEP key, it is CONN_FAILED.
    EventRow{TempDisabled, "", Membership::WrongKey, {}},
    EventRow{"CTRL-EVENT-AUTH-REJECT", "", Membership::WrongKey, {}},
    EventRow{"CTRL-EVENT-ASSOC-REJECT", "", Membership::WrongKey, {}},
    EventRow{CertificateError, "reason=3 ", {}, ServerNotYetValid},
    EventRow{CertificateError, "reason=4 ", {}, ServerExpired},
    EventRow{CertificateError, "", {}, ServerRejected},
    EventRow{EapStatus, "'remote TLS alert'", {}, ClientRejected},
    EventRow{EapStatus, "'refuse proposed method'", {}, TypeMismatch},
    // A server that refuses the certificate of EAP-TLS may end the authentication without an alert.
    EventRow{EapStatus, "'accept proposed method' parameter='TLS'", {}, ClientRejected},
    EventRow{EapStatus, "'accept proposed method'", {}, Failed},
    EventRow{"CTRL-EVENT-EAP-FAILURE", "", Membership::Refused, {}},
};

bool isFailure(Membership membership) {
  return membership != Membership::Joined && membership != Membership::Joining;
}

}  // namespace

RadioEvents::RadioEvents(bool authenticates)
    : m_Authenticates(authenticates),
      m_Cause(Failed),
      m_Network{Membership::Joining, authenticates ? NotConnected : NotEnabled, {}} {}

void RadioEvents::disconnect() {
  if (m_IsConnected) {
    *this = RadioEvents(m_Authenticates);
  }
}

void RadioEvents::take(std::string_view event) {
  if (event.starts_with("CTRL-EVENT-CONNECTED")) {
    m_IsConnected = true;
    m_Network.membership = Membership::Joining;
    m_Network.authStatus = m_Authenticates ? Authenticated : NotEnabled;
    return;
  }
  if (event.starts_with("CTRL-EVENT-DISCONNECTED")) {
    disconnect();
    return;
  }
  if (m_Authenticates && event.starts_with("CTRL-EVENT-EAP-STARTED") &&
      !isFailure(m_Network.membership) && !m_IsConnected) {
    m_Network.authStatus = InProgress;
    return;
  }
  const auto* const row = std::ranges::find_if(Events, [event](const EventRow& candidate) {
    return event.starts_with(candidate.event) &&
           event.find(candidate.detail) != std::string_view::npos;
  });
  if (row == Events.end()) {
    return;
  }
  m_Cause = row->cause.value_or(m_Cause);
  if (!row->membership || m_IsConnected) {
    return;
  }
  const bool isSearch = *row->membership == Membership::NoSuchNetwork;
  const bool hasReason =
      m_Network.membership == Membership::WrongKey || m_Network.membership == Membership::Refused;
  if (isSearch && hasReason) {
    // After a failure wpa_supplicant does not search for the network for some time. So this event
    // does not mean that there is no such network.
    return;
  }
  if (m_Authenticates && !isSearch) {
    m_Network.membership = Membership::Refused;
    m_Network.authStatus = m_Cause;
    return;
  }
  m_Network.membership = *row->membership;
}

void RadioEvents::take(const LeaseEvent& event) {
  m_Network.address = event.address;
  if (!m_IsConnected) {
    m_Network.address = {};
  } else if (event.kind == LeaseEvent::Kind::Bound) {
    m_Network.membership = Membership::Joined;
  } else if (event.kind == LeaseEvent::Kind::Failed) {
    m_Network.membership = Membership::NoAddress;
  } else if (m_Network.membership == Membership::Joined) {
    m_Network.membership = Membership::Joining;
  }
}

}  // namespace emulator
