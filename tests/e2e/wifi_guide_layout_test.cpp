#include <algorithm>
#include <clocale>
#include <cwchar>
#include <gtest/gtest.h>
#include <libintl.h>
#include <sstream>
#include <string>
#include <vector>

#include "e2e/wifi_dialogue.h"
#include "testing/environment.h"
#include "testing/process.h"

// Tests of what zvkwifi without a command shows on the terminal: the length of its lines in each
// language, and no control characters.

namespace {

using e2e::Dialogue;
using e2e::isHidden;
using e2e::Lines;
using e2e::Networks;
using e2e::NotConfirmed;
using e2e::NothingSent;
using e2e::utf8Locale;
using e2e::WholeDialogue;
using e2e::Words;
using support::TerminalProcess;

/// Returns the text of a whole dialogue in which the answer to the last question is "n".
std::string shownWith(const Words& variables) {
  Dialogue dialogue({}, Networks, {ZVKWIFI}, variables);
  Lines lines = WholeDialogue;
  lines.back().answer = "n";
  EXPECT_TRUE(dialogue.answer(lines));
  EXPECT_EQ(dialogue.waitForEnd(), NothingSent);
  return dialogue.terminal().shown();
}

TEST(WifiGuideLayout, IsTheSameOnEachKindOfTerminal) {
  const std::string shown = shownWith({"TERM=xterm-256color"});
  EXPECT_EQ(shown.find('\x1b'), std::string::npos) << shown;
  EXPECT_EQ(shownWith({"TERM=dumb"}), shown);
  EXPECT_EQ(shownWith({"TERM=xterm-256color", "NO_COLOR=1"}), shown);
}

TEST(WifiGuideLayout, HasLinesOfAtMost80Columns) {
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

TEST(WifiGuideLayout, ShowsNamesOfNetworksWithoutControlCharacters) {
  Dialogue dialogue({}, "printf ' :a\\033[31m\\\\:b:WPA2:50\\n'");
  ASSERT_TRUE(dialogue.waitFor("Device"));
  dialogue.terminal().type("\n");
  EXPECT_TRUE(dialogue.waitFor("  1) a\\x1B[31m:b\r\n")) << dialogue.terminal().shown();
}

}  // namespace
