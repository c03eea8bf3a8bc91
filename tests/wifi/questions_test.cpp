#include "wifi/questions.h"

#include <gtest/gtest.h>

#include "testing/standard_input.h"
#include "wifi/secret_input.h"

// The questions on the terminal. A pipe stands in for the terminal.

namespace {

using support::StandardInput;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

/// What a question returned, and the text on standard error.
template <typename Answer>
struct Asked {
  Answer answer;
  std::string shown;
};

Asked<std::size_t> askForColour(const std::string& input,
                                std::optional<std::size_t> usual = std::nullopt) {
  const StandardInput answers(input);
  const std::vector<std::string> colours = {"red", "green", "blue"};
  CaptureStderr();
  const std::size_t answer = wifi::askForChoice("Which colour?", colours, usual);
  return {answer, GetCapturedStderr()};
}

Asked<bool> askForConsent(const std::string& input) {
  const StandardInput answers(input);
  CaptureStderr();
  const bool answer = wifi::askForConsent("Send? ");
  return {answer, GetCapturedStderr()};
}

TEST(Choice, HasNumbers) {
  const auto asked = askForColour("2\n");
  EXPECT_EQ(asked.answer, 1U);
  EXPECT_EQ(asked.shown, "Which colour?\n  1) red\n  2) green\n  3) blue\nNumber: ");
}

TEST(Choice, IgnoresBlanksAroundTheNumber) {
  EXPECT_EQ(askForColour(" 3 \t\r\n").answer, 2U);
}

TEST(Choice, TakesTheUsualItemForAnEmptyAnswer) {
  const auto asked = askForColour("\n", 2);
  EXPECT_EQ(asked.answer, 2U);
  EXPECT_TRUE(asked.shown.ends_with("Number [3]: ")) << asked.shown;
}

TEST(Choice, IsAskedAgainUntilItIsANumberOfTheList) {
  for (const char* const wrong :
       {"0", "4", "-1", "1x", "red", "99999999999999999999999", "", "\x1b[A"}) {
    const auto asked = askForColour(std::string(wrong) + "\n1\n");
    EXPECT_EQ(asked.answer, 0U) << wrong;
    EXPECT_TRUE(asked.shown.ends_with("Number: Type a number from 1 to 3.\nNumber: "))
        << asked.shown;
  }
}

TEST(Choice, EndsAtTheEndOfInput) {
  EXPECT_THROW(askForColour(""), wifi::EndOfInput);
  EXPECT_EQ(GetCapturedStderr(), "Which colour?\n  1) red\n  2) green\n  3) blue\nNumber: \n");
  EXPECT_THROW(askForColour("1"), wifi::EndOfInput);
  GetCapturedStderr();
}

TEST(Consent, IsOnlyGivenByYes) {
  for (const char* const yes : {"y", "Y", "yes", " YES "}) {
    EXPECT_TRUE(askForConsent(std::string(yes) + "\n").answer) << yes;
  }
  for (const char* const no : {"", "n", "N", "no", "No"}) {
    EXPECT_FALSE(askForConsent(std::string(no) + "\n").answer) << no;
  }
}

TEST(Consent, IsAskedForAgainAfterAnotherWord) {
  const auto asked = askForConsent("yesterday\nn\n");
  EXPECT_FALSE(asked.answer);
  EXPECT_EQ(asked.shown, "Send? Type y for yes or n for no.\nSend? ");
}

TEST(Question, IsAskedAgainWithTheProblem) {
  const StandardInput answers("a\nb\n");
  CaptureStderr();
  const std::string answer = wifi::ask("Letter: ", [](const std::string& text) {
    return std::string(text == "b" ? "" : "Expected b.");
  });
  EXPECT_EQ(answer, "b");
  EXPECT_EQ(GetCapturedStderr(), "Letter: Expected b.\nLetter: ");
}

TEST(Question, DropsTheEndOfALongAnswer) {
  const StandardInput answers(std::string(5000, 'x') + "\n");
  CaptureStderr();
  const std::string answer = wifi::ask("?", [](const std::string& /*text*/) { return ""; });
  GetCapturedStderr();
  EXPECT_EQ(answer, std::string(1024, 'x'));
}

TEST(Question, LeavesTheNextLineUnread) {
  const StandardInput answers("one\ntwo\n");
  const auto any = [](const std::string& /*text*/) {
    return "";
  };
  CaptureStderr();
  EXPECT_EQ(wifi::ask("?", any), "one");
  EXPECT_EQ(wifi::ask("?", any), "two");
  GetCapturedStderr();
}

}  // namespace
