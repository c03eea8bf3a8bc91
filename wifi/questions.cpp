#include "wifi/questions.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <string_view>
#include <unistd.h>

#include "session/texts.h"
#include "util/format.h"
#include "wifi/console.h"
#include "wifi/secret_input.h"
#include "wifi/shown_text.h"
#include "wifi/signals.h"
#include "wifi/translation.h"

namespace wifi {

namespace {

/// The largest size of an answer in bytes. The rest of a longer line is dropped.
constexpr std::size_t LongestAnswer = 1024;

/// Reads a line byte by byte, because the bytes after the line may be a secret, and no buffer may
/// keep a secret.
std::string readAnswer() {
  std::string answer;
  for (;;) {
    char c = 0;
    if (!Interruption::waitForInput(STDIN_FILENO)) {
      showNow("\n");
      throw Interrupted();
    }
    const ssize_t count = ::read(STDIN_FILENO, &c, 1);
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count <= 0) {
      showNow("\n");
      throw EndOfInput(tr("There are no more answers."));
    }
    if (c == '\n') {
      return answer;
    }
    if (answer.size() < LongestAnswer) {
      answer.push_back(c);
    }
  }
}

std::string trimmed(const std::string& text) {
  constexpr const char* blanks = " \t\r";
  const std::size_t start = text.find_first_not_of(blanks);
  return start == std::string::npos ? std::string()
                                    : text.substr(start, text.find_last_not_of(blanks) + 1 - start);
}

/// Returns the number if the text consists of one number, otherwise nothing.
std::optional<std::size_t> numberIn(const std::string& text) {
  std::size_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}

}  // namespace

void say(const std::string& text) {
  showNow(wrapped(text) + "\n");
}

std::string ask(const std::string& question,
                const std::function<std::string(const std::string&)>& problemOf) {
  for (;;) {
    showNow(wrapped(question));
    std::string answer = readAnswer();
    const std::string problem = problemOf(answer);
    if (problem.empty()) {
      return answer;
    }
    say(problem);
  }
}

std::size_t askForChoice(const std::string& question, std::span<const std::string> items,
                         std::optional<std::size_t> usual) {
  say(question);
  for (std::size_t i = 0; i < items.size(); ++i) {
    say(util::formatted("%3zu) ", i + 1) + items[i]);
  }
  std::size_t chosen = 0;
  ask(usual ? util::formatted(tr("Number [%zu]: "), *usual + 1) : std::string(tr("Number: ")),
      [&](const std::string& answer) {
        const std::string text = trimmed(answer);
        const auto number = text.empty() && usual ? *usual + 1 : numberIn(text);
        if (!number || *number < 1 || *number > items.size()) {
          return util::formatted(tr("Type a number from 1 to %zu."), items.size());
        }
        chosen = *number - 1;
        return std::string();
      });
  return chosen;
}

bool askForConsent(const std::string& question) {
  bool consent = false;
  ask(question, [&](const std::string& answer) {
    const std::string word = session::lowerCase(trimmed(answer));
    // TRANSLATORS: the answers to "Send now? [y/N]", in lower case. The English ones count too.
    const auto yes = std::to_array<std::string_view>({"y", "yes", tr("y"), tr("yes")});
    const auto no = std::to_array<std::string_view>({"", "n", "no", tr("n"), tr("no")});
    consent = std::ranges::count(yes, word) > 0;
    const bool isAnswer = consent || std::ranges::count(no, word) > 0;
    return isAnswer ? std::string() : std::string(tr("Type y for yes or n for no."));
  });
  return consent;
}

}  // namespace wifi
