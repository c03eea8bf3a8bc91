#include "emulator/radio/radio_events.h"

#include <gtest/gtest.h>
#include <string_view>
#include <vector>

#include "testing/rows.h"

// Events of wpa_supplicant and udhcpc, and what the adapter reports then.

namespace {

using emulator::LeaseEvent;
using emulator::Membership;
using emulator::RadioEvents;

using Lines = std::vector<std::string_view>;

constexpr std::string_view Connected = "CTRL-EVENT-CONNECTED - Connection to 02:00 completed";
constexpr std::string_view Disconnected = "CTRL-EVENT-DISCONNECTED bssid=02:00 reason=3";
constexpr std::string_view NotFound = "CTRL-EVENT-NETWORK-NOT-FOUND ";
constexpr std::string_view WrongKey =
    "CTRL-EVENT-SSID-TEMP-DISABLED id=0 ssid=\"x\" auth_failures=1 duration=10 reason=WRONG_KEY";
constexpr std::string_view AuthFailed =
    "CTRL-EVENT-SSID-TEMP-DISABLED id=0 ssid=\"x\" auth_failures=1 duration=10 reason=AUTH_FAILED";
constexpr std::string_view EapStarted = "CTRL-EVENT-EAP-STARTED EAP authentication started";
constexpr std::string_view EapFailure = "CTRL-EVENT-EAP-FAILURE EAP authentication failed";
constexpr std::string_view Accepted =
    "CTRL-EVENT-EAP-STATUS status='accept proposed method' parameter='PEAP'";
constexpr std::string_view AcceptedTls =
    "CTRL-EVENT-EAP-STATUS status='accept proposed method' parameter='TLS'";
constexpr std::string_view Refused =
    "CTRL-EVENT-EAP-STATUS status='refuse proposed method' parameter='MD5'";
constexpr std::string_view RemoteAlert =
    "CTRL-EVENT-EAP-STATUS status='remote TLS alert' parameter='certificate expired'";
constexpr std::string_view Untrusted =
    "CTRL-EVENT-EAP-TLS-CERT-ERROR reason=1 depth=1 subject='/CN=x' err='self-signed'";

struct EventsRow : support::Row {
  bool authenticates;
  Lines events;
  int troubleCode;
  int authStatus;
};

class EventsOfSupplicant : public testing::TestWithParam<EventsRow> {};

TEST_P(EventsOfSupplicant, DetermineTroubleCodeAndStatus) {
  RadioEvents events(GetParam().authenticates);
  for (const std::string_view event : GetParam().events) {
    events.take(event);
  }
  EXPECT_EQ(static_cast<int>(events.network().membership), GetParam().troubleCode);
  EXPECT_EQ(events.network().authStatus, GetParam().authStatus);
}

INSTANTIATE_TEST_SUITE_P(
    Personal, EventsOfSupplicant,
    testing::Values(
        EventsRow{{"Nothing"}, false, {}, 8, 0},
        EventsRow{{"Unknown"}, false, {"CTRL-EVENT-SCAN-STARTED ", "OK\n", ""}, 8, 0},
        EventsRow{{"NoSuchNetwork"}, false, {NotFound}, 2, 0},
        EventsRow{{"WrongKey"}, false, {Disconnected, WrongKey}, 3, 0},
        EventsRow{
            {"AWrongKeyIsNotForgottenDuringTheNextSearch"}, false, {WrongKey, NotFound}, 3, 0},
        EventsRow{{"NoAnswerToTheAuthentication"},
                  false,
                  {"CTRL-EVENT-SSID-TEMP-DISABLED id=0 ssid=\"x\" auth_failures=1 duration=10 "
                   "reason=CONN_FAILED"},
                  3,
                  0},
        EventsRow{{"NetworkFoundButWrongKey"}, false, {NotFound, WrongKey}, 3, 0},
        EventsRow{{"AuthenticationRejected"},
                  false,
                  {"CTRL-EVENT-AUTH-REJECT 02:00 auth_type=1 auth_transaction=4 status_code=15"},
                  3,
                  0},
        EventsRow{{"AssociationRejected"},
                  false,
                  {"CTRL-EVENT-ASSOC-REJECT bssid=02:00 status_code=1"},
                  3,
                  0},
        EventsRow{{"ConnectedWithoutAddress"}, false, {WrongKey, Connected}, 8, 0},
        EventsRow{{"Disconnected"}, false, {Connected, Disconnected}, 8, 0},
        EventsRow{{"DisconnectedAndGone"}, false, {Connected, Disconnected, NotFound}, 2, 0},
        EventsRow{
            {"ASearchWhileConnectedIsForAnotherAccessPoint"}, false, {Connected, NotFound}, 8, 0}),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    Authentication, EventsOfSupplicant,
    testing::Values(
        EventsRow{{"ServerNothing"}, true, {}, 8, 3},
        EventsRow{{"ServerNoSuchNetwork"}, true, {NotFound}, 2, 3},
        EventsRow{{"InProgress"}, true, {EapStarted}, 8, 10},
        EventsRow{{"Authenticated"}, true, {EapStarted, Accepted, Connected}, 8, 2},
        EventsRow{{"Failed"}, true, {EapStarted, Accepted, EapFailure, AuthFailed}, 5, 9},
        EventsRow{{"AFailureStaysDuringTheNextAttempt"}, true, {EapFailure, EapStarted}, 5, 9},
        EventsRow{
            {"UntrustedServer"}, true, {EapStarted, AcceptedTls, Untrusted, EapFailure}, 5, 6},
        EventsRow{{"ServerNotYetValid"},
                  true,
                  {"CTRL-EVENT-EAP-TLS-CERT-ERROR reason=3 depth=0 subject='' err=''", EapFailure},
                  5,
                  4},
        EventsRow{{"ServerExpired"},
                  true,
                  {"CTRL-EVENT-EAP-TLS-CERT-ERROR reason=4 depth=0 subject='' err=''", EapFailure},
                  5,
                  5},
        EventsRow{{"ClientRejected"}, true, {Accepted, RemoteAlert, EapFailure}, 5, 7},
        EventsRow{
            {"ClientRejectedWithoutAnAlert"}, true, {AcceptedTls, EapFailure, AuthFailed}, 5, 7},
        EventsRow{{"AnEarlierCauseIsForgottenWithTheNextMethod"},
                  true,
                  {Accepted, Untrusted, EapFailure, Accepted, EapFailure},
                  5,
                  9},
        EventsRow{{"TypeMismatch"}, true, {Refused, EapFailure}, 5, 8},
        EventsRow{{"AnotherMethodIsAccepted"}, true, {Refused, Accepted, EapFailure}, 5, 9},
        EventsRow{{"KeysMissingAfterwards"}, true, {EapStarted, WrongKey}, 5, 9}),
    support::rowName);

TEST(RadioEvents, ReportsTheAddressOfALease) {
  RadioEvents events(false);
  events.take(Connected);
  events.take(LeaseEvent{LeaseEvent::Kind::Bound, {10, 9, 8, 20}});
  EXPECT_EQ(events.network().membership, Membership::Joined);
  EXPECT_EQ(events.network().address, (std::array<npa::Byte, 4>{10, 9, 8, 20}));
}

TEST(RadioEvents, ReportsThatNoServerGivesAnAddress) {
  RadioEvents events(false);
  events.take(Connected);
  events.take(LeaseEvent{LeaseEvent::Kind::Lost, {}});
  EXPECT_EQ(events.network().membership, Membership::Joining);
  events.take(LeaseEvent{LeaseEvent::Kind::Failed, {}});
  EXPECT_EQ(events.network().membership, Membership::NoAddress);
}

TEST(RadioEvents, ForgetsTheAddressWithTheConnection) {
  RadioEvents events(false);
  events.take(Connected);
  events.take(LeaseEvent{LeaseEvent::Kind::Bound, {10, 9, 8, 20}});
  events.take(Disconnected);
  EXPECT_FALSE(events.isConnected());
  EXPECT_EQ(events.network().address, (std::array<npa::Byte, 4>{}));
  events.take(LeaseEvent{LeaseEvent::Kind::Bound, {10, 9, 8, 20}});
  EXPECT_EQ(events.network().membership, Membership::Joining);
}

}  // namespace
