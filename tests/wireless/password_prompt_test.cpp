#include "wireless/password_prompt.h"

#include <csignal>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include "testing/output.h"
#include "testing/pseudo_terminal.h"
#include "testing/rows.h"
#include "testing/standard_input.h"

using support::Output;
using support::outputOf;
using support::PseudoTerminal;
using support::StandardInput;

namespace {

const std::string Prompt = "Please provide the password:";

/// Prompts for a password and prints it.
void printPassword() {
  const std::string password = promptForPassword();
  std::printf("[%s]", password.c_str());
}

bool ended(int status) {
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

// --- Input that is not a terminal ---------------------------------------------------------------

namespace {

struct InputRow : support::Row {
  std::string input;
  std::string password;
};

class PasswordInput : public testing::TestWithParam<InputRow> {};

}  // namespace

TEST_P(PasswordInput, IsReadUpToTheLineEnd) {
  const StandardInput input(GetParam().input);
  std::string password = "untouched";
  EXPECT_EQ(outputOf([&] { password = promptForPassword(); }), (Output{Prompt + "\n\n", ""}));
  EXPECT_EQ(password, GetParam().password);
}

INSTANTIATE_TEST_SUITE_P(Inputs, PasswordInput,
                         testing::Values(InputRow{{"Line"}, "secret\n", "secret"},
                                         InputRow{{"OnlyTheFirstLine"}, "secret\nmore\n", "secret"},
                                         InputRow{{"EmptyLine"}, "\nmore\n", ""},
                                         InputRow{{"BlanksAreKept"}, " a b \t\n", " a b \t"},
                                         InputRow{{"CarriageReturnIsKept"}, "a\r\n", "a\r"},
                                         InputRow{{"TopBitSet"}, "\xFF\xC3\xA4\n", "\xFF\xC3\xA4"},
                                         InputRow{
                                             {"EndOfInputWithoutALineEnd"}, "secret", "secret"},
                                         InputRow{{"EmptyInput"}, "", ""}),
                         support::rowName);

TEST(PasswordPrompt, ReadsTheNextLineInTheNextPrompt) {
  const StandardInput input("first\nsecond\n");
  const Output output = outputOf([] {
    printPassword();
    printPassword();
  });
  EXPECT_EQ(output.out, Prompt + "\n\n[first]" + Prompt + "\n\n[second]");
}

// --- A terminal ---------------------------------------------------------------------------------

TEST(PasswordTerminal, DoesNotEchoThePasswordAndRestoresTheEcho) {
  PseudoTerminal terminal;
  const termios before = terminal.attributes();
  terminal.run(printPassword);
  EXPECT_TRUE(terminal.waitForOutput(Prompt));
  ASSERT_TRUE(terminal.waitForEchoOff());
  const termios during = terminal.attributes();
  EXPECT_EQ(during.c_lflag, before.c_lflag & ~static_cast<tcflag_t>(ECHO));
  EXPECT_EQ(during.c_iflag, before.c_iflag);
  EXPECT_EQ(during.c_oflag, before.c_oflag);
  terminal.type("secret\n");
  EXPECT_TRUE(ended(terminal.wait()));
  EXPECT_EQ(terminal.output(), Prompt + "\n\n[secret]");
  EXPECT_EQ(terminal.shown(), "");
  EXPECT_EQ(terminal.attributes().c_lflag, before.c_lflag);
}

TEST(PasswordTerminal, DiscardsInputTypedBeforeTheEchoIsOff) {
  PseudoTerminal terminal;
  terminal.typeAhead("early\n");
  terminal.run(printPassword);
  ASSERT_TRUE(terminal.waitForEchoOff());
  terminal.type("late\n");
  EXPECT_TRUE(ended(terminal.wait()));
  EXPECT_EQ(terminal.output(), Prompt + "\n\n[late]");
}

TEST(PasswordTerminal, DiscardsInputTypedAfterThePassword) {
  PseudoTerminal terminal;
  terminal.run([] {
    printPassword();
    int waiting = -1;
    ::ioctl(STDIN_FILENO, FIONREAD, &waiting);
    std::printf("%d waiting", waiting);
  });
  ASSERT_TRUE(terminal.waitForEchoOff());
  terminal.type("first\nlost\n");
  EXPECT_TRUE(ended(terminal.wait()));
  EXPECT_EQ(terminal.output(), Prompt + "\n\n[first]0 waiting");
}

TEST(PasswordTerminal, TreatsTheEndOfInputAsTheEndOfThePassword) {
  PseudoTerminal terminal;
  terminal.run(printPassword);
  ASSERT_TRUE(terminal.waitForEchoOff());
  terminal.type("\x04");
  EXPECT_TRUE(ended(terminal.wait()));
  EXPECT_EQ(terminal.output(), Prompt + "\n\n[]");
  EXPECT_TRUE(terminal.echoes());
}

TEST(PasswordTerminal, LeavesTheEchoOffIfItWasOff) {
  PseudoTerminal terminal;
  terminal.switchEchoOff();
  terminal.run(printPassword);
  ASSERT_TRUE(terminal.waitForDiscardedInput());
  terminal.type("secret\n");
  EXPECT_TRUE(ended(terminal.wait()));
  EXPECT_EQ(terminal.output(), Prompt + "\n\n[secret]");
  EXPECT_FALSE(terminal.echoes());
}

TEST(PasswordTerminal, RestoresTheEchoWhileTheProgramIsStopped) {
  PseudoTerminal terminal;
  terminal.run(printPassword);
  for (int stop = 0; stop < 2; ++stop) {
    ASSERT_TRUE(terminal.waitForEchoOff());
    terminal.signal(SIGTSTP);
    ASSERT_TRUE(terminal.waitForStop());
    EXPECT_TRUE(terminal.echoes());
    terminal.signal(SIGCONT);
  }
  ASSERT_TRUE(terminal.waitForEchoOff());
  terminal.type("secret\n");
  EXPECT_TRUE(ended(terminal.wait()));
  EXPECT_EQ(terminal.output(), Prompt + "\n\n[secret]");
  EXPECT_TRUE(terminal.echoes());
}

// --- Signals ------------------------------------------------------------------------------------

namespace {

struct SignalRow : support::Row {
  int signal;
};

class PasswordSignal : public testing::TestWithParam<SignalRow> {
 protected:
  PseudoTerminal terminal;
};

}  // namespace

TEST_P(PasswordSignal, RestoresTheEchoAndEndsTheProgram) {
  terminal.run(printPassword);
  ASSERT_TRUE(terminal.waitForEchoOff());
  terminal.signal(GetParam().signal);
  const int status = terminal.wait();
  EXPECT_TRUE(WIFSIGNALED(status));
  EXPECT_EQ(WTERMSIG(status), GetParam().signal);
  EXPECT_TRUE(terminal.echoes());
}

TEST_P(PasswordSignal, StaysIgnoredIfItWas) {
  terminal.run([] {
    std::signal(GetParam().signal, SIG_IGN);
    printPassword();
  });
  ASSERT_TRUE(terminal.waitForEchoOff());
  terminal.signal(GetParam().signal);
  EXPECT_FALSE(terminal.echoes());
  terminal.type("secret\n");
  EXPECT_TRUE(ended(terminal.wait()));
  EXPECT_EQ(terminal.output(), Prompt + "\n\n[secret]");
  EXPECT_TRUE(terminal.echoes());
}

TEST_P(PasswordSignal, HasItsPreviousActionAfterThePrompt) {
  terminal.run([] {
    std::signal(GetParam().signal, [](int) { std::_Exit(42); });
    printPassword();
    std::raise(GetParam().signal);
  });
  ASSERT_TRUE(terminal.waitForEchoOff());
  terminal.type("secret\n");
  const int status = terminal.wait();
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 42);
}

INSTANTIATE_TEST_SUITE_P(Signals, PasswordSignal,
                         testing::Values(SignalRow{{"Interrupt"}, SIGINT},
                                         SignalRow{{"Terminate"}, SIGTERM},
                                         SignalRow{{"HangUp"}, SIGHUP},
                                         SignalRow{{"Quit"}, SIGQUIT}),
                         support::rowName);
