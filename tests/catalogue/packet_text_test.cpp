#include "catalogue/packet_text.h"

#include <gtest/gtest.h>
#include <string>

#include "testing/packets.h"
#include "testing/rows.h"

namespace {

using support::bytes;

struct TextRow : support::Row {
  std::string packet;
  const char* meaning;
  const char* hex = nullptr;  ///< the packet with masked bytes; null if no byte is masked
};

class PacketTexts : public testing::TestWithParam<TextRow> {};

TEST_P(PacketTexts, HaveTheMeaningAndMaskSecrets) {
  const auto text = catalogue::packetText(bytes(GetParam().packet));
  EXPECT_EQ(text.meaning, GetParam().meaning);
  EXPECT_EQ(text.hex, GetParam().hex == nullptr ? GetParam().packet : GetParam().hex);
}

INSTANTIATE_TEST_SUITE_P(
    Packets, PacketTexts,
    testing::Values(
        TextRow{{"Query"}, "A5 00 06 50 E0 D8 00 28 08", "query: SSID"},
        TextRow{
            {"QueryOfAnUnknownSetting"}, "A5 00 06 50 E0 D8 00 28 FE", "query: unknown setting"},
        TextRow{{"WrappedQuery"},
                "A5 00 0F 50 E0 63 02 00 09 A5 00 06 50 E0 D8 00 28 08",
                "wrapped: query: SSID"},
        TextRow{{"Value"}, "A5 00 0B 50 E0 D8 00 28 08 00 03 61 62 00", "reply: SSID = \"ab\""},
        TextRow{{"SecretValue"},
                "A5 00 0A 50 E0 D8 00 28 11 00 02 6B 6C",
                "reply: pre-shared key = (2 bytes)",
                "A5 00 0A 50 E0 D8 00 28 11 00 02 ** **"},
        TextRow{{"UnknownValue"},
                "A5 00 0A 50 E0 D8 00 28 FE 00 02 6B 6C",
                "reply: object 28 FE = (2 bytes)",
                "A5 00 0A 50 E0 D8 00 28 FE 00 02 ** **"},
        TextRow{{"CutValue"},
                "A5 00 0A 50 E0 D8 00 28 08 00 03 61 62",
                "a record that is not whole",
                "A5 00 0A 50 E0 D8 00 28 08 00 03 ** **"},
        TextRow{{"Settings"},
                "A5 00 13 50 E0 DA 01 28 08 00 00 02 61 00 28 11 00 00 02 6B 6C",
                "store SSID = \"a\", pre-shared key = (2 bytes)",
                "A5 00 13 50 E0 DA 01 28 08 00 00 02 61 00 28 11 00 00 02 ** **"},
        TextRow{{"SettingsWithARest"},
                "A5 00 0D 50 E0 DA 01 28 08 00 00 02 61 00 28 11",
                "store SSID = \"a\" and bytes that are not understood",
                "A5 00 0D 50 E0 DA 01 28 08 00 00 02 61 00 ** **"},
        TextRow{{"Accepted"}, "A5 00 05 50 E0 DA 01 01", "accepted"},
        TextRow{{"NotAccepted"}, "A5 00 05 50 E0 DA 01 00", "not accepted"},
        TextRow{{"Refusal"}, "A5 00 02 D4 E0", "refused"},
        TextRow{{"Announcement"},
                "A5 00 10 80 A4 5B A4 5B 10 EF A4 5B 11 EE 00 FF 13 EC 2E",
                "a method call follows"},
        TextRow{{"MethodCall"}, "A5 00 07 50 E0 C0 03 00 01 3C", "a method call or its reply"},
        TextRow{{"WrapperTooShort"},
                "A5 00 09 50 E0 63 02 00 09 A5 00 06",
                "a wrapper whose packet is not whole",
                "A5 00 09 50 E0 63 02 ** ** ** ** **"},
        TextRow{{"Unknown"},
                "A5 00 06 50 E0 11 22 33 44",
                "not understood",
                "A5 00 06 50 E0 ** ** ** **"}),
    support::rowName);

}  // namespace
