#include "testing/command_line.h"

#include <csignal>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/files.h"
#include "testing/output.h"
#include "testing/printer_run.h"
#include "testing/process.h"

// The real program's command line: the help text, missing arguments, the password prompt.

namespace {

using support::PrinterRun;
using support::runProcess;
using support::runWithPrinter;
using support::TerminalProcess;

constexpr int Aborted = 128 + SIGABRT;

TEST(Help, IsPrintedWithoutArguments) {
  const auto result = runProcess({ZVKCONFIG});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, support::HelpText);
  EXPECT_EQ(result.err, "");
}

TEST(Help, IsPrintedByTheSwitchAfterCreatingTheGenerator) {
  const auto result = runProcess({ZVKCONFIG, "-h"});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.out, support::HelpText);
  EXPECT_EQ(result.err, support::TransportReleased);
}

TEST(MissingArguments, AbortTheProgram) {
  EXPECT_EQ(runProcess({ZVKCONFIG, "-c"}).status, Aborted);
}

TEST(PasswordPrompt, ReadsALineFromAPipe) {
  const PrinterRun run =
      runWithPrinter({}, {"-c", "--security=WPA", "--ssid=x", "{}"}, "secret\nrest\n");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "Please provide the password:\n\n");
  ASSERT_EQ(run.received.size(), 1U);
  EXPECT_TRUE(
      run.received[0].ends_with(" 28 08 00 00 02 78 00 28 11 00 00 07 73 65 63 72 65 74 00"))
      << run.received[0];
}

TEST(PasswordPrompt, EndsAtTheEndOfInput) {
  const PrinterRun run = runWithPrinter({}, {"-c", "--security=WEP", "--ssid=x", "{}"}, "abc");
  EXPECT_EQ(run.status, 0);
  ASSERT_EQ(run.received.size(), 1U);
  EXPECT_TRUE(run.received[0].ends_with(" 28 09 00 00 04 61 62 63 00")) << run.received[0];
}

TEST(PasswordPrompt, IsRepeatedForTheBareAttempt) {
  const PrinterRun run = runWithPrinter({"--refuse-wrapped"},
                                        {"-c", "--security=WPA", "--ssid=x", "{}"}, "one\ntwo\n");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "Please provide the password:\n\nPlease provide the password:\n\n");
  ASSERT_EQ(run.received.size(), 2U);
  EXPECT_TRUE(run.received[0].ends_with(" 28 11 00 00 04 6F 6E 65 00")) << run.received[0];
  EXPECT_TRUE(run.received[1].ends_with(" 28 11 00 00 04 74 77 6F 00")) << run.received[1];
}

std::vector<std::string> promptingCommand() {
  return support::printerCommand({"--log=/dev/null"}, {"-c", "--security=WPA", "--ssid=x", "{}"});
}

TEST(PasswordPrompt, DoesNotEchoThePassword) {
  TerminalProcess program(promptingCommand());
  ASSERT_TRUE(program.waitFor("Please provide the password:"));
  ASSERT_TRUE(support::eventually([&] { return !program.echoes(); }));
  program.type("hidden\n");
  EXPECT_EQ(program.waitForEnd(), 0);
  EXPECT_TRUE(program.echoes());
  EXPECT_EQ(program.shown().find("hidden"), std::string::npos) << program.shown();
  EXPECT_NE(program.shown().find("Please provide the password:\r\n\r\n"), std::string::npos)
      << program.shown();
}

TEST(PasswordPrompt, ReadsTheTerminalAgainAfterAnEndOfInput) {
  const support::TemporaryFolder folder;
  const std::string log = folder.path("log");
  TerminalProcess program(support::withFasterClock(
      support::printerCommand({"--refuse-wrapped", "--show-secrets", "--log=" + log},
                              {"-c", "--security=WPA", "--ssid=x", "{}"})));
  ASSERT_TRUE(program.waitFor("Please provide the password:"));
  ASSERT_TRUE(support::eventually([&] { return !program.echoes(); }));
  const std::string endOfInput = "\x04";
  program.type(endOfInput);
  ASSERT_TRUE(program.waitFor("Basic config ret = -1"));
  ASSERT_TRUE(support::eventually([&] { return !program.echoes(); }));
  program.type("two\n");
  EXPECT_EQ(program.waitForEnd(), 0);
  const std::string messages = support::fileContent(log);
  EXPECT_NE(messages.find(" 28 11 00 00 01 00\n"), std::string::npos) << messages;
  EXPECT_NE(messages.find(" 28 11 00 00 04 74 77 6F 00\n"), std::string::npos) << messages;
}

TEST(PasswordPrompt, RestoresTheEchoIfInterrupted) {
  TerminalProcess program(promptingCommand());
  ASSERT_TRUE(program.waitFor("Please provide the password:"));
  ASSERT_TRUE(support::eventually([&] { return !program.echoes(); }));
  const std::string interruptCharacter = "\x03";
  program.type(interruptCharacter);
  EXPECT_EQ(program.waitForEnd(), 128 + SIGINT);
  EXPECT_TRUE(program.echoes());
}

TEST(PasswordPrompt, RestoresTheEchoIfTerminated) {
  TerminalProcess program(promptingCommand());
  ASSERT_TRUE(program.waitFor("Please provide the password:"));
  ASSERT_TRUE(support::eventually([&] { return !program.echoes(); }));
  ::kill(program.pid(), SIGTERM);  // zvkprinter forwards the signal to zvkconfig
  EXPECT_EQ(program.waitForEnd(), 128 + SIGTERM);
  EXPECT_TRUE(program.echoes());
}

}  // namespace
