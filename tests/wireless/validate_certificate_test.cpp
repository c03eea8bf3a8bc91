#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/generator.h"
#include "testing/object_store.h"
#include "testing/packets.h"
#include "testing/rows.h"

// The flag for validating the server's certificate. It depends on the printer's certificates.

namespace {

using support::Bytes;
using support::bytes;

struct ListRow : support::Row {
  /// The replies to the two calls: the first lists the printer's own certificates, and the second
  /// lists the CA certificates.
  std::vector<Bytes> replies;
  std::size_t calls;
  bool validates;
};

Bytes listOf(const std::vector<std::string>& names) {
  return support::success(support::listChild(names));
}

class ValidateCertificate : public support::Generator,
                            public testing::WithParamInterface<ListRow> {};

TEST_P(ValidateCertificate, DependsOnThePrintersLists) {
  use({});
  answer(GetParam().replies);
  EXPECT_EQ(run(&wnpaGenerator::construct802ValidateCert), 6);
  const std::string flag = GetParam().validates ? "1" : "0";
  EXPECT_TRUE(output.err.ends_with("D [ZVK] Validate certificate? " + flag + "\n")) << output.err;
  EXPECT_EQ(output.out, "");
  EXPECT_EQ(packet(), bytes("2A 24 00 00 01 0" + flag));
  EXPECT_EQ(device.writes.size(), GetParam().calls);
}

const Bytes NoList = support::success();
const Bytes Failure = support::failure("2", "no");

INSTANTIATE_TEST_SUITE_P(
    Lists, ValidateCertificate,
    testing::Values(ListRow{{"TwoOwn"}, {listOf({"a", "b"})}, 1, true},
                    ListRow{{"ThreeOwn"}, {listOf({"a", "b", "c"})}, 1, true},
                    ListRow{{"OneOwn"}, {listOf({"a"}), NoList}, 2, false},
                    ListRow{{"OneOwnAndOneCa"}, {listOf({"a"}), listOf({"ca"})}, 2, true},
                    ListRow{{"OneCa"}, {listOf({}), listOf({"ca"})}, 2, true},
                    ListRow{{"TwoCas"}, {listOf({}), listOf({"x", "y"})}, 2, true},
                    ListRow{{"Nothing"}, {listOf({}), listOf({})}, 2, false},
                    ListRow{{"NoOwnListButOneCa"}, {Failure, listOf({"ca"})}, 2, true},
                    ListRow{{"OneOwnAndNoCaList"}, {listOf({"a"}), Failure}, 2, false},
                    ListRow{{"Failures"}, {Failure}, 2, false},
                    ListRow{{"Refusals"}, {packets::Refused}, 2, false},
                    ListRow{{"Garbage"}, {bytes("A5 00 05 50 E0 C0 03 00")}, 2, false},
                    ListRow{{"Silence"}, {{}}, 2, false}),
    support::rowName);

using ValidateCertificateDevice = support::Generator;

TEST_F(ValidateCertificateDevice, IsTheDeviceOfTheSettings) {
  auto& other = system.device("/dev/usb/lp3");
  use({"/dev/usb/lp3"});
  run(&wnpaGenerator::construct802ValidateCert);
  EXPECT_EQ(other.writes.size(), 2U);
  EXPECT_EQ(device.opens, 0);
}

TEST_F(ValidateCertificateDevice, MayBeMissing) {
  use({"/dev/usb/lp4"});
  EXPECT_EQ(run(&wnpaGenerator::construct802ValidateCert), 6);
  EXPECT_TRUE(output.err.ends_with("D [ZVK] Validate certificate? 0\n")) << output.err;
}

}  // namespace
