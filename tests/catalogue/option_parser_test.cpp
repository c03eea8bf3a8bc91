#include "catalogue/option_parser.h"

#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

#include "testing/rows.h"

namespace {

using catalogue::UsageError;
using catalogue::ValueError;
using catalogue::ValueKind;
using Words = std::vector<std::string>;

struct Settings {
  enum class Action { Start, Stop };

  bool loud = false;
  std::string name;
  std::string colour;
  std::string direction;
};

using Option = catalogue::Option<Settings>;
using Command = catalogue::Command<Settings>;

constexpr std::array<std::string_view, 3> Colours = {"red", "green", "blue"};
constexpr std::array<std::string_view, 2> Directions = {"in", "out"};

constexpr std::array Look = {
    Option{.name = "--loud",
           .shortName = "-l",
           .help = "make noise",
           .apply =
               [](Settings& s, const std::string& value) {
                 s.loud = value.empty();
               }},
    Option{.name = "--colour",
           .kind = ValueKind::Words,
           .words = Colours,
           .help = "its colour",
           .apply =
               [](Settings& s, const std::string& value) {
                 s.colour = value;
               }},
};
constexpr std::array Rest = {
    Option{.name = "--name",
           .valueName = "NAME",
           .help = "its name",
           .apply =
               [](Settings& s, const std::string& value) {
                 if (value == "bad") {
                   throw ValueError("a good name");
                 }
                 s.name = value;
               }},
    Option{.name = "--key",
           .valueName = "KEY",
           .isSecret = true,
           .help = "its key",
           .apply =
               [](Settings&, const std::string&) {
                 throw ValueError("a good key");
               }},
    Option{.name = "--direction-of-the-stream",
           .valueName = "in|out[:BYTES]",
           .words = Directions,
           .help = "where it goes",
           .apply =
               [](Settings& s, const std::string& value) {
                 s.direction = value;
               }},
};
constexpr std::array<catalogue::OptionGroup<Settings>, 2> Groups = {
    {{"Look", Look}, {"General options", Rest}}};
constexpr std::span<const catalogue::OptionGroup<Settings>> AllGroups(Groups);

constexpr std::array Commands = {
    Command{.name = "start",
            .otherNames = {"begin", "-s"},
            .action = Settings::Action::Start,
            .usages = {"[OPTION...]", "FILE"},
            .help = "start it"},
    Command{.name = "stop", .action = Settings::Action::Stop, .help = "stop it"},
};
constexpr std::span<const Command> AllCommands(Commands);

catalogue::Operands parse(const Words& arguments, Settings& settings) {
  return catalogue::parseArguments(AllGroups, std::span(arguments), settings);
}

std::string complaintAbout(const Words& arguments) {
  try {
    Settings settings;
    parse(arguments, settings);
  } catch (const UsageError& error) {
    return error.what();
  }
  return "none";
}

TEST(ParseArguments, AcceptsOptionsInAnyOrder) {
  Settings settings;
  const catalogue::Operands operands =
      parse({"a", "--name=x=y", "-", "--colour", "red", "--loud"}, settings);
  EXPECT_TRUE(settings.loud);
  EXPECT_EQ(settings.name, "x=y");
  EXPECT_EQ(settings.colour, "red");
  EXPECT_EQ(operands.before, (Words{"a", "-"}));
  EXPECT_EQ(operands.after, Words{});
}

TEST(ParseArguments, StopsAtTwoDashes) {
  Settings settings;
  const catalogue::Operands operands = parse({"a", "--", "--loud", "--", "b"}, settings);
  EXPECT_FALSE(settings.loud);
  EXPECT_EQ(operands.before, Words{"a"});
  EXPECT_EQ(operands.after, (Words{"--loud", "--", "b"}));
}

TEST(ParseArguments, UsesTheLastValueAndAcceptsShortNames) {
  Settings settings;
  parse({"--name=a", "--name", "--", "-l", "--direction-of-the-stream=in:5"}, settings);
  EXPECT_EQ(settings.name, "--");
  EXPECT_TRUE(settings.loud);
  EXPECT_EQ(settings.direction, "in:5");
}

TEST(ParseArguments, ReportsTheExpectedValue) {
  EXPECT_EQ(complaintAbout({"--lou"}), "--lou: no such option");
  EXPECT_EQ(complaintAbout({"-x=1"}), "-x: no such option");
  EXPECT_EQ(complaintAbout({"--loud="}), "--loud: expected no value, got ''");
  EXPECT_EQ(complaintAbout({"--name"}), "--name: expected a value");
  EXPECT_EQ(complaintAbout({"--name=bad"}), "--name: expected a good name, got 'bad'");
  EXPECT_EQ(complaintAbout({"--key=bad"}), "--key: expected a good key");
  EXPECT_EQ(complaintAbout({"--colour=pink"}), "--colour: expected red, green or blue, got 'pink'");
}

TEST(FindCommand, AcceptsOtherNames) {
  for (const char* name : {"start", "begin", "-s"}) {
    EXPECT_EQ(catalogue::findCommand(AllCommands, name).action, Settings::Action::Start) << name;
  }
  EXPECT_EQ(catalogue::findCommand(AllCommands, "stop").action, Settings::Action::Stop);
}

TEST(FindCommand, ReportsTheExpectedCommands) {
  for (const std::string name : {"", "star", "starts"}) {
    try {
      catalogue::findCommand(AllCommands, name);
      ADD_FAILURE() << "found " << name;
    } catch (const UsageError& error) {
      EXPECT_EQ(error.what(), "command: expected start or stop, got '" + name + "'");
    }
  }
}

TEST(OptionList, AlignsTheDescriptions) {
  EXPECT_EQ(catalogue::optionList(AllGroups),
            "\nLook:\n"
            "  --loud                        make noise\n"
            "  --colour=red|green|blue       its colour\n"
            "\nGeneral options:\n"
            "  --name=NAME                   its name\n"
            "  --key=KEY                     its key\n"
            "  --direction-of-the-stream=in|out[:BYTES]\n"
            "                                where it goes\n");
}

TEST(CommandList, ShowsTheUsagesOfEachCommand) {
  EXPECT_EQ(catalogue::commandList("tool", AllCommands),
            "\n  tool start [OPTION...]\n"
            "  tool start FILE\n"
            "      Start it.\n"
            "\n  tool stop\n"
            "      Stop it.\n");
}

}  // namespace
