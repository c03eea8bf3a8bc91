// The outcome that an exchange returns. The exchange itself prints nothing.

#include <gtest/gtest.h>

#include "npa/exchange.h"
#include "npa/send_config.h"
#include "testing/output.h"
#include "testing/rows.h"
#include "testing/usblp_printer.h"

using npa::Outcome;
using support::Bytes;
using support::bytes;
using support::Output;
using support::outputOf;
using support::TransportReleased;

namespace {

struct OutcomeRow : support::Row {
  const Exchange* exchange;
  const char* reply;
  Outcome::Kind kind;
};

class ExchangeOutcome : public support::UsblpPrinter,
                        public testing::WithParamInterface<OutcomeRow> {};

}  // namespace

TEST_P(ExchangeOutcome, HasAKindAndTheReplyBytes) {
  answer({bytes(GetParam().reply)});
  Bytes request = bytes("A5 00 06");
  Outcome outcome{Outcome::Kind::Accepted, bytes("77")};
  EXPECT_EQ(outputOf([&] {
              sendConfig exchange("/dev/usb/lp0");
              outcome = exchange.run(*GetParam().exchange, request);
            }),
            (Output{"", TransportReleased}));
  EXPECT_EQ(outcome.kind, GetParam().kind);
  EXPECT_EQ(outcome.reply, bytes(GetParam().reply));
}

using Kind = Outcome::Kind;

INSTANTIATE_TEST_SUITE_P(
    Rows, ExchangeOutcome,
    testing::Values(
        OutcomeRow{{"Accepted"}, &exchanges::SetConfig, "A5 00 03 50 E0 DA 01 01", Kind::Accepted},
        OutcomeRow{{"NotAccepted"}, &exchanges::SetConfig, "A5 00 03 50 00", Kind::Unexpected},
        OutcomeRow{{"Refused"}, &exchanges::SetConfig, "A5 00 02 D4 E0", Kind::Refused},
        OutcomeRow{{"NoAnswer"}, &exchanges::SetConfig, "", Kind::NoAnswer},
        OutcomeRow{{"ResetIsNotRefused"}, &exchanges::ResetIna, "A5 00 02 D4 00", Kind::Unexpected},
        OutcomeRow{{"Descriptor"}, &exchanges::GetAdapterDescriptor, "41 2D", Kind::Accepted},
        OutcomeRow{{"Trouble"}, &exchanges::GetTroubleCode, "A5 00 02 50 07", Kind::Unexpected},
        OutcomeRow{{"NoTrouble"}, &exchanges::GetTroubleCode, "A5 00 02 50 00", Kind::Accepted},
        OutcomeRow{{"Ssid"}, &exchanges::GetSsid, "A5 00 00 50 E0 68 00", Kind::Accepted},
        OutcomeRow{{"NoAddressYet"}, &exchanges::GetIp, "00 00 00 00", Kind::Unexpected},
        OutcomeRow{{"Address"}, &exchanges::GetIp, "0A 00 00 07", Kind::Accepted}),
    support::rowName);

TEST_F(ExchangeOutcome, IsNoAnswerIfTheDeviceCannotBeOpened) {
  Bytes request = bytes("A5 00 06");
  sendConfig exchange("/dev/usb/lp9");
  EXPECT_EQ(exchange.run(exchanges::GetSsid, request).kind, Kind::NoAnswer);
}

TEST_F(ExchangeOutcome, IsTheCollectedReplyOfAQuery) {
  answer({bytes("A5 00 04 50 E0 61 62")});
  Bytes request = bytes("A5 00 06");
  sendConfig exchange("/dev/usb/lp0");
  EXPECT_EQ(exchange.query(request, 3), bytes("E0 61 62"));
}
