#include "wifi/networks.h"

#include <gtest/gtest.h>
#include <random>

// The networks in the output of nmcli.

namespace {

using session::Security;
using wifi::Network;
using wifi::parseNetworks;

/// Returns the network of a line that has `security` in the field SECURITY.
Network networkWith(const std::string& security) {
  const auto networks = parseNetworks(" :x:" + security + ":50\n");
  return networks.size() == 1 ? networks.front() : Network{};
}

std::vector<std::string> namesIn(std::string_view text) {
  std::vector<std::string> names;
  for (const Network& network : parseNetworks(text)) {
    names.push_back(network.ssid);
  }
  return names;
}

TEST(Networks, HaveTheFieldsOfALine) {
  const std::vector<Network> expected = {
      {.ssid = "home", .security = Security::Wpa, .isOwn = true, .signal = 72}};
  EXPECT_EQ(parseNetworks("*:home:WPA1 WPA2:72\n"), expected);
}

TEST(Networks, HaveNamesWithEscapedCharacters) {
  EXPECT_EQ(namesIn(" :a\\:b\\\\c d:WPA2:50\n"), std::vector<std::string>{"a:b\\c d"});
}

TEST(Networks, HaveTheSecurityThatTheAdapterUses) {
  struct Row {
    const char* text;
    std::optional<Security> security;
    bool needsWpa3 = false;
  };
  for (const Row& row : std::to_array<Row>({
           {"", Security::Open},
           {"--", Security::Open},
           {"OWE-TM", Security::Open},
           {"WEP", Security::Wep},
           {"WPA1", Security::Wpa},
           {"WPA2", Security::Wpa},
           {"WPA2 WPA3", Security::Wpa},
           {"WPA2 802.1X", Security::Enterprise},
           {"WPA1 WPA2 802.1X", Security::Enterprise},
           {"802.1X", Security::Enterprise},
           {"WPA3", std::nullopt, true},
           {"WPA3 802.1X", std::nullopt, true},
           {"OWE", std::nullopt, true},
           {"WPA9", std::nullopt},
       })) {
    const Network network = networkWith(row.text);
    EXPECT_EQ(network.security, row.security) << row.text;
    EXPECT_EQ(network.needsWpa3, row.needsWpa3) << row.text;
  }
}

TEST(Networks, AreSortedByTheSignalAfterTheOwnOne) {
  EXPECT_EQ(namesIn(" :weak:WPA2:20\n :strong:WPA2:90\n*:own:WPA2:10\n"),
            (std::vector<std::string>{"own", "strong", "weak"}));
}

TEST(Networks, AreListedOnceForSeveralAccessPoints) {
  const auto networks = parseNetworks(" :x:WPA2:20\n*:x:WPA2:10\n :x:WPA2:90\n");
  const std::vector<Network> expected = {
      {.ssid = "x", .security = Security::Wpa, .isOwn = true, .signal = 90}};
  EXPECT_EQ(networks, expected);
}

TEST(Networks, TakeTheSecurityOfAnAccessPointThatTheAdapterCanJoin) {
  const auto networks = parseNetworks(" :x:WPA3:90\n :x:WPA2:10\n");
  ASSERT_EQ(networks.size(), 1U);
  EXPECT_EQ(networks.front().security, Security::Wpa);
  EXPECT_FALSE(networks.front().needsWpa3);
}

TEST(Networks, WithoutAUsableNameAreSkipped) {
  EXPECT_TRUE(namesIn(" ::WPA2:50\n").empty());
  EXPECT_TRUE(namesIn(" :--:WPA2:50\n").empty());
  EXPECT_TRUE(namesIn(" :caf\xEF\xBF\xBD:WPA2:50\n").empty());
  EXPECT_TRUE(namesIn(" :" + std::string(33, 'x') + ":WPA2:50\n").empty());
  EXPECT_EQ(namesIn(" :" + std::string(32, 'x') + ":WPA2:50\n").size(), 1U);
  EXPECT_TRUE(namesIn(std::string(" :a\0b:WPA2:50\n", 14)).empty());
}

TEST(Networks, AreSkippedIfTheLineHasAnotherForm) {
  EXPECT_TRUE(namesIn("Error: NetworkManager is not running.\n").empty());
  EXPECT_TRUE(namesIn(" :x:WPA2\n :x:WPA2:1:2\n\n:\n").empty());
  EXPECT_EQ(namesIn("?\n :x:WPA2:50"), std::vector<std::string>{"x"});
}

TEST(Networks, AreAtMostNine) {
  std::string text;
  for (int i = 10; i < 30; ++i) {
    text += " :net" + std::to_string(i) + ":WPA2:" + std::to_string(i) + "\n";
  }
  const auto names = namesIn(text);
  ASSERT_EQ(names.size(), wifi::MostNetworks);
  EXPECT_EQ(names.front(), "net29");
  EXPECT_EQ(names.back(), "net21");
}

TEST(Networks, AreReadFromAnyBytes) {
  constexpr std::string_view characters = ":\\\n* -x5\xFF";
  std::mt19937 random(1);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same bytes each time
  for (int run = 0; run < 20000; ++run) {
    std::string text(random() % 40, ' ');
    for (char& c : text) {
      c = characters[random() % characters.size()];
    }
    for (const Network& network : parseNetworks(text)) {
      EXPECT_FALSE(network.ssid.empty());
    }
  }
}

}  // namespace
