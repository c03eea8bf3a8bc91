// The largest allowed counts of allocations of common operations.

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "cert/cert_mgr.h"
#include "cert/obj_store_response.h"
#include "npa/send_config.h"
#include "testing/counted_memory.h"
#include "testing/generator.h"
#include "testing/packets.h"
#include "testing/rows.h"
#include "xml/simple_sax_parser.h"
#include "xml/simple_xpath.h"

namespace {

using support::outputOf;

/// Returns how many blocks an action allocates.
std::size_t allocationsOf(const std::function<void()>& action) {
  const std::size_t before = support::allocations();
  action();
  return support::allocations() - before;
}

/// Returns how many blocks an action that writes output allocates. Discards the output.
std::size_t silentAllocationsOf(const std::function<void()>& action) {
  std::size_t count = 0;
  outputOf([&] { count = allocationsOf(action); });
  return count;
}

/// Returns an object-store reply of about 2 KiB: a status and 36 values.
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

TEST(SaxParse, AllocatesOnceForEachAttribute) {
  SimpleSAXHandler handler;
  SimpleSAXParser parser(handler);
  const std::string document = reply();
  ASSERT_GT(document.size(), 2000U);
  int result = -1;
  EXPECT_LE(allocationsOf([&] { result = parser.parseXMLString(document.c_str()); }), 45U);
  EXPECT_EQ(result, 0);
}

TEST(PathQuery, DoesNotAllocateForEachElement) {
  simpleXPath xpath(reply());
  const std::string path = "/response/MapElem/child[@name='x509_45']/StringElem";
  std::string text;
  EXPECT_LE(allocationsOf([&] { text = xpath.query(path); }), 12U);
  EXPECT_EQ(text, "Corner & Co");
}

TEST(Escaping, AllocatesOnce) {
  EXPECT_LE(
      allocationsOf([&] { std::ignore = CertMgr::symbolToEntities("Corner & Co, at the bridge"); }),
      1U);
}

class PacketBuilding : public support::Generator {};

TEST_F(PacketBuilding, AllocatesOnceForThePacketAndTwiceForEachLongText) {
  use({"--ssid=home of the corner bakery", "--security=WPA", "--passwd=a long enough password"});
  EXPECT_LE(silentAllocationsOf([&] { generator->constructBasic(); }), 8U);
}

class Query : public support::UsblpPrinter {
 protected:
  /// Returns how many blocks a query allocates for a reply of `size` bytes. The count includes the
  /// blocks of the scripted printer.
  std::size_t blocks(std::size_t size) {
    answer({packets::replyOf(support::Bytes(size - 5, 0x42))});
    support::Bytes request = packets::QueryCommonName;
    std::unique_ptr<unsigned char[]> owned;
    return silentAllocationsOf([&] {
      sendConfig exchange("/dev/usb/lp0");
      unsigned char* reply = nullptr;
      const int length = static_cast<int>(request.size());
      EXPECT_EQ(exchange.sendQuery(request.data(), length, reply, 3), static_cast<int>(size) - 4);
      owned.reset(reply);
    });
  }
};

TEST_F(Query, DoesNotAllocateMoreForALongerReply) {
  // The count varies a little, because the scripted printer's own lists grow.
  for (const std::size_t size : {64U, 512U, 4096U}) {
    SCOPED_TRACE(size);
    EXPECT_LE(blocks(size), 17U);
  }
}
