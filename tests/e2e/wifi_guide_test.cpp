#include <csignal>
#include <gtest/gtest.h>
#include <string>

#include "e2e/wifi_dialogue.h"
#include "e2e/wifi_document.h"
#include "testing/files.h"
#include "testing/process.h"

// Tests of zvkwifi without a command: its questions, the answers, and signals.

namespace {

using e2e::Dialogue;
using e2e::isHidden;
using e2e::joined;
using e2e::Line;
using e2e::Lines;
using e2e::Networks;
using e2e::NotConfirmed;
using e2e::NothingSent;
using e2e::ToSecret;
using e2e::WholeDialogue;
using e2e::Words;
using support::TerminalProcess;

constexpr const char* EndOfInput = "\x04";
constexpr const char* Interrupt = "\x03";
constexpr const char* Suspend = "\x1a";

const Lines ToMethods = {{"Device [/dev/usb/lp0]: ", ""},
                         {"Number [1]: ", "4"},
                         {"Number [2]: ", ""},
                         {"User: ", "anna"}};

TEST(WifiGuide, PutsThePrinterIntoAnOfferedNetwork) {
  Dialogue dialogue;
  ASSERT_TRUE(dialogue.answer(WholeDialogue));
  EXPECT_EQ(dialogue.waitForEnd(), 0) << dialogue.terminal().shown();
  EXPECT_TRUE(dialogue.hasShown("  1) home (this computer's network)\r\n  2) neighbour\r\n"));
  EXPECT_TRUE(dialogue.hasShown("Network:               home\r\n"));
  EXPECT_TRUE(dialogue.hasShown("Length of the secret:  10\r\n"));
  EXPECT_TRUE(dialogue.hasShown("is in the network \"home\" with the address 192.168.1.20."));
  EXPECT_FALSE(dialogue.hasShown("a secret 1"));
  EXPECT_TRUE(dialogue.gotSettings()) << dialogue.packets();
  EXPECT_TRUE(dialogue.terminal().echoes());
}

TEST(WifiGuide, TakesATypedNameIfNmcliFails) {
  Dialogue dialogue({}, "exit 8");
  ASSERT_TRUE(dialogue.answer({{"Device [/dev/usb/lp0]: ", "/dev/usb/lp0"},
                               {"Name of the network: ", ""},
                               {"Expected a network name"},
                               {"Name of the network: ", std::string(33, 'x')},
                               {"Name of the network: ", "typed"},
                               {"Number: ", ""},
                               {"Type a number from 1 to 4.\r\nNumber: ", "4"},
                               {"Send now? [y/N] ", "yes"}}));
  EXPECT_EQ(dialogue.waitForEnd(), 0);
  EXPECT_TRUE(dialogue.hasShown("is in the network \"typed\""));
}

TEST(WifiGuide, ExplainsThatTheAdapterDoesNotSupportWpa3) {
  Dialogue dialogue;
  ASSERT_TRUE(dialogue.answer({{"Device", ""},
                               {"Number [1]: ", "3"},
                               {"does not support"},
                               {"Number [1]: ", "6"},
                               {"Name of the network: ", "new"}}));
  ASSERT_TRUE(dialogue.waitFor("\"new\" accepts only WPA3"));
}

TEST(WifiGuide, AsksForUserAndMethodsOf8021x) {
  Dialogue dialogue;
  ASSERT_TRUE(dialogue.answer(joined(
      ToMethods,
      {{"Number [1]: ", ""}, {"Password: ", ""}, {"Expected a password of 1 to 254 bytes."}})));
  ASSERT_TRUE(dialogue.answer({{"Password: ", "pass word"}, {"Send now? [y/N] ", "n"}}));
  EXPECT_EQ(dialogue.waitForEnd(), NothingSent);
  EXPECT_TRUE(dialogue.hasShown("User:                  anna\r\n"));
  EXPECT_TRUE(dialogue.hasShown("Methods:               peap\r\n"));
  EXPECT_TRUE(dialogue.hasShown("Inner method:          mschapv2\r\n"));
}

TEST(WifiGuide, ExplainsWrongAnswersFor8021x) {
  Dialogue dialogue;
  Lines lines = ToMethods;
  lines.back().answer = std::string(32, 'u');
  ASSERT_TRUE(
      dialogue.answer(joined(lines, {{"Expected a user name of 1 to 31 bytes.\r\nUser: ", "anna"},
                                     {"Number [1]: ", "6"},
                                     {"Methods (", "eap"},
                                     {"Expected a list of"},
                                     {"Methods (", "ttls tls"},
                                     {"Inner method (", "md5"},
                                     {"Expected chap, mschap, mschapv2 or pap."},
                                     {"Inner method (", ""},
                                     {"Password: ", "p"},
                                     {"Send now? [y/N] ", ""}})));
  EXPECT_EQ(dialogue.waitForEnd(), NothingSent);
  EXPECT_TRUE(dialogue.hasShown("Methods:               ttls, tls\r\n"));
  EXPECT_TRUE(dialogue.hasShown("Inner method:          none\r\n"));
}

TEST(WifiGuide, AsksForNoPasswordOfTls) {
  Dialogue dialogue;
  ASSERT_TRUE(
      dialogue.answer(joined(ToMethods, {{"Number [1]: ", "5"}, {"Send now? [y/N] ", "n"}})));
  EXPECT_EQ(dialogue.waitForEnd(), NothingSent);
}

TEST(WifiGuide, AsksAgainAfterWrongAnswers) {
  Dialogue dialogue;
  ASSERT_TRUE(dialogue.answer({{"Device", "/dev/usb/lp7"},
                               {"There is no printer at /dev/usb/lp7."},
                               {"Press Enter to try again: ", ""},
                               {"Device", "lp7"},
                               {"There is no printer \"lp7\"."},
                               {"Device", ""},
                               {"Number [1]: ", "seven"},
                               {"Type a number from 1 to 6.\r\nNumber [1]: ", "2"},
                               {"Number [1]: ", "5"},
                               {"Type a number from 1 to 4.\r\nNumber [1]: ", "3"},
                               {"WEP key: ", "four"},
                               {"Expected 5 or 13 printable"}}));
  ASSERT_TRUE(dialogue.answer({{"WEP key: ", std::string(2000, 'x')}, {"too long for a secret"}}));
  ASSERT_TRUE(dialogue.answer({{"WEP key: ", "12345"},
                               {"Send now? [y/N] ", "maybe"},
                               {"Type y for yes or n for no.\r\nSend now? [y/N] ", "n"}}));
  EXPECT_EQ(dialogue.waitForEnd(), NothingSent);
  EXPECT_TRUE(dialogue.hasShown("Nothing was sent."));
  EXPECT_FALSE(dialogue.gotSettings()) << dialogue.packets();
}

TEST(WifiGuide, ExplainsWhyThePrinterDidNotJoin) {
  Dialogue dialogue({"--trouble-code=5"});
  ASSERT_TRUE(dialogue.answer(WholeDialogue));
  EXPECT_EQ(dialogue.waitForEnd(), NotConfirmed);
  EXPECT_TRUE(dialogue.hasShown("Check the passphrase or key"));
}

/// Runs a dialogue for each question of `lines` and types `key` at this question. Expects that the
/// program then ends with `status` and has shown `text`.
void expectEndAtEachQuestion(const Lines& lines, const char* key, int status, const char* text) {
  for (std::size_t count = 0; count < lines.size(); ++count) {
    const char* const question = lines[count].question;
    Dialogue dialogue;
    ASSERT_TRUE(
        dialogue.answer({lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(count)}));
    ASSERT_TRUE(dialogue.waitFor(question)) << dialogue.terminal().shown();
    dialogue.terminal().type(key);
    EXPECT_EQ(dialogue.waitForEnd(), status) << question;
    EXPECT_TRUE(dialogue.hasShown(text)) << question << dialogue.terminal().shown();
    EXPECT_TRUE(dialogue.terminal().echoes()) << question;
    EXPECT_FALSE(dialogue.gotSettings()) << question;
  }
}

const Lines EveryQuestion = joined(ToMethods, {{"Number [1]: ", "6"},
                                               {"Methods (", "peap"},
                                               {"Inner method (", "pap"},
                                               {"Password: ", "p"},
                                               {"Send now? [y/N] ", ""}});
const Lines NameQuestion = {{"Device", ""}, {"Number [1]: ", "6"}, {"Name of the network: ", ""}};

TEST(WifiGuide, EndsAtTheEndOfInput) {
  expectEndAtEachQuestion(EveryQuestion, EndOfInput, NothingSent, "\r\nNothing was sent.\r\n");
  expectEndAtEachQuestion(NameQuestion, EndOfInput, NothingSent, "\r\nNothing was sent.\r\n");
}

TEST(WifiGuide, EndsIfInterrupted) {
  expectEndAtEachQuestion(EveryQuestion, Interrupt, 128 + SIGINT,
                          "\r\nzvkwifi: Interrupted. Nothing was stored.\r\n");
}

TEST(WifiGuide, EndsIfInterruptedWhileNmcliRuns) {
  Dialogue dialogue({}, "echo started > /dev/tty; sleep 60");
  ASSERT_TRUE(dialogue.answer({{"Device", ""}}));
  ASSERT_TRUE(dialogue.waitFor("started"));
  dialogue.terminal().type(Interrupt);
  EXPECT_EQ(dialogue.waitForEnd(), 128 + SIGINT);
  EXPECT_TRUE(dialogue.hasShown("Interrupted. Nothing was stored."));
}

// A shell with job control stops and continues the program. Without line editing, the shell does
// not change the echo.
TEST(WifiGuide, ContinuesAfterAStopAtEachQuestion) {
  Dialogue dialogue({}, Networks, {"bash", "--norc", "--noprofile", "--noediting", "-i"});
  TerminalProcess& terminal = dialogue.terminal();
  terminal.type("PS1=; " ZVKWIFI "; echo status $?\n");
  ASSERT_TRUE(terminal.waitForNext("status $?"));
  const auto stop = [&] {
    terminal.type(Suspend);
    const bool stopped = terminal.waitForNext("Stopped");
    EXPECT_TRUE(terminal.echoes());
    terminal.type("fg\n");
    return stopped && terminal.waitForNext("fg\r\n");
  };
  for (const Line& line : WholeDialogue) {
    ASSERT_TRUE(dialogue.waitFor(line.question)) << terminal.shown();
    ASSERT_TRUE(stop()) << terminal.shown();
    if (isHidden(line.question)) {
      ASSERT_TRUE(support::eventually([&] { return !terminal.echoes(); }));
    }
    terminal.type(*line.answer + "\n");
  }
  ASSERT_TRUE(terminal.waitForNext("is in the network \"home\"")) << terminal.shown();
  terminal.type("exit\n");
  EXPECT_EQ(dialogue.waitForEnd(), 0);
  EXPECT_FALSE(dialogue.hasShown("a secret 1"));
}

TEST(WifiGuide, GoesOnAfterAResizeAtEachQuestion) {
  Dialogue dialogue;
  unsigned short columns = 20;
  for (const Line& line : WholeDialogue) {
    ASSERT_TRUE(dialogue.waitFor(line.question)) << dialogue.terminal().shown();
    dialogue.terminal().resize(10, columns++);
    support::pauseBriefly();
    dialogue.terminal().type(*line.answer + "\n");
  }
  EXPECT_EQ(dialogue.waitForEnd(), 0);
  EXPECT_FALSE(dialogue.hasShown("a secret 1"));
}

TEST(WifiGuide, IsTheUsageWithoutATerminal) {
  const auto result = support::runProcess({ZVKWIFI}, "1\n1\ny\n");
  EXPECT_EQ(result.status, NothingSent);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, support::runProcess({ZVKWIFI, "--help"}).out);
}

TEST(WifiGuide, IsAUsageErrorWithJson) {
  const auto result = support::runProcess({ZVKWIFI, "--json"});
  EXPECT_EQ(result.status, NothingSent);
  EXPECT_NE(parsedDocument(result.out).at("error"), nullptr);
}

}  // namespace
