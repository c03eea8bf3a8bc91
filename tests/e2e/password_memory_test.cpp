// Searches the memory of the running program for a typed password, and for a sent packet with a
// password.

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "testing/files.h"
#include "testing/printer_run.h"
#include "testing/process.h"
#include "testing/rows.h"

namespace {

using support::TerminalProcess;

const std::string Prompt = "Please provide the password:";

/// This password is so short that std::string would store it inside the object.
constexpr std::string_view ShortPassword = "kQ7-vT2x9";
const std::string LongPassword = "wZ8-" + std::string(300, 'y') + "-mR3";

/// Returns the process that runs `program` with `word` in an argument, or 0 if there is none.
pid_t programWith(std::string_view word, const char* program = ZVKCONFIG) {
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    std::ifstream file(entry.path() / "cmdline", std::ios::binary);
    std::string arguments;
    std::getline(file, arguments, '\0');
    if (arguments != program) {
      continue;
    }
    while (std::getline(file, arguments, '\0')) {
      if (arguments.find(word) != std::string::npos) {
        return static_cast<pid_t>(std::stol(entry.path().filename()));
      }
    }
  }
  return 0;
}

/// Returns true if the writable memory of the process contains the text.
bool memoryHolds(pid_t process, std::string_view text) {
  const std::string folder = "/proc/" + std::to_string(process);
  std::ifstream maps(folder + "/maps");
  std::ifstream memory(folder + "/mem", std::ios::binary);
  EXPECT_TRUE(maps.is_open() && memory.is_open());
  for (std::string line; std::getline(maps, line);) {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    char dash = 0;
    std::string access;
    std::istringstream(line) >> std::hex >> begin >> dash >> end >> access;
    if (!access.starts_with("rw")) {
      continue;
    }
    std::string content(static_cast<std::size_t>(end - begin), '\0');
    memory.clear();
    memory.seekg(static_cast<std::streamoff>(begin));
    memory.read(content.data(), static_cast<std::streamsize>(content.size()));
    if (content.find(text) != std::string::npos) {
      return true;
    }
  }
  return false;
}

/// Returns the command line of a program with the emulated printer. The clock runs twice as fast.
std::vector<std::string> commandLine(const std::vector<std::string>& options,
                                     const std::vector<std::string>& arguments,
                                     const char* program = ZVKCONFIG) {
  return support::withFasterClock(support::printerCommand(options, arguments, program), 2);
}

class PasswordInMemory : public testing::TestWithParam<std::string> {};

TEST_P(PasswordInMemory, IsClearedAfterTheRequest) {
  const support::TemporaryFolder folder;
  const std::string ssid = folder.path("s");  // no other run has it
  TerminalProcess program(commandLine({"--refuse-wrapped", "--log=/dev/null"},
                                      {"-c", "--security=WPA", "--ssid=" + ssid, "{}"}));
  ASSERT_TRUE(program.waitFor(Prompt));
  ASSERT_TRUE(support::eventually([&] { return !program.echoes(); }));
  const pid_t process = programWith(ssid);
  ASSERT_GT(process, 0);
  program.type(GetParam() + "\n");
  ASSERT_TRUE(support::eventually([&] { return memoryHolds(process, GetParam()); }));

  ASSERT_TRUE(program.waitFor("Basic config ret = -1"));
  ASSERT_TRUE(support::eventually([&] { return !program.echoes(); }));
  EXPECT_FALSE(memoryHolds(process, GetParam()));
  EXPECT_FALSE(memoryHolds(process, std::string_view(GetParam()).substr(0, 8)));
  program.type("other\n");
  EXPECT_EQ(program.waitForEnd(), 0);
}

INSTANTIATE_TEST_SUITE_P(Passwords, PasswordInMemory,
                         testing::Values(std::string(ShortPassword), LongPassword));

TEST(AuthenticationPasswordInMemory, IsClearedWhenTheNextPacketIsBuilt) {
  const support::TemporaryFolder folder;
  const std::string mark = "--cer-path=" + folder.path("x");  // no other run has it
  const std::string password(ShortPassword);
  // The second packet is too short to overwrite the password of the first one.
  TerminalProcess program(commandLine(
      {"--log=/dev/null"},
      {"-ca", "--security=802.1x", "--802-auth-ext=PEAP", "--802-auth-inner=PAP",
       "--802-user=" + std::string(30, 'u'), "--802-pwd=" + password, "--ssid=s", mark, "{}"}));
  // The command line contains the password too, so search for the whole setting object.
  const std::string object = std::string("\x2A\x03\x00\x00\x0A", 5) + password;
  pid_t process = 0;
  ASSERT_TRUE(support::eventually([&] {
    process = programWith(mark);
    return process > 0 && memoryHolds(process, object);
  }));
  // The program logs this line while it builds the second packet.
  ASSERT_TRUE(program.waitFor("D [ZVK] SSID = s"));
  EXPECT_FALSE(memoryHolds(process, object));
  EXPECT_EQ(program.waitForEnd(), 0);
}

class PasswordInMemoryOfZvkwifi : public testing::TestWithParam<std::string> {};

TEST_P(PasswordInMemoryOfZvkwifi, IsClearedOnceItIsSent) {
  const support::TemporaryFolder folder;
  const std::string trace = "--trace=" + folder.path("t");  // no other run has it
  TerminalProcess program(
      commandLine({"--ssid=old", "--ip-after=1000", "--log=/dev/null"},
                  {"set", "--security=wpa", "--ssid=home", "--wait=10", trace, "{}"}, ZVKWIFI));
  ASSERT_TRUE(program.waitFor("Passphrase or key: "));
  ASSERT_TRUE(support::eventually([&] { return !program.echoes(); }));
  const pid_t process = programWith(trace, ZVKWIFI);
  ASSERT_GT(process, 0);
  program.type(GetParam() + "\n");
  ASSERT_TRUE(support::eventually([&] { return memoryHolds(process, GetParam()); }));

  ASSERT_TRUE(program.waitFor("Waiting until the printer is in the network"));
  EXPECT_FALSE(memoryHolds(process, GetParam()));
  EXPECT_FALSE(memoryHolds(process, std::string_view(GetParam()).substr(0, 8)));
  EXPECT_EQ(program.waitForEnd(), 8);
  EXPECT_EQ(program.shown().find(GetParam()), std::string::npos);
  EXPECT_EQ(support::fileContent(folder.path("t")).find(GetParam()), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Secrets, PasswordInMemoryOfZvkwifi,
                         testing::Values(std::string(ShortPassword),
                                         "wZ8-" + std::string(50, 'y') + "-mR3"));

struct SourceRow : support::Row {
  const char* setting;  ///< names the source; FILE stands for a file, also open as descriptor 3
  const char* content;  ///< the file's content; SECRET stands for the secret
};

class SecretFromAFile : public testing::TestWithParam<SourceRow> {};

std::string replaced(std::string text, std::string_view word, const std::string& value) {
  const std::size_t place = text.find(word);
  return place == std::string::npos ? text : text.replace(place, word.size(), value);
}

TEST_P(SecretFromAFile, IsNotInMemoryOnceItIsSent) {
  const std::string secret = "wZ8-" + std::string(50, 'y') + "-mR3";
  const support::TemporaryFolder folder;
  const std::string file = folder.write("secret", replaced(GetParam().content, "SECRET", secret));
  std::filesystem::permissions(file, std::filesystem::perms::owner_read);
  const std::string trace = "--trace=" + folder.path("t");
  TerminalProcess program(commandLine(
      {"--ssid=old", "--ip-after=1000", "--log=/dev/null"},
      {"-c", "exec \"$0\" \"$@\" 3<" + file, ZVKWIFI, "set", "--security=wpa", "--ssid=home",
       "--wait=10", replaced(GetParam().setting, "FILE", file), trace, "{}"},
      "sh"));
  ASSERT_TRUE(program.waitFor("Waiting until the printer is in the network"));
  const pid_t process = programWith(trace, ZVKWIFI);
  ASSERT_GT(process, 0);
  EXPECT_FALSE(memoryHolds(process, secret));
  EXPECT_FALSE(memoryHolds(process, std::string_view(secret).substr(0, 8)));
  EXPECT_EQ(program.waitForEnd(), 8);
  EXPECT_EQ(program.shown().find(secret), std::string::npos);
  EXPECT_EQ(support::fileContent(folder.path("t")).find(secret), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Sources, SecretFromAFile,
    testing::Values(SourceRow{{"File"}, "--password-from=file:FILE", "SECRET\n"},
                    SourceRow{{"Descriptor"}, "--password-from=fd:3", "SECRET\n"},
                    SourceRow{{"SettingsFile"}, "--from=FILE", "password=SECRET\n"}),
    support::rowName);

}  // namespace
