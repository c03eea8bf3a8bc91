// How long sendQuery waits for a malformed or missing reply.

#include <cstddef>
#include <gtest/gtest.h>
#include <vector>

#include "testing/send_query.h"

using support::Bytes;
using support::bytes;
using support::Quiet;
using support::ReplyRow;
using support::SendQuery;
using virtual_system::Second;

namespace {

struct DeadlineRow : support::Row {
  int timeout;
  int reads;  ///< count of reads until the deadline
};

class SendQueryDeadline : public SendQuery, public testing::WithParamInterface<DeadlineRow> {};

}  // namespace

// A read from a silent printer takes 5 seconds.
TEST_P(SendQueryDeadline, LimitsTheReads) {
  EXPECT_EQ(query(GetParam().timeout), Bytes());
  EXPECT_TRUE(untouched);
  EXPECT_EQ(system.now(), (2 + 5 * GetParam().reads) * Second);
  EXPECT_EQ(device.readSizes,
            std::vector<std::size_t>(static_cast<std::size_t>(GetParam().reads), 1));
  EXPECT_EQ(system.events.back(), "close");
  EXPECT_EQ(output, Quiet);
}

INSTANTIATE_TEST_SUITE_P(Timeouts, SendQueryDeadline,
                         testing::Values(DeadlineRow{{"Negative"}, -1, 1},
                                         DeadlineRow{{"None"}, 0, 1}, DeadlineRow{{"Query"}, 3, 1},
                                         DeadlineRow{{"OneRead"}, 5, 1},
                                         DeadlineRow{{"OneSecondMore"}, 6, 2},
                                         DeadlineRow{{"RawData"}, 10, 2},
                                         DeadlineRow{{"ElevenSeconds"}, 11, 3}),
                         support::rowName);

TEST_F(SendQuery, StartsTheDeadlineAfterThePause) {
  replyAfterPause(bytes("A5 00 03 50 E0 42"), 9 * Second);
  EXPECT_EQ(query(6), bytes("E0 42"));
}

namespace {

class SendQueryGarbled : public SendQuery, public testing::WithParamInterface<ReplyRow> {};

}  // namespace

TEST_P(SendQueryGarbled, IsReadUntilTheDeadline) {
  answer({bytes(GetParam().reply)});
  EXPECT_EQ(query(3), bytes(GetParam().collected));
  EXPECT_EQ(untouched, GetParam().collected[0] == '\0');
  EXPECT_GE(system.now(), (2 + 3) * Second);
  EXPECT_EQ(system.events.back(), "close");
}

INSTANTIATE_TEST_SUITE_P(
    Replies, SendQueryGarbled,
    testing::Values(
        ReplyRow{{"OnlyTheStartByte"}, "A5", ""}, ReplyRow{{"HalfALength"}, "A5 00", ""},
        ReplyRow{{"NoBody"}, "A5 00 03", ""},
        ReplyRow{{"ShortBodyIsDropped"}, "A5 00 04 50 E0 01", ""},
        ReplyRow{{"NoStartByte"}, "5A 00 03 50 E0 01", ""},
        ReplyRow{{"LengthZero"}, "A5 00 00", ""},
        ReplyRow{{"LengthZeroThenOtherBytes"}, "A5 00 00 50 E0 01", ""},
        ReplyRow{{"NothingAfterAPacketThatAnnouncesMore"}, "A5 00 03 20 E0 01", "E0 01"},
        ReplyRow{
            {"ShortPacketAfterOneThatAnnouncesMore"}, "A5 00 03 20 E0 01 A5 00 05 50 E1", "E0 01"}),
    support::rowName);

TEST_F(SendQuery, FindsAPacketAfterALengthOfZero) {
  answer({bytes("A5 00 00 A5 00 03 50 E0 42")});
  EXPECT_EQ(query(3), bytes("E0 42"));
  EXPECT_EQ(system.now(), 2 * Second);
}
