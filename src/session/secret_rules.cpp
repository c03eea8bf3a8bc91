// Which secret a network needs.

#include <algorithm>

#include "session/profile.h"
#include "session/translatable.h"

namespace session {

namespace {

constexpr std::size_t ShortestPassphrase = 8;
constexpr std::size_t LongestPassphrase = 63;
constexpr std::size_t WpaKeyDigits = 64;
/// The adapter takes one byte more, but then the length field of the password's setting object is
/// 0.
constexpr std::size_t LongestPassword = 254;

bool isPrintable(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
}

bool isHex(std::string_view text) {
  return text.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

bool isWpaSecret(std::string_view secret) {
  return secret.size() == WpaKeyDigits
             ? isHex(secret)
             : secret.size() >= ShortestPassphrase && secret.size() <= LongestPassphrase &&
                   isPrintable(secret);
}

bool isWepKey(std::string_view secret) {
  switch (secret.size()) {
    case 5:
    case 13:
      return isPrintable(secret);
    case 10:
    case 26:
      return isHex(secret);
    default:
      return false;
  }
}

bool isPassword(std::string_view secret) {
  return !secret.empty() && secret.size() <= LongestPassword &&
         secret.find('\0') == std::string_view::npos;
}

}  // namespace

bool needsSecret(const Profile& profile) {
  const bool hasOnlyTls = profile.eapMethods.size() == 1 && profile.eapMethods.front() == "tls";
  return profile.security == Security::Enterprise ? !hasOnlyTls
                                                  : profile.security != Security::Open;
}

const char* checkSecret(const Profile& profile, std::string_view secret) {
  if (!needsSecret(profile)) {
    return secret.empty() ? nullptr : translatable("no password, because these settings need none");
  }
  switch (profile.security) {
    case Security::Wpa:
      return isWpaSecret(secret)
                 ? nullptr
                 : translatable("8 to 63 printable ASCII characters, or 64 hex digits");
    case Security::Wep:
      return isWepKey(secret)
                 ? nullptr
                 : translatable("5 or 13 printable ASCII characters, or 10 or 26 hex digits");
    default:
      return isPassword(secret) ? nullptr : translatable("a password of 1 to 254 bytes");
  }
}

}  // namespace session
