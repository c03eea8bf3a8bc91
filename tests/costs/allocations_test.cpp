// How often the usual work allocates. A count that falls may be lowered here; one that rises has to
// be worth it.

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "cert/cert_mgr.h"
#include "cert/obj_store_response.h"
#include "costs/counted_memory.h"
#include "npa/send_config.h"
#include "support/generator.h"
#include "support/output.h"
#include "support/rows.h"
#include "xml/simple_sax_parser.h"
#include "xml/simple_xpath.h"

namespace {

using support::bytes;
using support::outputOf;

/// Counts the allocations of an action whose output does not matter.
std::size_t silentAllocationsOf(const std::function<void()>& action) {
  std::size_t count = 0;
  outputOf([&] { count = allocationsOf(action); });
  return count;
}

/// An object-store reply of some 2 KiB: a status and 36 values.
std::string reply() {
  std::string text = R"(<?xml version="1.0" encoding="UTF-8"?><response><MapElem>)"
                     R"(<child name="status_code"><IntegerElem>1</IntegerElem></child>)";
  for (int i = 10; i < 46; ++i) {
    text += R"(<child name="x509_)" + std::to_string(i) +
            R"("><StringElem>Corner &amp; Co</StringElem></child>)";
  }
  return text + "</MapElem></response>";
}

}  // namespace

TEST(AllocationCount, CountsEachBlock) {
  EXPECT_EQ(allocationsOf([] {
              const std::vector<int> first(10);
              const std::string second(100, 'x');
            }),
            2U);
  EXPECT_EQ(allocationsOf([] {}), 0U);
}

TEST(SaxParse, AllocatesOnceForAnElementNotForEach) {
  SimpleSAXHandler handler;
  SimpleSAXParser parser(handler);
  const std::string document = reply();
  ASSERT_GT(document.size(), 2000U);
  EXPECT_EQ(allocationsOf([&] { EXPECT_EQ(parser.parseXMLString(document.c_str()), 0); }), 0U);
}

TEST(PathQuery, DoesNotAllocateForEachElement) {
  simpleXPath xpath(reply());
  EXPECT_EQ(allocationsOf([&] {
              EXPECT_EQ(xpath.query("/response/MapElem/child[@name='x509_45']/StringElem"),
                        "Corner & Co");
            }),
            0U);
}

TEST(Escaping, TakesRoomOnce) {
  const std::string text(1000, '<');
  EXPECT_EQ(allocationsOf([&] { CertMgr::symbolToEntities("Corner & Co, at the bridge"); }), 1U);
}

class PacketBuilding : public support::Generator {};

TEST_F(PacketBuilding, TakesAtMostEightBlocks) {
  use({"--ssid=home of the corner bakery", "--security=WPA", "--passwd=a long enough password"});
  EXPECT_EQ(silentAllocationsOf([&] { generator->constructBasic(); }), 0U);
}

class Query : public support::UsblpPrinter {};

TEST_F(Query, TakesTheSameNumberOfBlocksForAnyReply) {
  const auto blocks = [this](std::size_t size) {
    support::Bytes packet = bytes("A5 00 00 50 E0");
    packet.resize(size, 0x42);
    packet[1] = static_cast<unsigned char>((size - 3) >> 8U);
    packet[2] = static_cast<unsigned char>((size - 3) & 0xFFU);
    answer({packet});
    support::Bytes request = bytes("A5 00 06 50 E0 D8 00 2A 0A");
    std::unique_ptr<unsigned char[]> owned;
    return silentAllocationsOf([&] {
      sendConfig exchange("/dev/usb/lp0");
      unsigned char* reply = nullptr;
      exchange.sendQuery(request.data(), static_cast<int>(request.size()), reply, 3);
      owned.reset(reply);
    });
  };
  EXPECT_EQ(blocks(64), 0U);
  EXPECT_EQ(blocks(4096), 0U);
}
