#include "decoder/options.h"

#include <gtest/gtest.h>

namespace {

using decoder::Options;
using decoder::parseOptions;
using Words = std::vector<std::string>;

TEST(DecoderOptions, AreStandardInputInAnyFormWithoutArguments) {
  const Options options = parseOptions({});
  EXPECT_EQ(options.action, Options::Action::Decode);
  EXPECT_EQ(options.form, Options::Form::Any);
  EXPECT_FALSE(options.json);
  EXPECT_FALSE(options.showSecrets);
  EXPECT_EQ(options.device, "");
  EXPECT_EQ(options.inputs, Words{"-"});
}

TEST(DecoderOptions, AreTakenInAnyOrder) {
  const Options options = parseOptions(
      {"a", "--json", "--form=capture", "-", "--device", "01:005", "--secrets", "--", "-b", "--"});
  EXPECT_TRUE(options.json);
  EXPECT_TRUE(options.showSecrets);
  EXPECT_EQ(options.form, Options::Form::Capture);
  EXPECT_EQ(options.device, "1:5");
  EXPECT_EQ(options.inputs, (Words{"a", "-", "-b", "--"}));
  EXPECT_EQ(parseOptions({"--form", "text"}).form, Options::Form::Text);
  EXPECT_EQ(parseOptions({"--objects"}).action, Options::Action::Objects);
  EXPECT_EQ(parseOptions({"-h"}).action, Options::Action::Help);
  EXPECT_EQ(parseOptions({"--help"}).action, Options::Action::Help);
}

std::string complaintAbout(const Words& arguments) {
  try {
    parseOptions(arguments);
  } catch (const decoder::UsageError& error) {
    return error.what();
  }
  return "none";
}

TEST(DecoderOptions, AreRefusedWithAReason) {
  EXPECT_EQ(complaintAbout({"--none"}), "there is no option '--none'");
  EXPECT_EQ(complaintAbout({"-x"}), "there is no option '-x'");
  EXPECT_EQ(complaintAbout({"--json=1"}), "--json takes no value");
  EXPECT_EQ(complaintAbout({"--form"}), "--form needs a value");
  EXPECT_EQ(complaintAbout({"--form="}), "'' is no form of input: text or capture");
  for (const std::string device : {"", "1", ":", "1:", ":5", "1:x", "1:5:6", "1:-5", "1:123456"}) {
    EXPECT_EQ(complaintAbout({"--device=" + device}), "'" + device + "' is no device such as 1:5");
  }
}

TEST(DecoderHelp, ListsEachOption) {
  const std::string text = decoder::helpText();
  const std::string options =
      "\n"
      "  --json                 write one JSON document\n"
      "  --secrets              do not mask keys and passwords\n"
      "  --form=text|capture    read the input so, whatever it looks like\n"
      "  --device=BUS:DEVICE    look at this device of a capture only\n"
      "  --objects              list the settings that are known\n"
      "  --help                 print this text\n"
      "\n";
  EXPECT_NE(text.find(options), std::string::npos) << text;
}

TEST(ObjectsText, HasALineForEachSetting) {
  const std::string text = decoder::objectsText();
  EXPECT_EQ(std::ranges::count(text, '\n'), 45);
  EXPECT_TRUE(text.starts_with("06\t14\tflag\tplain\tadapter\tadapter reset\t\n")) << text;
  EXPECT_NE(text.find("\n28\t11\ttext\tsecret\twireless network\tpre-shared key\t\n"),
            std::string::npos);
  EXPECT_NE(text.find("\n28\t02\tnumber\tplain\twireless network\tmode\t0=managed; 1=ad-hoc\n"),
            std::string::npos);
}

}  // namespace
