// Where secrets come from.

#include "session/secret_source.h"

#include <charconv>
#include <cstddef>
#include <string>
#include <system_error>

#include "session/texts.h"

namespace session {

namespace {

/// Returns the number of a descriptor, or -1 if the text is not a number.
int descriptorIn(std::string_view text) {
  int number = -1;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && rest == end && !text.empty() ? number : -1;
}

}  // namespace

std::optional<SecretSource> secretSourceIn(std::string_view text) {
  using Kind = SecretSource::Kind;
  SecretSource source;
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) {
    source.kind = Kind::Prompt;
    return lowerCase(text) == "prompt" ? std::optional(source) : std::nullopt;
  }
  const std::string kind = lowerCase(text.substr(0, colon));
  const std::string_view rest = text.substr(colon + 1);
  if (kind == "file" && !rest.empty() && rest.find('\0') == std::string_view::npos) {
    source.kind = Kind::File;
    source.path = rest;
    return source;
  }
  if (kind == "fd" && descriptorIn(rest) >= 0) {
    source.kind = Kind::Descriptor;
    source.descriptor = descriptorIn(rest);
    return source;
  }
  return std::nullopt;
}

}  // namespace session
