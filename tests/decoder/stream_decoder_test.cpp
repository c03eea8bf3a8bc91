#include "decoder/stream_decoder.h"

#include <gtest/gtest.h>
#include <string>

#include "decoder/words.h"
#include "emulator/adapter/reply_packets.h"
#include "testing/bytes.h"

namespace {

using decoder::Stream;
using decoder::StreamDecoder;
using support::bytes;
using support::Bytes;

/// Returns the report of a decoder for these pieces, each from a separate line.
std::string wordsOf(const std::vector<Bytes>& pieces) {
  std::string words;
  decoder::WordsReport report([&](std::string_view text) { words.append(text); }, false);
  StreamDecoder decoder(Stream{}, report);
  std::size_t line = 0;
  for (const Bytes& piece : pieces) {
    decoder.feed(piece, ++line);
  }
  decoder.finish();
  return words;
}

const Bytes Query = bytes("A5 00 06 50 E0 D8 00 28 08");
const std::string QueryWords = "request, bare, 9 bytes: query\n    wireless network 28 08: SSID\n";

TEST(StreamDecoder, AssemblesAPacketFromAnyPieces) {
  for (std::size_t cut = 1; cut < Query.size(); ++cut) {
    const auto middle = Query.begin() + static_cast<std::ptrdiff_t>(cut);
    EXPECT_EQ(wordsOf({Bytes(Query.begin(), middle), {}, Bytes(middle, Query.end())}),
              "lines 1-3: " + QueryWords);
  }
  std::vector<Bytes> single;
  for (const std::uint8_t byte : Query) {
    single.push_back({byte});
  }
  EXPECT_EQ(wordsOf(single), "lines 1-9: " + QueryWords);
}

TEST(StreamDecoder, ReportsConsecutiveBytesOutsidePacketsOnce) {
  EXPECT_EQ(
      wordsOf({bytes("00"), bytes("01 02"), support::joined({bytes("03"), Query}), bytes("04")}),
      "lines 1-3: 4 bytes outside any packet\nline 3: " + QueryWords +
          "line 4: 1 byte outside any packet\n");
}

TEST(StreamDecoder, ReportsAPacketThatIsCut) {
  EXPECT_EQ(wordsOf({bytes("A5")}), "line 1: cut packet: 1 byte\n");
  EXPECT_EQ(wordsOf({bytes("A5 00"), bytes("06")}), "lines 1-2: cut packet: 3 of 9 bytes\n");
  // These nine bytes begin the only packet that has four bytes more than its length field says.
  EXPECT_EQ(wordsOf({bytes("A5 00 06 50 E0 DA 01 2A 0C")}), "line 1: cut packet: 9 of 13 bytes\n");
}

TEST(StreamDecoder, StartsAgainAfterMissingBytes) {
  std::string words;
  decoder::WordsReport report([&](std::string_view text) { words.append(text); }, false);
  StreamDecoder decoder(Stream{Stream::Unit::Frame, {}, "1:5", false}, report);
  decoder.feed(bytes("A5 00 06 50"), 7);
  decoder.skip(3, 8);
  decoder.feed(Query, 9);
  decoder.finish();
  EXPECT_EQ(words,
            "frame 7 (1:5): cut packet: 4 of 9 bytes\n"
            "frame 8 (1:5): 3 bytes missing from the capture\n"
            "frame 9 (1:5): " +
                QueryWords);
}

const std::string Xml =
    "<response><MapElem><child name=\"status_code\"><IntegerElem>7</IntegerElem>"
    "</child></MapElem></response>";
const std::string ReplyWords =
    ": reply to a method call, status 7 ()\n    <response>\n      <MapElem>\n"
    "        <child name=\"status_code\">\n          <IntegerElem>7</IntegerElem>\n        "
    "</child>\n"
    "      </MapElem>\n    </response>\n";

TEST(MethodReply, IsJoinedFromItsPackets) {
  EXPECT_EQ(wordsOf({emulator::objectStoreReply(Xml, 1)}),
            "line 1: reply, bare, 113 bytes" + ReplyWords);
  const std::string part = ": part of the reply to a method call\n";
  EXPECT_EQ(wordsOf({emulator::objectStoreReply(Xml, 3)}),
            "line 1: reply, bare, more follows, 10 bytes" + part +
                "line 1: reply, bare, more follows, 56 bytes" + part +
                "line 1: reply, bare, 56 bytes" + ReplyWords);
}

TEST(MethodReply, IsIncompleteIfAnotherPacketFollows) {
  const Bytes head = bytes("A5 00 07 70 E0 C0 03 00 01 00");
  const std::string part =
      "line 1: reply, bare, more follows, 10 bytes: part of the reply to a method call\n";
  EXPECT_EQ(wordsOf({head}), part + "line 1: the last packet of a reply is missing\n");
  EXPECT_EQ(wordsOf({head, Query}),
            part + "lines 1-2: the last packet of a reply is missing\nline 2: " + QueryWords);
  EXPECT_EQ(wordsOf({head, bytes("A5 00 05")}),
            part +
                "line 2: cut packet: 3 of 8 bytes\n"
                "lines 1-2: the last packet of a reply is missing\n");
}

}  // namespace
