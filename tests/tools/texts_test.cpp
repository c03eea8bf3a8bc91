#include "tools/texts.h"

#include <gtest/gtest.h>
#include <stdexcept>

namespace {

using tools::Texts;

const Texts Some = {{"name", "a text"}, {"two words", "{{name}}"}, {"nothing", ""}};

TEST(Filled, ReplacesEachPlaceholder) {
  EXPECT_EQ(tools::filled("", Some), "");
  EXPECT_EQ(tools::filled("no place } { }}", Some), "no place } { }}");
  EXPECT_EQ(tools::filled("{{name}} and {{name}}\n{{nothing}}.", Some), "a text and a text\n.");
}

TEST(Filled, LeavesPlaceholdersInATextUnchanged) {
  EXPECT_EQ(tools::filled("<{{two words}}>", Some), "<{{name}}>");
}

TEST(Filled, FailsForAnUnknownNameAndAMissingEnd) {
  for (const char* text :
       {"{{names}}", "{{Name}}", "{{}}", "a {{name", "{{ name }}", "{{name}\n}}"}) {
    EXPECT_THROW(tools::filled(text, Some), std::runtime_error) << text;
  }
}

TEST(ConfigTexts, ContainTheCommands) {
  Texts texts;
  tools::addConfigTexts(texts);
  const std::string commands = texts.at("zvkconfig commands");
  EXPECT_NE(commands.find(
                "*-s*\n\tPrint the SSID. Exit status 0: printed; 1: no answer, or no text in it; "
                "255: refused.\n"),
            std::string::npos)
      << commands;
  EXPECT_NE(commands.find("*-npa* *-file* _FILE_ _DEVICE_\n\t"), std::string::npos);
  EXPECT_TRUE(texts.at("zvkconfig switches with device").starts_with("*-s*|*-ip*|"));
  EXPECT_EQ(texts.at("zvkconfig list of switches with options"),
            "*-c*, *-ca*, *-cer*, *-rcerdefs*, *-csr* and *-icer*");
  const std::string retrying = texts.at("zvkconfig list of switches that retry");
  EXPECT_TRUE(retrying.starts_with("*-c*, *-ca*, *-s*, ")) << retrying;
  EXPECT_EQ(retrying.find("*-a*"), std::string::npos) << retrying;
  EXPECT_EQ(retrying.find("*-cer*"), std::string::npos) << retrying;
}

TEST(ConfigTexts, ContainTheOptionsWithTheirWords) {
  Texts texts;
  tools::addConfigTexts(texts);
  const std::string networks = texts.at("zvkconfig options of networks");
  EXPECT_NE(networks.find("*--channel=*_NUMBER_\n\tChannel of an ad-hoc network: *1* to *11*. The "
                          "default is *6*. Any"),
            std::string::npos)
      << networks;
  EXPECT_NE(networks.find("\tSecurity of the network: *None*, *WEP*, *WPA* or *WPA2* with *-c*; "
                          "*OPEN*, *SHARED*, *WPA-PER*, *WPA-ENT* or *802.1x* with *-ca*. The "
                          "default is *None*."),
            std::string::npos)
      << networks;
  EXPECT_EQ(networks.find("--psk="), std::string::npos);
  EXPECT_NE(texts.at("zvkconfig value rows").find("'--security -c words None WEP WPA WPA2'"),
            std::string::npos);
}

TEST(DissectorTexts, AreLuaTables) {
  Texts texts;
  tools::addDissectorTexts(texts);
  EXPECT_NE(texts.at("dissector groups").find("  [0x2A] = \"802.1x\",\n"), std::string::npos);
  const std::string settings = texts.at("dissector settings");
  EXPECT_NE(
      settings.find("  { 0x28, 0x02, \"number\", \"mode\", { \"managed\", \"ad-hoc\", } },\n"),
      std::string::npos)
      << settings;
}

}  // namespace
