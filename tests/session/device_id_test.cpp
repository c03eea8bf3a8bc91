#include "session/device_id.h"

#include <gtest/gtest.h>
#include <optional>
#include <string>

#include "testing/rows.h"

namespace {

using namespace std::string_literals;
using session::DeviceId;
using session::parseDeviceId;

using Text = std::optional<std::string>;

struct IdRow : support::Row {
  std::string text;
  Text make;
  Text model;
  Text serial;
};

class DeviceIdText : public testing::TestWithParam<IdRow> {};

TEST_P(DeviceIdText, IsReadInParts) {
  const DeviceId id = parseDeviceId(GetParam().text);
  EXPECT_EQ(id.make, GetParam().make);
  EXPECT_EQ(id.model, GetParam().model);
  EXPECT_EQ(id.serial, GetParam().serial);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, DeviceIdText,
    testing::Values(
        IdRow{{"ShortKeys"}, "MFG:Acme;CMD:PJL;MDL:L100;SN:X12;", "Acme", "L100", "X12"},
        IdRow{
            {"LongKeys"}, "MANUFACTURER:Acme;MODEL:L100;SERIALNUMBER:X12;", "Acme", "L100", "X12"},
        IdRow{{"OtherSerialKey"}, "SERN:X12;", {}, {}, "X12"},
        IdRow{{"AnyCaseAndSpaces"}, " Mfg : Acme Inc. ;mdl:L100\n", "Acme Inc.", "L100", {}},
        IdRow{{"TheFirstValueCounts"}, "MFG:Acme;MANUFACTURER:Other;", "Acme", {}, {}},
        IdRow{{"AnEmptyValueDoesNotCount"}, "MFG: ;MANUFACTURER:Acme;", "Acme", {}, {}},
        IdRow{{"ALengthBefore"}, "\x00\x1FMFG:Acme;MDL:L100;"s, "Acme", "L100", {}},
        IdRow{{"ALengthThatIsALetter"}, "\x00MMFG:Acme;"s, "Acme", {}, {}},
        IdRow{{"AColonInTheValue"}, "MDL:L:100;", {}, "L:100", {}},
        IdRow{{"CutInAValue"}, "MFG:Acme;MDL:L1", "Acme", "L1", {}},
        IdRow{{"CutInAKey"}, "MFG:Acme;MD", "Acme", {}, {}},
        IdRow{{"ControlBytes"},
              "MFG:A\x1B[31mc\0m\x7F"
              "e;MDL:\n;"s,
              "A[31mcme",
              {},
              {}},
        IdRow{{"OtherBytesStay"}, "MFG:\xC3\x84 \xFF;", "\xC3\x84 \xFF", {}, {}},
        IdRow{{"LongerKeys"}, "XMFG:Acme;MFGX:Acme;", {}, {}, {}},
        IdRow{{"NoKeys"}, ";;:;:x;abc;", {}, {}, {}},
        IdRow{{"OnlyALength"}, "\x00\x02"s, {}, {}, {}}, IdRow{{"HalfALength"}, "\x01", {}, {}, {}},
        IdRow{{"Nothing"}, "", {}, {}, {}}),
    support::rowName);

}  // namespace
