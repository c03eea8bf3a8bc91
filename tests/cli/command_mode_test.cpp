#include "cli/command_mode.h"

#include <gtest/gtest.h>
#include <string_view>
#include <vector>

#include "cli/command_table.h"

namespace {

using Names = std::vector<std::string_view>;
using Input = CommandMode::Input;

Names namesWhere(bool (*holds)(const CommandMode&)) {
  Names names;
  for (const CommandRow& row : CommandTable) {
    if (holds(row.mode)) {
      names.push_back(row.mode.name);
    }
  }
  return names;
}

// The lists need not contain every switch, so a new query needs no change here.
TEST(CommandModes, RetryARefusalBareWithExceptions) {
  for (const std::string_view name : {"-c", "-ca", "-s", "-ip", "-t", "-802s", "-cer"}) {
    EXPECT_TRUE(commandMode(name).retriesBare) << name;
  }
  for (const std::string_view name :
       {"-a", "-rcerdefs", "-csr", "-icer", "-npa", "-r", "-h", "-x"}) {
    EXPECT_FALSE(commandMode(name).retriesBare) << name;
  }
}

TEST(CommandModes, TakeOptionsForSixSwitches) {
  EXPECT_EQ(namesWhere([](const CommandMode& mode) { return mode.input == Input::Options; }),
            (Names{"-c", "-ca", "-cer", "-rcerdefs", "-csr", "-icer"}));
  EXPECT_EQ(namesWhere([](const CommandMode& mode) { return mode.input == Input::NpaFile; }),
            (Names{"-npa"}));
}

TEST(CommandModes, AreFoundByTheirExactName) {
  EXPECT_EQ(commandMode("-s").operation, &wnpaGenerator::getSSID);
  EXPECT_EQ(commandMode("-ip").operation, &wnpaGenerator::getIP);
  EXPECT_EQ(commandMode("-h").worker, CommandMode::Worker::Help);
  for (const CommandRow& row : CommandTable) {
    EXPECT_EQ(commandMode(row.mode.name).name, row.mode.name);
  }
}

TEST(CommandModes, RunTheDefaultForAnUnknownSwitch) {
  for (const std::string_view text : {"", "-C", "-cc", "c", "--c", "-x"}) {
    EXPECT_EQ(commandMode(text).worker, CommandMode::Worker::DefaultRun) << text;
  }
}

}  // namespace
