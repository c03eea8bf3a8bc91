#include "catalogue/packet_reader.h"

#include <gtest/gtest.h>

#include "testing/bytes.h"

namespace {

using catalogue::PacketReader;
using npa::Bytes;
using support::bytes;

const Bytes Query = bytes("A5 00 06 50 E0 D8 00 2A 0A");

TEST(PacketReader, ReturnsACompletePacket) {
  PacketReader reader;
  EXPECT_EQ(reader.feed(Query), std::vector<Bytes>{Query});
  EXPECT_EQ(reader.pendingBytes(), 0U);
  EXPECT_EQ(reader.strayBytes(), 0U);
}

TEST(PacketReader, ReturnsSeveralPacketsOfOneWrite) {
  PacketReader reader;
  const Bytes other = bytes("A5 00 02 D4 E0");
  EXPECT_EQ(reader.feed(support::joined({Query, other, Query})),
            (std::vector<Bytes>{Query, other, Query}));
}

TEST(PacketReader, AssemblesAPacketFromPieces) {
  for (std::size_t cut = 1; cut < Query.size(); ++cut) {
    PacketReader reader;
    EXPECT_TRUE(reader.feed(std::span(Query).first(cut)).empty());
    EXPECT_EQ(reader.pendingBytes(), cut);
    EXPECT_EQ(reader.feed(std::span(Query).subspan(cut)), std::vector<Bytes>{Query});
  }
}

TEST(PacketReader, DropsAndCountsBytesOutsideAPacket) {
  PacketReader reader;
  EXPECT_EQ(reader.feed(support::joined({bytes("00 11 22"), Query, bytes("33")})),
            std::vector<Bytes>{Query});
  EXPECT_EQ(reader.strayBytes(), 4U);
  EXPECT_EQ(reader.pendingBytes(), 0U);
}

TEST(PacketReader, AcceptsAnEmptyPacket) {
  PacketReader reader;
  EXPECT_EQ(reader.feed(bytes("A5 00 00")), std::vector<Bytes>{bytes("A5 00 00")});
}

TEST(PacketReader, AcceptsTheLongestPacket) {
  PacketReader reader;
  Bytes packet = bytes("A5 FF FF");
  packet.resize(packet.size() + 0xFFFF);
  EXPECT_TRUE(reader.feed(std::span(packet).first(packet.size() - 1)).empty());
  EXPECT_EQ(reader.feed(std::span(packet).last(1)), std::vector<Bytes>{packet});
}

TEST(PacketReader, AcceptsThePacketWithFourBytesMoreThanItsLengthField) {
  const Bytes generate = bytes("A5 00 06 50 E0 DA 01 2A 0C 00 00 01 01");
  PacketReader whole;
  EXPECT_EQ(whole.feed(support::joined({generate, Query})), (std::vector<Bytes>{generate, Query}));
  for (std::size_t cut = 1; cut < generate.size(); ++cut) {
    PacketReader reader;
    EXPECT_TRUE(reader.feed(std::span(generate).first(cut)).empty()) << cut;
    EXPECT_EQ(reader.feed(std::span(generate).subspan(cut)), std::vector<Bytes>{generate}) << cut;
  }
}

}  // namespace
