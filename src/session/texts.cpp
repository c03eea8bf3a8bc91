// Cleans and converts texts.

#include "session/texts.h"

#include <algorithm>

#include "util/decimal.h"

namespace session {

namespace {

constexpr std::size_t MostDigits = 9;

bool isControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20U || byte == 0x7FU;
}

}  // namespace

std::optional<std::string> printableText(std::string_view text) {
  std::string result(text);
  std::erase_if(result, isControl);
  const std::size_t first = result.find_first_not_of(' ');
  if (first == std::string::npos) {
    return std::nullopt;
  }
  return result.substr(first, result.find_last_not_of(' ') + 1 - first);
}

std::optional<int> decimalNumber(std::string_view text) {
  const bool isNumber = !text.empty() && text.size() <= MostDigits &&
                        std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
  return isNumber ? std::optional(util::toInt(text)) : std::nullopt;
}

std::string lowerCase(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return result;
}

}  // namespace session
