#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "emulator/adapter/adapter.h"
#include "npa/packet.h"
#include "testing/authority.h"
#include "testing/bytes.h"
#include "testing/emulated_printer.h"
#include "testing/object_store.h"
#include "testing/packets.h"
#include "testing/reply_text.h"
#include "testing/rows.h"

// Method calls as packets: the adapter's replies, and the options that change them.

namespace {

using emulator::Personality;
using support::Bytes;
using support::bytes;
using support::callPackets;
using support::callText;
using support::ReplyText;
using Printer = support::EmulatedPrinter;
using Lines = std::vector<std::string>;

const std::string List = callText("queryCAList", 420);
struct Packet {
  int flag;
  Bytes content;  ///< the bytes after the flag byte
};

std::vector<Packet> packetsOf(const Bytes& reply) {
  std::vector<Packet> packets;
  for (std::size_t at = 0; at < reply.size();) {
    if (reply.size() - at < 4 || reply[at] != 0xA5) {
      ADD_FAILURE() << "there is no packet at " << at;
      break;
    }
    const std::size_t end = at + 3 + npa::numberAt(reply, at + 1);
    if (end > reply.size()) {
      ADD_FAILURE() << "a packet exceeds the reply";
      break;
    }
    packets.push_back({reply[at + 3], Bytes(reply.begin() + static_cast<std::ptrdiff_t>(at) + 4,
                                            reply.begin() + static_cast<std::ptrdiff_t>(end))});
    at = end;
  }
  return packets;
}

/// Returns the XML of a reply as a host extracts it: joins the bytes after the flag bytes, and
/// removes the marker at the start and all bytes E0.
std::string xmlOf(const Bytes& reply) {
  std::string all;
  for (const Packet& packet : packetsOf(reply)) {
    all.append(packet.content.begin(), packet.content.end());
  }
  const std::string marker(support::ReplyMarker.begin(), support::ReplyMarker.end());
  EXPECT_TRUE(all.starts_with(marker));
  all.erase(0, marker.size());
  std::erase(all, '\xE0');
  return all;
}

ReplyText ask(Printer& printer, const std::string& xml) {
  return ReplyText(xmlOf(printer.ask(callPackets(xml))));
}

TEST(MethodCallPackets, GetOnePacketWithTheMarkerAndTheXml) {
  Printer printer;
  const Bytes reply = printer.ask(callPackets(List));
  const auto packets = packetsOf(reply);
  ASSERT_EQ(packets.size(), 1U);
  EXPECT_EQ(packets[0].flag, 0x50);
  const std::string xml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?><response><MapElem>"
      "<child name=\"status_code\"><IntegerElem>1</IntegerElem></child>"
      "<child name=\"status_mesg\"><StringElem>success</StringElem></child>"
      "<child name=\"cert_list\"><ListElem/></child></MapElem></response>";
  EXPECT_EQ(packets[0].content, support::joined({support::ReplyMarker, support::textBytes(xml)}));
}

TEST(MethodCallPackets, GetSeveralPacketsThatAnnounceTheNext) {
  for (const std::size_t count : {2U, 3U, 100U}) {
    Printer printer({.replyPackets = count});
    const Bytes reply = printer.ask(callPackets(List));
    const auto packets = packetsOf(reply);
    ASSERT_EQ(packets.size(), count);
    EXPECT_EQ(packets[0].content, bytes("E0 C0 03 00 01 00"));
    for (std::size_t i = 0; i < count; ++i) {
      EXPECT_EQ(packets[i].flag, i + 1 < count ? 0x70 : 0x50) << i;
      EXPECT_EQ(packets[i].content.front(), 0xE0) << i;
    }
    EXPECT_EQ(xmlOf(reply), xmlOf(Printer().ask(callPackets(List))));
  }
}

/// Adds a name of `nameSize` characters to the list of CA certificates. A certificate without a
/// common name is listed with the name of its file.
void fillList(Printer& printer, std::size_t nameSize, char character) {
  static const std::string pem = support::Authority(support::Authority::Name()).pem();
  EXPECT_EQ(ask(printer, support::uploadCaText(std::string(nameSize, character), pem)).status(), 1);
}

TEST(MethodCallPackets, GetSeveralPacketsIfTheXmlIsTooLargeForOne) {
  Printer printer;
  const std::size_t overhead = xmlOf(printer.ask(callPackets(List))).size() +
                               std::string("<StringElem></StringElem></ListElem>").size() -
                               std::string("/").size() +
                               std::string("<StringElem></StringElem>").size();
  // The largest XML for one packet, then one more byte.
  constexpr std::size_t largest = 65535 - 8;
  constexpr std::size_t first = 32000;
  fillList(printer, first, 'a');
  fillList(printer, largest - overhead - first, 'b');
  const Bytes one = printer.ask(callPackets(List));
  EXPECT_EQ(packetsOf(one).size(), 1U);
  EXPECT_EQ(xmlOf(one).size(), largest);
  EXPECT_EQ(ask(printer, support::deleteCaText(std::string(first, 'a'))).status(), 1);
  fillList(printer, first + 1, 'a');
  const Bytes two = printer.ask(callPackets(List));
  const auto packets = packetsOf(two);
  ASSERT_EQ(packets.size(), 2U);
  EXPECT_EQ(packets[0].flag, 0x70);
  EXPECT_EQ(packets[0].content, bytes("E0 C0 03 00 01 00"));
  EXPECT_EQ(packets[1].flag, 0x50);
  EXPECT_EQ(ReplyText(xmlOf(two)).list().size(), 2U);
}

TEST(MethodCallPackets, GetAsManyPacketsAsALongXmlNeeds) {
  Printer printer({.replyPackets = 2});
  for (const char character : {'a', 'b', 'c', 'd'}) {
    fillList(printer, 50000, character);
  }
  const Bytes reply = printer.ask(callPackets(List));
  EXPECT_EQ(packetsOf(reply).size(), 1 + 4U);
  const auto names = ReplyText(xmlOf(reply)).list();
  ASSERT_EQ(names.size(), 4U);
  EXPECT_EQ(names[3], std::string(50000, 'd'));
}

TEST(MethodCall, IsRefusedInAWrapper) {
  Printer printer;
  EXPECT_EQ(printer.ask(packets::wrapped(support::callPacket(List))), packets::Refused);
  EXPECT_EQ(printer.log.back(), "   refused: a wrapped method call");
}

TEST(MethodCall, GetsAnErrorIfItCannotBeParsed) {
  Printer printer;
  EXPECT_EQ(ask(printer, "").status(), 2);
  EXPECT_EQ(ask(printer, std::string(65529, '\x99')).status(), 2);
  EXPECT_EQ(ask(printer, List).status(), 1);
}

struct PersonalityRow : support::Row {
  Personality personality;
  Bytes reply;
};

class CallPersonality : public testing::TestWithParam<PersonalityRow> {};

TEST_P(CallPersonality, DeterminesTheReplyAndPreventsTheCall) {
  Printer printer(GetParam().personality);
  EXPECT_EQ(printer.ask(callPackets(support::generateText("n"))), GetParam().reply);
  EXPECT_EQ(printer.adapter.certificates().revision(), 0U);
}

// No personality replies to the fixed packet that precedes the call.
INSTANTIATE_TEST_SUITE_P(
    Personalities, CallPersonality,
    testing::Values(PersonalityRow{{"Silent"}, {.silent = true}, {}},
                    PersonalityRow{{"RefuseAll"}, {.refuseAll = true}, packets::Refused},
                    PersonalityRow{{"Garbage"}, {.garbage = true}, packets::Garbage}),
    support::rowName);

TEST(MethodCall, GetsACutReply) {
  Printer printer({.cutAt = 6});
  EXPECT_EQ(printer.ask(callPackets(support::generateText("n"))), bytes("A5 00 D6 50 E0 C0"));
  EXPECT_EQ(printer.adapter.certificates().devices().size(), 1U);
}

TEST(MethodCall, GetsALateReplyInPieces) {
  Printer printer({.replyDelay = std::chrono::seconds(3), .pieceSize = 100});
  const auto pieces = printer.adapter.receive(callPackets(List));
  ASSERT_EQ(pieces.size(), 3U);
  EXPECT_EQ(pieces[0].bytes.size(), 100U);
  EXPECT_EQ(pieces[0].delay, std::chrono::milliseconds(3000));
  EXPECT_LT(pieces[1].delay, pieces[2].delay);
}

TEST(MethodCall, GetsTheGivenBytes) {
  const Bytes content = bytes("E0 C0 03 E0");
  Printer printer({.objectReplies = {{"", "file", {}, content}}});
  EXPECT_EQ(printer.ask(callPackets(support::generateText("n"))), bytes("A5 00 05 50 E0 C0 03 E0"));
  EXPECT_EQ(printer.log.back(), "   the bytes of file");
  EXPECT_EQ(printer.ask(callPackets("")), bytes("A5 00 05 50 E0 C0 03 E0"));
  EXPECT_EQ(printer.adapter.certificates().revision(), 0U);
}

TEST(MethodCall, GetsGivenBytesUpToTheLargestPacket) {
  Printer full({.objectReplies = {{"", "file", {}, Bytes(65534, 0xE0)}}});
  const auto packets = packetsOf(full.ask(callPackets(List)));
  ASSERT_EQ(packets.size(), 1U);
  EXPECT_EQ(packets[0].content.size(), 65534U);
  Printer empty({.objectReplies = {{"", "file", {}, {}}}});
  EXPECT_EQ(empty.ask(callPackets(List)), bytes("A5 00 01 50"));
}

TEST(MethodCall, GetsTheGivenStatus) {
  Printer printer(
      {.objectReplies = {{"generateNewCert", "", 7, {}}, {"queryCAList", "", 999, {}}}});
  const ReplyText generated = ask(printer, support::generateText("n"));
  EXPECT_EQ(generated.status(), 7);
  EXPECT_EQ(generated.message(), "a parameter is missing");
  EXPECT_EQ(printer.adapter.certificates().revision(), 0U);
  const ReplyText listed = ask(printer, List);
  EXPECT_EQ(listed.status(), 999);
  EXPECT_EQ(listed.message(), "refused");
  EXPECT_EQ(ask(printer, callText("queryCertList", 520)).status(), 1);
}

TEST(MethodCall, GetsTheLastStatusForItsMethodOrTheLastForAll) {
  Printer printer({.objectReplies = {{"queryCAList", "", 51, {}},
                                     {"", "", 52, {}},
                                     {"queryCAList", "", 53, {}},
                                     {"", "", 54, {}}}});
  EXPECT_EQ(ask(printer, List).status(), 53);
  EXPECT_EQ(ask(printer, callText("queryCertList", 520)).status(), 54);
  // The status depends only on the method, even if the call is invalid.
  EXPECT_EQ(ask(printer, callText("queryCAList", 1)).status(), 53);
}

TEST(MethodCallLog, HasTheCallAndItsResult) {
  Printer printer;
  const std::string xml = support::uploadCaText("ca.pem", "1234");
  printer.ask(callPackets(xml));
  ASSERT_EQ(printer.log.size(), 7U);
  EXPECT_EQ(printer.log[1], "   announces a method call");
  EXPECT_EQ(printer.log[2], "   no reply expected");
  EXPECT_EQ(printer.log[3].find("**"), std::string::npos);
  EXPECT_EQ(printer.log[4],
            "   method call: uploadNewCAFile ca_file_name=\"ca.pem\" ca_dot_pem_size=4 "
            "ca_dot_pem_file=(4 bytes)");
  EXPECT_TRUE(printer.log[5].ends_with(" 3E")) << printer.log[5];
  EXPECT_EQ(printer.log[6], "   status 19: the file holds no PEM certificate");
  printer.ask(callPackets(List));
  EXPECT_EQ(printer.log.back(), "   status 1");
}

TEST(AdapterChanges, AreReported) {
  Printer printer;
  int changes = 0;
  printer.adapter.onChange([&] { ++changes; });
  printer.ask(callPackets(List));
  printer.ask(packets::QuerySsid);
  printer.ask(callPackets(support::deleteCertText("n")));
  EXPECT_EQ(changes, 0);
  printer.ask(callPackets(support::generateText("n")));
  EXPECT_EQ(changes, 1);
  printer.ask(callPackets(support::deleteCertText("n")));
  EXPECT_EQ(changes, 2);
  printer.ask(packets::StoreSsid);
  EXPECT_EQ(changes, 3);
  const support::Authority authority("CA");
  printer.ask(callPackets(support::uploadCaText("ca.pem", authority.pem())));
  EXPECT_EQ(changes, 4);
  printer.ask(callPackets(support::deleteCaText("CA_Jan__5_2020_To_Dec_25_2030")));
  EXPECT_EQ(changes, 5);
  printer.ask(callPackets(support::generateText("n")));
  const std::string pem = printer.adapter.certificates().findDevice("n")->requestPem;
  printer.ask(callPackets(support::uploadSignedText("n", authority.sign(pem))));
  EXPECT_EQ(changes, 7);
}

TEST(AdapterRestore, ReplacesTheInitialValues) {
  Printer printer({.ssid = "first", .certificates = {.factoryCertificate = false}});
  emulator::CertificateStore certificates;
  certificates.add(emulator::CaCertificate{0, "CA", "ca.pem", "pem"});
  printer.adapter.restore({{{0x28, 0x08}, bytes("61 00")}}, certificates);
  EXPECT_EQ(printer.adapter.settings().get({0x28, 0x08}), bytes("61 00"));
  EXPECT_EQ(printer.adapter.settings().stored().size(), 1U);
  const Lines lines = printer.adapter.describe(false);
  EXPECT_EQ(lines.back(), "CA certificate = \"CA\", file \"ca.pem\"");
}

}  // namespace
