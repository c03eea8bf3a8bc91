#include "catalogue/option_parser.h"

namespace catalogue {

UsageError::UsageError(std::string_view subject, std::string_view expected)
    : UsageError(std::string(subject).append(": expected ").append(expected)) {}

UsageError::UsageError(std::string_view subject, std::string_view expected, std::string_view got)
    : UsageError(std::string(subject)
                     .append(": expected ")
                     .append(expected)
                     .append(", got '")
                     .append(got)
                     .append("'")) {}

std::string joined(std::span<const std::string_view> words, std::string_view separator,
                   std::string_view last) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i > 0) {
      text.append(i + 1 == words.size() ? last : separator);
    }
    text.append(words[i]);
  }
  return text;
}

std::string valueText(std::string_view valueName, std::span<const std::string_view> words) {
  return valueName.empty() ? joined(words, "|", "|") : std::string(valueName);
}

std::string sentence(std::string_view help) {
  std::string text(help);
  if (!text.empty() && text.front() >= 'a' && text.front() <= 'z') {
    text.front() = static_cast<char>(text.front() - 'a' + 'A');
  }
  return text.append(".");
}

std::string helpEntry(std::string_view entry, std::string_view text, std::size_t column) {
  std::string lines = "  " + std::string(entry);
  if (lines.size() + 2 > column) {
    lines.append("\n").append(column, ' ');
  } else {
    lines.resize(column, ' ');
  }
  return lines.append(text).append("\n");
}

void checkWord(const std::string& value, std::span<const std::string_view> words) {
  if (std::ranges::find(words, value) == words.end()) {
    throw ValueError(joined(words, ", ", " or "));
  }
}

}  // namespace catalogue
