#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>

/// Questions on the terminal: plain lines on standard error, answers from standard input. Each
/// question throws `Interrupted` after SIGINT, SIGTERM or SIGHUP, and `EndOfInput` at the end of
/// input.
namespace wifi {

/// Shows a text, with line breaks where a terminal of 80 columns needs them.
void say(const std::string& text);

/// Asks until `problemOf` finds no problem with the answer, and returns that answer. `problemOf`
/// returns a sentence that says what is wrong, or an empty text.
std::string ask(const std::string& question,
                const std::function<std::string(const std::string&)>& problemOf);

/// Shows the items with numbers and asks for one of them. Returns its index. If `usual` is given,
/// an empty answer means the item with this index.
std::size_t askForChoice(const std::string& question, std::span<const std::string> items,
                         std::optional<std::size_t> usual);

/// Asks a question and returns true for yes. An empty answer means no.
bool askForConsent(const std::string& question);

}  // namespace wifi
