#include "npa/replies.h"

#include <gtest/gtest.h>

#include "testing/bytes.h"

using support::bytes;

TEST(IsRefusal, ChecksOnlyTheFlagByte) {
  EXPECT_TRUE(npa::isRefusal(bytes("A5 00 02 D4")));
  EXPECT_FALSE(npa::isRefusal(bytes("A5 00 D4")));
  EXPECT_FALSE(npa::isRefusal(bytes("A5 00 02 50 D4")));
}

TEST(SsidIn, StartsAtTheRequestSizePlusTwo) {
  EXPECT_EQ(npa::ssidIn(bytes("01 02 03 04 68 69 00 70"), 2), "hi");
  EXPECT_EQ(npa::ssidIn(bytes("01 02 03 04 68 69"), 2), "hi");
  EXPECT_EQ(npa::ssidIn(bytes("01 02 03 04 00"), 2), "");
}

TEST(SsidIn, IsAbsentFromAShorterReply) {
  EXPECT_FALSE(npa::ssidIn(bytes("01 02 03 04"), 2).has_value());
  EXPECT_FALSE(npa::ssidIn({}, 0).has_value());
}

TEST(AddressIn, IsTheLastFourBytes) {
  EXPECT_EQ(npa::addressIn(bytes("FF C0 A8 01 14")), (npa::Address{192, 168, 1, 20}));
  EXPECT_EQ(npa::addressIn(bytes("00 00 00 01")), (npa::Address{0, 0, 0, 1}));
}

TEST(AddressIn, IsAbsentIfTheLastFourBytesAreZero) {
  EXPECT_FALSE(npa::addressIn(bytes("01 00 00 00 00")).has_value());
  EXPECT_FALSE(npa::addressIn(bytes("0A 00 07")).has_value());
}

TEST(TroubleCodeIn, IsTheLastByte) {
  EXPECT_EQ(npa::troubleCodeIn(bytes("00 FF")), 0xFF);
  EXPECT_FALSE(npa::troubleCodeIn({}).has_value());
}
