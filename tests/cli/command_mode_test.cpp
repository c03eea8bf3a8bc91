#include "cli/command_mode.h"

#include <gtest/gtest.h>
#include <string_view>
#include <vector>

namespace {

std::vector<std::string_view> namesWhere(bool (*holds)(const CommandMode&)) {
  std::vector<std::string_view> names;
  for (const CommandMode& mode : commandModes()) {
    if (holds(mode)) {
      names.push_back(mode.name);
    }
  }
  return names;
}

using Names = std::vector<std::string_view>;

TEST(CommandModes, TryARefusalAgainBareForTheseOnly) {
  EXPECT_EQ(namesWhere([](const CommandMode& mode) { return mode.retriesBare; }),
            (Names{"-c", "-ca", "-ip", "-t", "-s", "-802s", "-cer"}));
  EXPECT_FALSE(commandMode("-x").retriesBare);
}

TEST(CommandModes, TakeOptionsForTheseOnly) {
  EXPECT_EQ(
      namesWhere([](const CommandMode& mode) { return mode.input == CommandMode::Input::Options; }),
      (Names{"-c", "-ca", "-cer", "-icer", "-rcerdefs", "-csr"}));
  EXPECT_EQ(
      namesWhere([](const CommandMode& mode) { return mode.input == CommandMode::Input::NpaFile; }),
      (Names{"-npa"}));
}

TEST(CommandModes, RunTheDefaultForWhatIsNoSwitch) {
  for (const std::string_view text : {"", "-C", "-cc", "c", "--c", "-x"}) {
    EXPECT_EQ(commandMode(text).worker, CommandMode::Worker::DefaultRun) << text;
  }
}

}  // namespace
