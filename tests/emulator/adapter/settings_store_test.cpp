#include "emulator/adapter/settings_store.h"

#include <gtest/gtest.h>

#include "testing/bytes.h"

namespace {

using support::bytes;

TEST(SettingsStore, KeepsTheLastValueOfEachSetting) {
  emulator::SettingsStore store;
  const npa::SettingKey ssid = {0x28, 0x08};
  EXPECT_FALSE(store.holds(ssid));
  EXPECT_TRUE(store.get(ssid).empty());
  store.set(ssid, bytes("61 62 63"));
  store.set(ssid, bytes("64"));
  store.set({0x28, 0x11}, bytes("6B"));
  EXPECT_EQ(store.get(ssid), bytes("64"));
  EXPECT_EQ(store.describe(false),
            (std::vector<std::string>{"SSID = \"d\"", "pre-shared key = (1 bytes)"}));
  EXPECT_EQ(store.describe(true),
            (std::vector<std::string>{"SSID = \"d\"", "pre-shared key = \"k\""}));
}

TEST(SettingsStore, ReadsTextsAndNumbers) {
  emulator::SettingsStore store;
  store.set({0x28, 0x08}, bytes("61 62 00"));
  store.set({0x28, 0x05}, bytes("00 00 01 02"));
  store.set({0x28, 0x02}, bytes("00 00 00 00 01"));
  EXPECT_EQ(store.text({0x28, 0x08}), "ab");
  EXPECT_EQ(store.text({0x28, 0x09}), "");
  EXPECT_EQ(store.number({0x28, 0x05}), 258U);
  EXPECT_FALSE(store.number({0x28, 0x02}));
  EXPECT_FALSE(store.number({0x28, 0x22}));
}

}  // namespace
