#include "session/settings_file.h"

#include <array>
#include <cstdint>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "profiles.h"
#include "testing/files.h"
#include "testing/open_descriptors.h"
#include "util/unique_fd.h"

namespace {

using profiles::NoProblem;
using profiles::Problem;
using profiles::problemOf;
using session::ProfileReader;
using Lines = std::vector<std::pair<std::string, std::string>>;

constexpr const char* KeyList =
    "ssid, security, mode, channel, encryption, wep-auth, user, eap, inner, password-from, "
    "password";

/// Returns keys and values of a text.
Lines linesOf(std::string_view text) {
  Lines lines;
  session::forEachSetting(text, "f", [&](const session::SettingLine& line) {
    lines.emplace_back(line.key, line.value);
  });
  return lines;
}

/// Returns the error of a settings file with this text.
Problem errorIn(std::string_view text) {
  ProfileReader reader;
  return problemOf([&] { reader.readText(text, "f", false); });
}

// --- Lines --------------------------------------------------------------------------------------

TEST(SettingsText, HasASettingPerLine) {
  const Lines lines = {{"ssid", "home"}, {"mode", "ad-hoc"}};
  EXPECT_EQ(linesOf("ssid=home\nmode=ad-hoc\n"), lines);
  EXPECT_EQ(linesOf("ssid=home\r\nmode=ad-hoc\r\n"), lines);
  EXPECT_EQ(linesOf("ssid=home\nmode=ad-hoc"), lines);
  EXPECT_EQ(linesOf("ssid=home\r\nmode=ad-hoc\r"), lines);
  EXPECT_EQ(linesOf("\xEF\xBB\xBFssid=home\nmode=ad-hoc"), lines);
  EXPECT_EQ(linesOf("\n \t\r\n# comment\n  # mode=infrastructure\nssid=home\n\nmode=ad-hoc\n\n"),
            lines);
}

TEST(SettingsText, MayBeEmpty) {
  EXPECT_EQ(linesOf(""), Lines());
  EXPECT_EQ(linesOf("\xEF\xBB\xBF"), Lines());
}

TEST(SettingsText, HasAByteOrderMarkOnlyAtItsStart) {
  EXPECT_EQ(errorIn("ssid=home\n\xEF\xBB\xBFmode=ad-hoc\n"), (Problem{"f:2", "", KeyList}));
}

TEST(SettingsText, KeepsEverythingAfterTheFirstEqualsSign) {
  EXPECT_EQ(linesOf("ssid= a=b # c \n"), (Lines{{"ssid", " a=b # c "}}));
  EXPECT_EQ(linesOf(" ssid \t=\n"), (Lines{{"ssid", ""}}));
  EXPECT_EQ(linesOf("ssid=a\rb\r\r\n"), (Lines{{"ssid", "a\rb\r"}}));
}

TEST(SettingsText, TrimsValues) {
  ProfileReader reader;
  reader.readText(" ssid = \ttwo  words #1\t \n\tsecurity\t=\tOPEN \r\n", "f", false);
  EXPECT_EQ(reader.finish().ssid, "two  words #1");
}

TEST(SettingsText, IsTheSameWithEitherLineEnd) {
  const std::string lf =
      "# office\nssid=office\nsecurity=802.1x\nuser=printer\neap=peap ttls\ninner=MSCHAPV2\n"
      "encryption=AES\npassword-from=file:/run/key\n";
  std::string crlf;
  for (const char c : lf) {
    crlf += c == '\n' ? "\r\n" : std::string(1, c);
  }
  ProfileReader unixReader;
  unixReader.readText(lf, "f", false);
  ProfileReader windowsReader;
  windowsReader.readText(crlf, "f", false);
  const session::Profile profile = unixReader.finish();
  EXPECT_EQ(profile, windowsReader.finish());
  EXPECT_EQ(unixReader.secretSource(), windowsReader.secretSource());
  EXPECT_EQ(unixReader.secretSource().path, "/run/key");
  EXPECT_EQ(profile, (session::Profile{.ssid = "office",
                                       .security = session::Security::Enterprise,
                                       .encryption = "aes",
                                       .user = "printer",
                                       .eapMethods = {"peap", "ttls"},
                                       .innerMethod = "mschapv2"}));
}

TEST(SettingsText, NamesTheLineOfAnError) {
  EXPECT_EQ(errorIn("ssid=home\n\nsecurity = WPA3 \n"),
            (Problem{"f:3: security", "WPA3",
                     "open, wep, wpa or 802.1x (the adapter does not support WPA3)"}));
  EXPECT_EQ(errorIn("\n# x\nsid=home\n"), (Problem{"f:3: sid", "", KeyList}));
  EXPECT_EQ(errorIn("SSID=home\n"), (Problem{"f:1: SSID", "", KeyList}));
  EXPECT_EQ(errorIn("=home\n"), (Problem{"f:1", "", KeyList}));
  EXPECT_EQ(errorIn("ssid=a\nssid home\n"), (Problem{"f:2", "", "a line KEY=VALUE"}));
  EXPECT_EQ(errorIn("ssid=a\nmode=ad-hoc\nssid=a\n"),
            (Problem{"f:3: ssid", "", "each setting only once"}));
  EXPECT_EQ(errorIn("ssid=\n"), (Problem{"f:1: ssid", "", "a network name of 1 to 32 bytes"}));
}

TEST(SettingsText, ShowsNoKeyThatIsNone) {
  const std::string longest(20, 'k');
  EXPECT_EQ(errorIn(longest + "=x"), (Problem{"f:1: " + longest, "", KeyList}));
  EXPECT_EQ(errorIn(longest + "k=x"), (Problem{"f:1", "", KeyList}));
  EXPECT_EQ(errorIn("s3cret=x"), (Problem{"f:1", "", KeyList}));
  EXPECT_EQ(errorIn("two words=x"), (Problem{"f:1", "", KeyList}));
  EXPECT_EQ(errorIn("\x1B[2J=x"), (Problem{"f:1", "", KeyList}));
}

// --- Limits -------------------------------------------------------------------------------------

TEST(SettingsText, HasLinesOfAtMost4096Bytes) {
  for (const char* end : {"", "\n", "\r\n"}) {
    EXPECT_EQ(errorIn("#" + std::string(4094, 'x') + end), NoProblem);
    EXPECT_EQ(errorIn("#" + std::string(4095, 'x') + end), NoProblem);
    EXPECT_EQ(errorIn("\n#" + std::string(4096, 'x') + end),
              (Problem{"f:2", "", "a line of at most 4096 bytes"}));
  }
}

TEST(SettingsText, HasAtMost65536Bytes) {
  std::string text;
  while (text.size() < 65536) {
    text += "#" + std::string(62, 'x') + "\n";
  }
  ASSERT_EQ(text.size(), 65536U);
  EXPECT_EQ(errorIn(std::string_view(text).substr(0, 65535)), NoProblem);
  EXPECT_EQ(errorIn(text), NoProblem);
  const Problem tooLarge = {"f", "", "a settings file of at most 65536 bytes"};
  EXPECT_EQ(errorIn(text + "\n"), tooLarge);
}

TEST(SettingsText, HasNoZeroBytes) {
  const Problem problem = {"f:2", "", "text without zero bytes"};
  EXPECT_EQ(errorIn(std::string("ssid=home\nmode=ad-hoc\0\n", 22)), problem);
  EXPECT_EQ(errorIn(std::string("ssid=home\n# \0\n", 14)), problem);
  EXPECT_EQ(errorIn(std::string("s\0s\0", 4)).subject, "f:1");
}

// --- Files --------------------------------------------------------------------------------------

class SettingsFiles : public testing::Test {
 protected:
  /// Writes a settings file with this mode and returns its path.
  std::string file(std::string_view content, mode_t mode = 0644) const {
    const std::string path = folder.write("f.conf", content);
    EXPECT_EQ(::chmod(path.c_str(), mode), 0);
    return path;
  }

  static Problem errorOf(const std::string& path) {
    ProfileReader reader;
    return problemOf([&] { reader.readFile(path); });
  }

  support::TemporaryFolder folder;
};

TEST_F(SettingsFiles, AreRead) {
  ProfileReader reader;
  reader.readFile(file("ssid=home\r\nsecurity=open\r\n"));
  EXPECT_EQ(reader.finish().ssid, "home");
}

TEST_F(SettingsFiles, HaveTheirPathInErrors) {
  const std::string path = file("ssid=home\nmode=managed\n");
  EXPECT_EQ(errorOf(path), (Problem{path + ":2: mode", "managed", "infrastructure or ad-hoc"}));
}

TEST_F(SettingsFiles, MustExist) {
  const std::string path = folder.path("missing.conf");
  EXPECT_EQ(errorOf(path),
            (Problem{path, "No such file or directory", "a settings file that can be read"}));
  EXPECT_EQ(errorOf(""),
            (Problem{"", "No such file or directory", "a settings file that can be read"}));
}

TEST_F(SettingsFiles, MustBeRegular) {
  const std::string fifo = folder.path("fifo");
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  const std::string link = folder.path("link");
  ASSERT_EQ(::symlink(fifo.c_str(), link.c_str()), 0);
  for (const std::string& path : {fifo, link, folder.path("."), std::string("/dev/null")}) {
    EXPECT_EQ(errorOf(path), (Problem{path, "", "a regular file with settings"}));
  }
}

TEST_F(SettingsFiles, AreNotOpenedUnlessTheyAreRegular) {
  const std::string fifo = folder.path("fifo");
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  const std::string regular = file("ssid=home\n");
  const util::UniqueFd watch(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  ASSERT_GE(::inotify_add_watch(watch.get(), fifo.c_str(), IN_OPEN), 0);
  std::array<char, 4096> events;
  EXPECT_NE(errorOf(fifo), NoProblem);
  EXPECT_EQ(::read(watch.get(), events.data(), events.size()), -1);
  // Check the watch itself: it reports a file that is opened.
  ASSERT_GE(::inotify_add_watch(watch.get(), regular.c_str(), IN_OPEN), 0);
  EXPECT_EQ(errorOf(regular), NoProblem);
  EXPECT_GT(::read(watch.get(), events.data(), events.size()), 0);
}

TEST_F(SettingsFiles, MayBeALinkToARegularFile) {
  const std::string path = file("ssid=home\n");
  const std::string link = folder.path("link");
  ASSERT_EQ(::symlink(path.c_str(), link.c_str()), 0);
  EXPECT_EQ(errorOf(link), NoProblem);
}

TEST_F(SettingsFiles, AreRefusedIfTheyAreTooLarge) {
  std::string text(65536, '\n');
  EXPECT_EQ(errorOf(file(text)), NoProblem);
  const std::string path = file(text + "\n");
  EXPECT_EQ(errorOf(path), (Problem{path, "", "a settings file of at most 65536 bytes"}));
  EXPECT_EQ(errorOf(file(std::string(1'000'000, '\n'))),
            (Problem{path, "", "a settings file of at most 65536 bytes"}));
}

// A file with a hole, so that it takes no space. Its size does not fit in 32 bits.
TEST_F(SettingsFiles, AreRefusedIfTheyHaveFourGibibytes) {
  const std::string path = file("ssid=home\n");
  std::filesystem::resize_file(path, (std::uint64_t{1} << 32U) + 10);
  EXPECT_EQ(errorOf(path), (Problem{path, "", "a settings file of at most 65536 bytes"}));
}

TEST_F(SettingsFiles, MayHaveATimeAfter2038) {
  const std::string path = file("ssid=home\n");
  constexpr std::time_t after2038 = 4'102'444'800;
  const std::array<timespec, 2> times = {{{after2038, 0}, {after2038, 0}}};
  ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times.data(), 0), 0);
  EXPECT_EQ(errorOf(path), NoProblem);
}

TEST_F(SettingsFiles, AreClosed) {
  const long before = support::openDescriptors();
  EXPECT_EQ(errorOf(file("ssid=home\n")), NoProblem);
  EXPECT_NE(errorOf(file("ssid\n")), NoProblem);
  EXPECT_EQ(support::openDescriptors(), before);
}

TEST_F(SettingsFiles, MayContainAPasswordIfOnlyTheOwnerCanReadThem) {
  constexpr const char* text = "password=hunter22\n";
  for (const mode_t mode : {0600U, 0400U, 0700U}) {
    EXPECT_EQ(errorOf(file(text, mode)), NoProblem) << mode;
  }
  for (const mode_t mode : {0640U, 0620U, 0610U, 0604U, 0602U, 0601U, 0644U}) {
    const std::string path = file(text, mode);
    EXPECT_EQ(errorOf(path), (Problem{path + ":1: password", "",
                                      "a settings file of your own that nobody else can read "
                                      "(chmod 600), because it contains a password"}))
        << mode;
    EXPECT_EQ(errorOf(file("ssid=home\n", mode)), NoProblem) << mode;
  }
}

TEST(PrivateFile, BelongsToTheUser) {
  EXPECT_TRUE(session::isPrivateFile(S_IFREG | 0600, 1000, 1000, nullptr));
  EXPECT_FALSE(session::isPrivateFile(S_IFREG | 0640, 1000, 1000, nullptr));
  EXPECT_FALSE(session::isPrivateFile(S_IFREG | 0604, 1000, 1000, nullptr));
  EXPECT_FALSE(session::isPrivateFile(S_IFREG | 0600, 1001, 1000, nullptr));
  EXPECT_FALSE(session::isPrivateFile(S_IFREG | 0600, 0, 1000, nullptr));
  // SUDO_UID, the last argument, is ignored unless the user is root.
  EXPECT_FALSE(session::isPrivateFile(S_IFREG | 0600, 1001, 1000, "1001"));
}

TEST(PrivateFile, BelongsToRootOrTheUserWhoCalledSudo) {
  EXPECT_TRUE(session::isPrivateFile(S_IFREG | 0600, 0, 0, nullptr));
  EXPECT_TRUE(session::isPrivateFile(S_IFREG | 0600, 0, 0, "1000"));
  EXPECT_TRUE(session::isPrivateFile(S_IFREG | 0600, 1000, 0, "1000"));
  EXPECT_FALSE(session::isPrivateFile(S_IFREG | 0640, 1000, 0, "1000"));
  EXPECT_FALSE(session::isPrivateFile(S_IFREG | 0600, 1001, 0, "1000"));
  for (const char* text : {static_cast<const char*>(nullptr), "", "x", "1000x", "-1000", " 1000"}) {
    EXPECT_FALSE(session::isPrivateFile(S_IFREG | 0600, 1000, 0, text));
  }
}

}  // namespace
