// Writes the markup of scdoc.

#include "tools/scdoc.h"

#include <algorithm>
#include <cctype>
#include <cstddef>

#include "catalogue/option_parser.h"

namespace tools {

namespace {

bool isCapital(char character) {
  return character >= 'A' && character <= 'Z';
}

bool isWordPart(char character) {
  return std::isalnum(static_cast<unsigned char>(character)) != 0;
}

/// Returns the length of the name at the start of `text`: capitals, and points between capitals.
std::size_t nameLength(std::string_view text) {
  std::size_t length = 0;
  while (length < text.size() &&
         (isCapital(text[length]) || (length > 0 && text[length] == '.' &&
                                      length + 1 < text.size() && isCapital(text[length + 1])))) {
    ++length;
  }
  return length;
}

/// Returns the length of the option at the start of `text`: dashes, letters, digits and a final
/// "=".
std::size_t optionLength(std::string_view text) {
  if (!text.starts_with('-')) {
    return 0;
  }
  std::size_t length = 1;
  while (length < text.size() && (isWordPart(text[length]) || text[length] == '-')) {
    ++length;
  }
  return length + (length < text.size() && text[length] == '=' ? 1 : 0);
}

std::string underlined(std::string_view word) {
  return "_" + std::string(word) + "_";
}

}  // namespace

std::string scdocText(std::string_view text) {
  std::string result;
  for (const char character : text) {
    if (character == '*' || character == '_' || character == '\\') {
      result.push_back('\\');
    }
    result.push_back(character);
  }
  return result;
}

std::string bold(std::string_view word) {
  return "*" + std::string(word) + "*";
}

std::string scdocUsage(std::string_view usage) {
  std::string result;
  while (!usage.empty()) {
    std::size_t length = 1;
    if (const std::size_t name = nameLength(usage); name > 0) {
      length = name;
      result.append(underlined(usage.substr(0, length)));
    } else if (const std::size_t option = optionLength(usage); option > 0) {
      length = option;
      result.append(bold(usage.substr(0, length)));
    } else {
      result.append(scdocText(usage.substr(0, length)));
    }
    usage.remove_prefix(length);
  }
  return result;
}

std::vector<std::string> valueNames(std::string_view usage) {
  std::vector<std::string> names;
  while (!usage.empty()) {
    const std::size_t length = nameLength(usage);
    if (length > 0) {
      names.emplace_back(usage.substr(0, length));
    }
    usage.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return names;
}

std::string scdocSentence(std::string_view help, std::span<const std::string> names) {
  const std::string text = catalogue::sentence(help);
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = at;
    while (end < text.size() && isWordPart(text[end])) {
      ++end;
    }
    end = std::max(end, at + 1);
    const std::string word = text.substr(at, end - at);
    const bool isName = std::ranges::find(names, word) != names.end();
    result.append(isName ? underlined(word) : scdocText(word));
    at = end;
  }
  return result;
}

std::string boldWords(std::span<const std::string_view> words) {
  constexpr std::size_t fewest = 5;
  const bool areNumbers = std::ranges::all_of(words, [](std::string_view word) {
    return std::ranges::all_of(word, [](char c) { return c >= '0' && c <= '9'; });
  });
  if (areNumbers && words.size() >= fewest) {
    return bold(words.front()) + " to " + bold(words.back());
  }
  std::vector<std::string> marked;
  std::ranges::transform(words, std::back_inserter(marked), bold);
  const std::vector<std::string_view> views(marked.begin(), marked.end());
  return catalogue::joined(views, ", ", " or ");
}

std::string scdocEntry(std::string_view term, std::string_view description) {
  return std::string(term).append("\n\t").append(description).append("\n");
}

}  // namespace tools
