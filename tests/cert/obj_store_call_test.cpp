#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "cert/cert_mgr.h"
#include "testing/object_store_printer.h"
#include "testing/packets.h"

namespace {

using packets::Sniff;
using support::Bytes;
using support::bytes;
using support::joined;
using support::textBytes;

// --- Command ------------------------------------------------------------------------------------

/// Returns the bytes of a command. Returns no bytes if `makeObjStoreCmd` builds no command.
Bytes command(const char* xml) {
  unsigned char marker = 0;
  unsigned char* result = &marker;
  const unsigned int size = CertMgr::makeObjStoreCmd(xml, result);
  if (result == &marker) {
    EXPECT_EQ(size, 0U);
    return {};
  }
  const std::unique_ptr<unsigned char[]> owned(result);
  return {result, result + size};
}

TEST(MakeObjStoreCmd, PrependsTheSniffPacketAndTheHeader) {
  EXPECT_EQ(command("abc"), joined({Sniff, bytes("A5 00 09 50 E0 C0 03 00 01 61 62 63")}));
}

TEST(MakeObjStoreCmd, BuildsTwoPacketsForAnEmptyText) {
  const Bytes expected = joined({Sniff, bytes("A5 00 06 50 E0 C0 03 00 01")});
  EXPECT_EQ(command("").size(), 28U);
  EXPECT_EQ(command(""), expected);
  EXPECT_EQ(command(nullptr), expected);
}

TEST(MakeObjStoreCmd, StoresTheHighByteOfALengthFirst) {
  const Bytes result = command(std::string(0x1234 - 6, 'x').c_str());
  EXPECT_EQ(Bytes(result.begin() + 19, result.begin() + 22), bytes("A5 12 34"));
  EXPECT_EQ(result.size(), 19U + 3U + 0x1234U);
}

TEST(MakeObjStoreCmd, BuildsNothingIfTheTextDoesNotFitIntoAPacket) {
  const Bytes largest = command(std::string(65529, 'x').c_str());
  ASSERT_EQ(largest.size(), 19U + 9U + 65529U);
  EXPECT_EQ(Bytes(largest.begin() + 19, largest.begin() + 22), bytes("A5 FF FF"));
  EXPECT_EQ(command(std::string(65530, 'x').c_str()), Bytes());
}

TEST(AppendObjStoreCmd, AppendsHeaderAndText) {
  Bytes out = bytes("01 02");
  Bytes xml = bytes("3C 61 3E 00");
  CertMgr::appendObjStoreCmd(out, xml.data(), 3);
  EXPECT_EQ(out, bytes("01 02 A5 00 09 50 E0 C0 03 00 01 3C 61 3E"));
}

TEST(AppendObjStoreCmd, AppendsNothingIfTheTextDoesNotFitIntoAPacket) {
  Bytes out = bytes("01");
  Bytes xml(65530, 'x');
  CertMgr::appendObjStoreCmd(out, xml.data(), 65530);
  EXPECT_EQ(out, bytes("01"));
}

TEST(AppendObjStoreCmd, DoesNotChangeTheSharedHeader) {
  Bytes first;
  Bytes second;
  Bytes xml = bytes("61 62");
  CertMgr::appendObjStoreCmd(first, xml.data(), 2);
  CertMgr::appendObjStoreCmd(second, xml.data(), 1);
  EXPECT_EQ(second, bytes("A5 00 07 50 E0 C0 03 00 01 61"));
}

TEST(AppendToArray, AppendsTheGivenCountOfBytes) {
  Bytes out = bytes("01");
  Bytes more = bytes("02 03 04");
  CertMgr::appendToArray(out, more.data(), 2);
  EXPECT_EQ(out, bytes("01 02 03"));
  CertMgr::appendToArray(out, more.data(), 0);
  EXPECT_EQ(out, bytes("01 02 03"));
}

TEST(ByteArrayToUCharArray, CopiesIntoANewArray) {
  Bytes source = bytes("00 FF 7F");
  unsigned char* copy = nullptr;
  ASSERT_EQ(CertMgr::ByteArrayToUCharArray(source, copy), 3U);
  EXPECT_EQ(Bytes(copy, copy + 3), source);
  CertMgr::deleteByteArrayPtr(copy);
  EXPECT_EQ(copy, nullptr);
}

TEST(ByteArrayToUCharArray, AllocatesNothingForNoBytes) {
  Bytes empty;
  unsigned char marker = 0;
  unsigned char* copy = &marker;
  EXPECT_EQ(CertMgr::ByteArrayToUCharArray(empty, copy), 0U);
  EXPECT_EQ(copy, &marker);
}

TEST(DeleteByteArrayPtr, AcceptsANullPointer) {
  unsigned char* nothing = nullptr;
  CertMgr::deleteByteArrayPtr(nothing);
  EXPECT_EQ(nothing, nullptr);
}

// --- Reply --------------------------------------------------------------------------------------

const Bytes& Marker = support::ReplyMarker;

struct Extraction {
  int result;
  std::string buffer;

  bool operator==(const Extraction&) const = default;
};

/// Extracts the XML into a buffer of `size` bytes that is filled with "#".
Extraction extract(Bytes reply, unsigned int size) {
  std::string buffer(size, '#');
  const int result =
      CertMgr::getXmlResponse(reply.data(), static_cast<int>(reply.size()), buffer.data(), size);
  return {result, buffer};
}

std::string extractText(Bytes reply) {
  return CertMgr::getXmlResponse(reply.data(), static_cast<int>(reply.size()));
}

TEST(GetXmlResponse, DropsTheCommandByteBetweenPackets) {
  const Bytes reply = bytes("E0 C0 03 00 01 00 E0 3C 61 E0 3E");
  EXPECT_EQ(extract(reply, 11), (Extraction{3, std::string("<a>") + std::string(8, '\0')}));
  EXPECT_EQ(extractText(reply), "<a>");
}

TEST(GetXmlResponse, DropsEveryByteE0OfTheTextToo) {
  const Bytes reply = joined({Marker, bytes("E0 61 E0 E0 A4 80 E0")});
  EXPECT_EQ(extract(reply, 20).result, 3);
  EXPECT_EQ(extractText(reply), "a\xA4\x80");
}

TEST(GetXmlResponse, ReturnsNothingIfAByteOfTheMarkerDiffers) {
  for (std::size_t i = 0; i < Marker.size(); ++i) {
    Bytes reply = joined({Marker, textBytes("<a>")});
    reply[i] ^= 1U;
    EXPECT_EQ(extract(reply, 10), (Extraction{0, std::string(10, '#')})) << i;
    EXPECT_EQ(extractText(reply), "") << i;
  }
}

TEST(GetXmlResponse, ReturnsNothingForAReplyShorterThanTheMarker) {
  for (std::size_t size = 0; size < Marker.size(); ++size) {
    // The buffer has exactly the size of the reply, so that a sanitizer finds a read beyond its
    // end.
    const Bytes reply(Marker.begin(), Marker.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(extract(reply, 10), (Extraction{0, std::string(10, '#')})) << size;
    EXPECT_EQ(extractText(reply), "") << size;
  }
  EXPECT_EQ(CertMgr::getXmlResponse(nullptr, 7), "");
  EXPECT_EQ(extractText(Marker), "");
}

TEST(GetXmlResponse, ReturnsNothingForANegativeLength) {
  Bytes reply = Marker;
  EXPECT_EQ(CertMgr::getXmlResponse(reply.data(), -1), "");
}

TEST(GetXmlResponse, NeedsABufferAsLargeAsTheReply) {
  const Bytes reply = joined({Marker, textBytes("<a/>")});
  EXPECT_EQ(extract(reply, 10), (Extraction{0, std::string(10, '#')}));
  EXPECT_EQ(extract(reply, 11), (Extraction{4, std::string("<a/>") + std::string(7, '\0')}));
  EXPECT_EQ(extract(Marker, 7), (Extraction{0, std::string(7, '\0')}));
}

TEST(GetXmlResponse, EndsAtTheFirstZeroByte) {
  const Bytes reply = joined({Marker, bytes("61 62 00 63")});
  EXPECT_EQ(extract(reply, 11), (Extraction{2, std::string("ab\0c\0\0\0\0\0\0\0", 11)}));
  EXPECT_EQ(extractText(reply), "ab");
}

// --- Escaping and dump --------------------------------------------------------------------------

TEST(SymbolToEntities, ReplacesTheFiveSpecialCharacters) {
  EXPECT_EQ(CertMgr::symbolToEntities("a<b & 'c'"), "a&lt;b &amp; &apos;c&apos;");
  EXPECT_EQ(CertMgr::symbolToEntities(">\""), "&gt;&quot;");
}

TEST(SymbolToEntities, EscapesEscapedTextAgain) {
  EXPECT_EQ(CertMgr::symbolToEntities("&amp;&lt;"), "&amp;amp;&amp;lt;");
}

TEST(SymbolToEntities, LeavesOtherCharactersUnchanged) {
  EXPECT_EQ(CertMgr::symbolToEntities(""), "");
  EXPECT_EQ(CertMgr::symbolToEntities(nullptr), "");
  EXPECT_EQ(CertMgr::symbolToEntities("%s;\xC3\xBC\n"), "%s;\xC3\xBC\n");
}

TEST(ShowByteArray, WritesTwoDigitsForEachByte) {
  const auto output = support::outputOf([] { CertMgr::showByteArray(bytes("00 0A FF")); });
  EXPECT_EQ(output, (support::Output{"", "000AFF"}));
}

// --- A call -------------------------------------------------------------------------------------

class GetObjStoreResponse : public support::ObjectStorePrinter {
 protected:
  /// Makes a call and returns its result. Sets `text` to the reply's text, or to "(unchanged)" if
  /// there is no reply.
  int call(const char* xml, int timeout = 5) {
    std::string marker = "(unchanged)";
    char* result = marker.data();
    const auto send = [&] {
      CertMgr manager("/dev/usb/lp0");
      return manager.getObjStoreResponse(xml, result, timeout);
    };
    support::Output output;
    const int size = support::resultOf(send, output);
    const std::unique_ptr<char[]> owned(result == marker.data() ? nullptr : result);
    text = result;
    return size;
  }

  std::string text;
};

TEST_F(GetObjStoreResponse, WritesBothPacketsTogetherAndReturnsTheRawSize) {
  answer({support::replyPacket("<a/>")});
  EXPECT_EQ(call("<b/>"), 11);
  EXPECT_EQ(text, "<a/>");
  EXPECT_EQ(device.writes, std::vector<Bytes>{support::callPackets("<b/>")});
  EXPECT_EQ(system.sleeps, std::vector<unsigned int>{2});
}

TEST_F(GetObjStoreResponse, JoinsTheTextsOfSeveralPackets) {
  answer({joined({bytes("A5 00 07 70 E0 C0 03 00 01 00"), bytes("A5 00 04 70 E0 3C 61"),
                  bytes("A5 00 04 50 E0 2F 3E")})});
  EXPECT_EQ(call(""), 6 + 3 + 3);
  EXPECT_EQ(text, "<a/>");
}

TEST_F(GetObjStoreResponse, ReturnsAnEmptyTextForAnotherKindOfReply) {
  answer({bytes("A5 00 06 50 E0 C0 03 00 02")});
  EXPECT_EQ(call(""), 5);
  EXPECT_EQ(text, "");
}

TEST_F(GetObjStoreResponse, LeavesTheTextUnchangedWithoutAReply) {
  EXPECT_EQ(call(""), 0);
  EXPECT_EQ(text, "(unchanged)");
  answer({packets::Refused});
  EXPECT_EQ(call(""), 0);
  EXPECT_EQ(text, "(unchanged)");
}

TEST_F(GetObjStoreResponse, WaitsForItsTimeout) {
  for (const int timeout : {5, 10}) {
    const auto start = system.now();
    call("", timeout);
    EXPECT_EQ((system.now() - start) / virtual_system::Second, 2 + timeout);
  }
}

TEST_F(GetObjStoreResponse, SendsNothingIfTheTextDoesNotFitIntoAPacket) {
  EXPECT_EQ(call(std::string(65530, 'x').c_str()), -1);
  EXPECT_EQ(text, "(unchanged)");
  EXPECT_EQ(device.opens, 0);
}

}  // namespace
