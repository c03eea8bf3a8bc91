#include "decoder/options.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "catalogue/setting_catalogue.h"

namespace {

using decoder::Options;
using decoder::parseOptions;
using Words = std::vector<std::string>;

TEST(DecoderOptions, SelectStandardInputInAnyFormByDefault) {
  const Options options = parseOptions({});
  EXPECT_EQ(options.action, Options::Action::Decode);
  EXPECT_EQ(options.form, Options::Form::Any);
  EXPECT_FALSE(options.json);
  EXPECT_FALSE(options.showSecrets);
  EXPECT_EQ(options.device, "");
  EXPECT_EQ(options.inputs, Words{"-"});
}

TEST(DecoderOptions, AreAcceptedInAnyOrder) {
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
  } catch (const catalogue::UsageError& error) {
    return error.what();
  }
  return "none";
}

TEST(DecoderOptions, AreRejectedWithTheExpectedValue) {
  EXPECT_EQ(complaintAbout({"--none"}), "--none: no such option");
  EXPECT_EQ(complaintAbout({"-x"}), "-x: no such option");
  EXPECT_EQ(complaintAbout({"--json=1"}), "--json: expected no value, got '1'");
  EXPECT_EQ(complaintAbout({"--form"}), "--form: expected a value");
  EXPECT_EQ(complaintAbout({"--form="}), "--form: expected text or capture, got ''");
  for (const std::string device : {"", "1", ":", "1:", ":5", "1:x", "1:5:6", "1:-5", "1:123456"}) {
    EXPECT_EQ(complaintAbout({"--device=" + device}),
              "--device: expected a bus and a device number such as 1:5, got '" + device + "'");
  }
}

TEST(DecoderHelp, ListsTheOptions) {
  const std::string help = decoder::helpText();
  for (const char* line : {"\n  --json               write one JSON document\n",
                           "\n  --form=text|capture  read all inputs in this form",
                           "\n  --device=BUS:DEVICE  read only the transfers of this device"}) {
    EXPECT_NE(help.find(line), std::string::npos) << line << "\n" << help;
  }
}

TEST(ObjectsText, HasALineForEachSetting) {
  const std::string text = decoder::objectsText();
  EXPECT_EQ(static_cast<std::size_t>(std::ranges::count(text, '\n')),
            catalogue::settingCatalogue().size());
  EXPECT_TRUE(text.starts_with("06\t14\tflag\tplain\tadapter\tadapter reset\t\n")) << text;
  EXPECT_NE(text.find("\n28\t11\ttext\tsecret\twireless network\tpre-shared key\t\n"),
            std::string::npos);
  EXPECT_NE(text.find("\n28\t02\tnumber\tplain\twireless network\tmode\t0=managed; 1=ad-hoc\n"),
            std::string::npos);
}

}  // namespace
