#include "npa/packet.h"

#include <array>
#include <cstddef>
#include <gtest/gtest.h>

#include "testing/bytes.h"

using support::Bytes;
using support::bytes;

namespace {

template <std::size_t Size>
Bytes listed(const std::array<npa::Byte, Size>& array) {
  return {array.begin(), array.end()};
}

}  // namespace

TEST(ObjectHeader, ContainsGroupNumberZeroAndSize) {
  EXPECT_EQ(listed(npa::objectHeader(0x28, 0x26, 4)), bytes("28 26 00 00 04"));
}

TEST(ObjectHeader, StoresTheSizeInTwoBytes) {
  EXPECT_EQ(listed(npa::objectHeader(0x28, 0x08, 300)), bytes("28 08 00 01 2C"));
  EXPECT_EQ(listed(npa::objectHeader(0x2A, 0x24, 0xFFFF)), bytes("2A 24 00 FF FF"));
  EXPECT_EQ(listed(npa::objectHeader(0x2A, 0x24, 0)), bytes("2A 24 00 00 00"));
}

TEST(GroupingHeader, CountsTheObjectsAndFourOfItsBytes) {
  EXPECT_EQ(listed(npa::groupingHeader(15)), bytes("A5 00 13 50 E0 DA 01"));
  EXPECT_EQ(listed(npa::groupingHeader(0)), bytes("A5 00 04 50 E0 DA 01"));
  EXPECT_EQ(listed(npa::groupingHeader(0x1234)), bytes("A5 12 38 50 E0 DA 01"));
}

TEST(WrapHeader, CountsThePacketTwice) {
  EXPECT_EQ(listed(npa::wrapHeader(22)), bytes("A5 00 1C 50 E0 63 02 00 16"));
  EXPECT_EQ(listed(npa::wrapHeader(0xFE)), bytes("A5 01 04 50 E0 63 02 00 FE"));
  EXPECT_EQ(listed(npa::wrapHeader(0x1234)), bytes("A5 12 3A 50 E0 63 02 12 34"));
}

TEST(Query, NamesOneObject) {
  EXPECT_EQ(listed(npa::query({0x2A, 0x0A})), bytes("A5 00 06 50 E0 D8 00 2A 0A"));
}

TEST(FixedPackets, HaveTheirBytes) {
  EXPECT_EQ(listed(npa::ObjStoreNpaHeader), bytes("A5 00 00 50 E0 C0 03 00 01"));
  EXPECT_EQ(listed(npa::usbSniff),
            bytes("A5 00 10 80 A4 5B A4 5B 10 EF A4 5B 11 EE 00 FF 13 EC 2E"));
}

TEST(CanBeFramed, AcceptsALengthFieldUpTo65535) {
  EXPECT_TRUE(npa::canBeFramed(65535 + 3 - 1));
  EXPECT_TRUE(npa::canBeFramed(65535 + 3));
  EXPECT_FALSE(npa::canBeFramed(65535 + 3 + 1));
}

TEST(ReplyFlags, HaveTheirValues) {
  EXPECT_EQ(npa::FlagEndsExchange, 0x80);
  EXPECT_EQ(npa::FlagMoreFollows, 0x20);
  EXPECT_EQ(npa::FlagRefused, 0xD4);
  EXPECT_EQ(npa::FlagOffset, 3U);
}

TEST(ObjectGroups, HaveTheirNumbers) {
  EXPECT_EQ(npa::GroupAdapter, 0x06);
  EXPECT_EQ(npa::GroupNetworkAddress, 0x0A);
  EXPECT_EQ(npa::GroupWireless, 0x28);
  EXPECT_EQ(npa::Group8021x, 0x2A);
}
