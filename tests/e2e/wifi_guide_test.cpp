#include <algorithm>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <cwchar>
#include <gtest/gtest.h>
#include <libintl.h>
#include <optional>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "e2e/wifi_document.h"
#include "testing/environment.h"
#include "testing/files.h"
#include "testing/printer_run.h"
#include "testing/process.h"

// Tests of zvkwifi without a command, on a terminal, with the emulated printer and a script in
// place of nmcli.

namespace {

using support::TerminalProcess;
using Words = std::vector<std::string>;

constexpr const char* EndOfInput = "\x04";
constexpr const char* Interrupt = "\x03";
constexpr const char* Suspend = "\x1a";
constexpr int NothingSent = 2;
constexpr int NotConfirmed = 8;

constexpr const char* Networks =
    "echo ' :neighbour:WPA2:90'\n"
    "echo '*:home:WPA2:60'\n"
    "echo ' :new:WPA3:50'\n"
    "echo ' :office:WPA2 802.1X:40'\n"
    "echo ' :cafe::30'\n";

/// A text that zvkwifi shows, and the answer to it. A text that is not a question has no answer.
struct Line {
  const char* question;
  std::optional<std::string> answer = std::nullopt;
};
using Lines = std::vector<Line>;

bool isHidden(std::string_view question) {
  return question.starts_with("Passphrase") || question.starts_with("Password") ||
         question.starts_with("WEP key");
}

/// Returns the name of a locale with UTF-8 in which the C library translates. From glibc 2.41 on it
/// does not translate in C.UTF-8, so this is another locale if the system has one.
std::string utf8Locale() {
  constexpr const char* other = "en_US.UTF-8";
  const locale_t locale = ::newlocale(LC_ALL_MASK, other, nullptr);
  if (locale == nullptr) {
    return "C.UTF-8";
  }
  ::freelocale(locale);
  return other;
}

/// A dialogue with zvkwifi about the printer /dev/usb/lp0.
class Dialogue {
 public:
  explicit Dialogue(const Words& options = {}, const std::string& nmcli = Networks,
                    const Words& program = {ZVKWIFI}, const Words& variables = {}) {
    const std::string script = m_Folder.write("nmcli", "#!/bin/sh\n" + nmcli);
    ::chmod(script.c_str(), S_IRWXU);
    // When the first process on the terminal ends, the terminal drops the output that has not been
    // read yet. So the first process is a shell that waits for a last line of input.
    Words command = {"sh",
                     "-c",
                     "trap : INT; \"$@\"; status=$?; echo '(ended)'; read x; exit $status",
                     "sh",
                     "env",
                     "LC_ALL=" + utf8Locale(),
                     "PATH=" + m_Folder.path("") + ":" + std::getenv("PATH")};
    const auto add = [&command](const Words& words) {
      command.insert(command.end(), words.begin(), words.end());
    };
    add(variables);
    Words printer = {ZVKPRINTER, "run", "--show-secrets", "--ssid=old",
                     "--log=" + m_Folder.path("log")};
    printer.insert(printer.end(), options.begin(), options.end());
    printer.push_back("--");
    printer.insert(printer.end(), program.begin(), program.end());
    add(support::withFasterClock(printer));
    m_Terminal.emplace(command);
  }

  TerminalProcess& terminal() { return *m_Terminal; }

  /// Waits for a question. If the answer is a secret, also waits until the echo is off.
  bool waitFor(const char* question) {
    return m_Terminal->waitForNext(question) &&
           (!isHidden(question) || support::eventually([&] { return !m_Terminal->echoes(); }));
  }

  /// Waits for the end of the program and returns its exit status.
  int waitForEnd() {
    EXPECT_TRUE(m_Terminal->waitForNext("(ended)"));
    m_Terminal->type("\n");
    return m_Terminal->waitForEnd();
  }

  /// Waits for each question, and types its answer and the Enter key. Fails if a question is not
  /// asked.
  testing::AssertionResult answer(const Lines& lines) {
    for (const Line& line : lines) {
      if (!waitFor(line.question)) {
        return testing::AssertionFailure() << "no \"" << line.question << "\" in:\n"
                                           << m_Terminal->shown();
      }
      if (line.answer) {
        m_Terminal->type(*line.answer + "\n");
      }
    }
    return testing::AssertionSuccess();
  }

  /// Returns true if the dialogue has shown the text.
  bool hasShown(std::string_view text) const {
    return m_Terminal->shown().find(text) != std::string::npos;
  }

  /// Returns the packets in the printer's log.
  std::string packets() const { return support::fileContent(m_Folder.path("log")); }

  /// Returns true if the printer got settings, and not only queries.
  bool gotSettings() const { return packets().find("store settings") != std::string::npos; }

 private:
  support::TemporaryFolder m_Folder;
  std::optional<TerminalProcess> m_Terminal;
};

const Lines ToSecret = {
    {"Device [/dev/usb/lp0]: ", ""}, {"Number [1]: ", ""}, {"Number [1]: ", ""}};

Lines joined(Lines first, const Lines& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

const Lines WholeDialogue =
    joined(ToSecret, {{"Passphrase or key: ", "a secret 1"}, {"Send now? [y/N] ", "y"}});

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

/// Returns the text of a whole dialogue in which the answer to the last question is "n".
std::string shownWith(const Words& variables) {
  Dialogue dialogue({}, Networks, {ZVKWIFI}, variables);
  Lines lines = WholeDialogue;
  lines.back().answer = "n";
  EXPECT_TRUE(dialogue.answer(lines));
  EXPECT_EQ(dialogue.waitForEnd(), NothingSent);
  return dialogue.terminal().shown();
}

TEST(WifiGuide, IsTheSameOnEachKindOfTerminal) {
  const std::string shown = shownWith({"TERM=xterm-256color"});
  EXPECT_EQ(shown.find('\x1b'), std::string::npos) << shown;
  EXPECT_EQ(shownWith({"TERM=dumb"}), shown);
  EXPECT_EQ(shownWith({"TERM=xterm-256color", "NO_COLOR=1"}), shown);
}

TEST(WifiGuide, HasLinesOfAtMost80Columns) {
  std::istringstream lines(shownWith({}));
  for (std::string line; std::getline(lines, line);) {
    EXPECT_LT(line.size(), 80U + 1) << line;
  }
}

#ifdef ZVKWIFI_OF_THE_BUILD
/// Returns the lines that a terminal has shown. Progress rewrites its line after a carriage return.
std::vector<std::string> linesOf(std::string text) {
  std::ranges::replace(text, '\r', '\n');
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

/// Returns the columns that a UTF-8 text takes on a terminal.
int columnsOf(const std::string& text) {
  std::setlocale(LC_CTYPE, utf8Locale().c_str());
  std::wstring wide(text.size(), L'\0');
  const std::size_t length = std::mbstowcs(wide.data(), text.c_str(), wide.size());
  EXPECT_NE(length, static_cast<std::size_t>(-1)) << text;
  return ::wcswidth(wide.c_str(), length);
}

/// Returns a message of zvkwifi in a language, up to the first "%" of its format.
std::string translated(const char* language, const char* message) {
  const support::EnvironmentVariable variable("LANGUAGE", language);
  // Gettext notices another language only when the locale changes.
  std::setlocale(LC_ALL, "C");
  std::setlocale(LC_ALL, utf8Locale().c_str());
  ::bindtextdomain("zvkwifi", TRANSLATIONS);
  const std::string text = ::dgettext("zvkwifi", message);
  EXPECT_NE(text, message) << language;
  return text.substr(0, text.find('%'));
}

class TranslatedGuide : public testing::TestWithParam<const char*> {};

// Most questions get a wrong answer first. The printer does not join the network.
TEST_P(TranslatedGuide, HasLinesOfAtMost80Columns) {
  Dialogue dialogue({"--trouble-code=5"}, Networks, {ZVKWIFI_OF_THE_BUILD},
                    {std::string("LANGUAGE=") + GetParam()});
  TerminalProcess& terminal = dialogue.terminal();
  const auto answer = [&](const char* question, const Words& answers) {
    for (const std::string& text : answers) {
      if (HasFatalFailure()) {
        return;
      }
      ASSERT_TRUE(terminal.waitForNext(translated(GetParam(), question))) << terminal.shown();
      ASSERT_TRUE(support::eventually([&] { return terminal.echoes() != isHidden(question); }));
      terminal.type(text + "\n");
    }
  };
  answer("Device [%s]: ", {"lp7", ""});
  answer("Number [%zu]: ", {"0", "4", "9", ""});
  answer("User: ", {std::string(40, 'u'), "anna"});
  answer("Number [%zu]: ", {"8", "6"});
  answer("Methods (md5, mschapv2, leap, peap, tls, ttls): ", {"x", "peap"});
  answer("Inner method (chap, mschap, mschapv2, pap) [none]: ", {"x", "pap"});
  answer("Password: ", {"", "a secret"});
  answer("Send now? [y/N] ", {"maybe", "y"});
  ASSERT_FALSE(HasFatalFailure());
  EXPECT_EQ(dialogue.waitForEnd(), NotConfirmed) << terminal.shown();
  for (const std::string& line : linesOf(terminal.shown())) {
    EXPECT_LE(columnsOf(line), 80) << line;
  }
}

INSTANTIATE_TEST_SUITE_P(Languages, TranslatedGuide,
                         testing::Values("de", "es", "fr", "ja", "pt_BR"),
                         [](const auto& test) { return std::string(test.param); });
#endif

TEST(WifiGuide, ShowsNamesOfNetworksWithoutControlCharacters) {
  Dialogue dialogue({}, "printf ' :a\\033[31m\\\\:b:WPA2:50\\n'");
  ASSERT_TRUE(dialogue.waitFor("Device"));
  dialogue.terminal().type("\n");
  EXPECT_TRUE(dialogue.waitFor("  1) a\\x1B[31m:b\r\n")) << dialogue.terminal().shown();
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
