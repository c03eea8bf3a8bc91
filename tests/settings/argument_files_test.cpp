#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "settings/config_details.h"
#include "testing/files.h"
#include "testing/open_descriptors.h"
#include "testing/output.h"

namespace {

using support::outputOf;

class ArgumentFile : public testing::Test {
 protected:
  std::string write(std::string_view content) { return folder.write("file", content); }

  void parse(std::string_view content) {
    EXPECT_EQ(settings.parseFile(write(content), "/dev/usb/lp1"), 0);
  }

  support::TemporaryFolder folder;
  configDetails settings;
};

TEST_F(ArgumentFile, ContainsOneOptionPerLine) {
  parse(
      "# comment\n"
      "--ssid=\"My Net\"\n"
      "--security=WPA\n"
      "--psk=\"two words here\"\n");
  EXPECT_EQ(settings.getSSID(), "My Net");
  EXPECT_EQ(settings.getSecurity(), "WPA");
  EXPECT_EQ(settings.getPSK(), "two words here");
  EXPECT_EQ(settings.getChannel(), "6");
  EXPECT_EQ(settings.getMode(), "Managed");
  EXPECT_EQ(settings.getUSB(), "/dev/usb/lp1");
}

TEST_F(ArgumentFile, NeverContainsTheDevice) {
  parse("lp5\n/dev/usb/lp7\n");
  EXPECT_EQ(settings.getUSB(), "/dev/usb/lp1");
}

TEST_F(ArgumentFile, KeepsACarriageReturnOutsideQuotationMarks) {
  parse("--mode=Managed\r\n--ssid=\"x\"\r\n");
  EXPECT_EQ(settings.getMode(), "Managed\r");
  EXPECT_EQ(settings.getSSID(), "x");
}

TEST_F(ArgumentFile, KeepsBlanksAroundAValue) {
  parse("--ssid= x \n");
  EXPECT_EQ(settings.getSSID(), " x ");
}

TEST_F(ArgumentFile, UsesTheLastOfTwoValues) {
  parse("--ssid=a\n--ssid=b\n");
  EXPECT_EQ(settings.getSSID(), "b");
}

TEST_F(ArgumentFile, HasCommentsOnlyAtTheStartOfALine) {
  parse(" #--ssid=a\n#--channel=3\n");
  // The key starts at offset 2, but the parser still removes the first 7 characters of the line,
  // the length of `--ssid=`. The rest is the value.
  EXPECT_EQ(settings.getSSID(), "d=a");
  EXPECT_EQ(settings.getChannel(), "6");
}

TEST_F(ArgumentFile, NeedsNoLastLineEnd) {
  parse("--ssid=x");
  EXPECT_EQ(settings.getSSID(), "x");
}

TEST_F(ArgumentFile, IsReadInPiecesOf255Characters) {
  parse("--ssid=" + std::string(293, 'a') + "\n");
  EXPECT_EQ(settings.getSSID(), std::string(248, 'a'));
}

TEST_F(ArgumentFile, MayHaveAnOptionAtTheStartOfASecondPiece) {
  parse(std::string(255, ' ') + "--ssid=x\n");
  EXPECT_EQ(settings.getSSID(), "x");
}

TEST_F(ArgumentFile, IgnoresAnOptionWhoseKeyIsSplit) {
  // The first piece ends inside the key, after `--ssid`. No piece contains the whole key `--ssid=`,
  // so the option is ignored.
  parse(std::string(249, ' ') + "--ssid=x\n");
  EXPECT_EQ(settings.getSSID(), "");
}

TEST_F(ArgumentFile, EndsACommentWithItsPiece) {
  parse("#" + std::string(254, ' ') + "--ssid=x\n");
  EXPECT_EQ(settings.getSSID(), "x");
}

TEST_F(ArgumentFile, EndsALineAtAZeroByte) {
  parse(std::string_view("--ssid=ab\0cd\n--channel=3\n", 25));
  EXPECT_EQ(settings.getSSID(), "ab");
  EXPECT_EQ(settings.getChannel(), "3");
}

// Any user can open this file, but a read from its start fails.
constexpr const char* Unreadable = "/proc/self/mem";

TEST_F(ArgumentFile, MayBeEmptyMissingUnreadableOrAFolder) {
  for (const std::string& path :
       {write(""), folder.path("missing"), folder.path(""), std::string(Unreadable)}) {
    configDetails fresh;
    EXPECT_EQ(fresh.parseFile(path, "2:5"), 0) << path;
    EXPECT_EQ(fresh.getUSB(), "2:5");
    EXPECT_EQ(fresh.getSSID(), "");
    EXPECT_EQ(fresh.getSecurity(), "None");
  }
}

TEST_F(ArgumentFile, MayHaveALineOfAMegabyte) {
  parse(std::string(1U << 20U, 'x') + "\n--ssid=y\n");
  EXPECT_EQ(settings.getSSID(), "y");
}

TEST_F(ArgumentFile, StaysOpenWhileTheSettingsExist) {
  const std::string path = write("--ssid=x\n");
  const long before = support::openDescriptors();
  {
    configDetails details;
    details.parseFile(folder.path("missing"), "/dev/usb/lp1");
    EXPECT_EQ(support::openDescriptors(), before);
    details.parseFile(path, "/dev/usb/lp1");
    EXPECT_EQ(support::openDescriptors(), before + 1);
  }
  EXPECT_EQ(support::openDescriptors(), before);
}

using NpaFile = ArgumentFile;

TEST_F(NpaFile, StaysOpenWhileTheSettingsExist) {
  const std::string path = write("A5");
  const long before = support::openDescriptors();
  {
    configDetails details;
    outputOf([&] { details.parseNPAFile(path.c_str()); });
    EXPECT_EQ(support::openDescriptors(), before + 1);
  }
  EXPECT_EQ(support::openDescriptors(), before);
}

TEST_F(NpaFile, StoresAndPrintsTheHexDigits) {
  int result = -77;
  const auto output = outputOf(
      [&] { result = settings.parseNPAFile(write("A5 00 06 50 E0 D8 00 2A 0A\n").c_str()); });
  EXPECT_EQ(result, 0);
  EXPECT_EQ(settings.getNPAFileData(), "A5000650E0D8002A0A");
  EXPECT_EQ(output, (support::Output{"npaFileData: (18 bytes) A5000650E0D8002A0A\n", ""}));
}

TEST_F(NpaFile, SkipsAllOtherBytes) {
  outputOf([&] { settings.parseNPAFile(write("0xa5,G@`g/:\xFF fF\r\n9").c_str()); });
  EXPECT_EQ(settings.getNPAFileData(), "0a5fF9");
}

TEST_F(NpaFile, ReplacesTheEarlierData) {
  outputOf([&] {
    settings.parseNPAFile(write("11").c_str());
    settings.parseNPAFile(write("22").c_str());
  });
  EXPECT_EQ(settings.getNPAFileData(), "22");
}

TEST_F(NpaFile, LeavesTheDataUnchangedIfItCannotBeOpened) {
  outputOf([&] { settings.parseNPAFile(write("11").c_str()); });
  int result = -77;
  const auto output =
      outputOf([&] { result = settings.parseNPAFile(folder.path("missing").c_str()); });
  EXPECT_EQ(result, -1);
  EXPECT_EQ(output, support::Output{});
  EXPECT_EQ(settings.getNPAFileData(), "11");
}

TEST_F(NpaFile, IsEmptyWithoutADigitUnreadableOrAFolder) {
  for (const std::string& path : {write("xyz"), folder.path(""), std::string(Unreadable)}) {
    const auto output = outputOf([&] { EXPECT_EQ(settings.parseNPAFile(path.c_str()), 0); });
    EXPECT_EQ(output.out, "npaFileData: (0 bytes) \n");
    EXPECT_EQ(settings.getNPAFileData(), "");
  }
}

TEST_F(NpaFile, MayHaveAMillionDigits) {
  const std::string digits(1U << 20U, '7');
  outputOf([&] { settings.parseNPAFile(write(digits).c_str()); });
  EXPECT_EQ(settings.getNPAFileData(), digits);
}

}  // namespace
