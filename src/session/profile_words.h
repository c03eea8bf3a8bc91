#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace session::profile_words {

/// A fixed value of a profile and the text that the encoder expects for it. The encoder compares
/// exactly.
struct Word {
  std::string_view profile;
  const char* encoder;
};

/// With "auto" no encryption is sent, and the adapter chooses.
inline constexpr std::array Encryptions = {
    Word{"auto", ""},
    Word{"tkip", "WPA-TKIP"},
    Word{"aes", "WPA-AES"},
    Word{"wep-dynamic", "WEP-DYNAMIC"},
    Word{"wep-static", "WEP-STATIC"},
};
inline constexpr std::array WepAuths = {Word{"open", "OPEN"}, Word{"shared", "SHARED"}};
inline constexpr std::array EapMethods = {
    Word{"md5", "EAP-MD5"}, Word{"mschapv2", "MSCHAPv2"}, Word{"leap", "LEAP"},
    Word{"peap", "PEAP"},   Word{"tls", "EAP-TLS"},       Word{"ttls", "EAP-TTLS"},
};
inline constexpr std::array InnerMethods = {
    Word{"chap", "CHAP"},
    Word{"mschap", "MSCHAP"},
    Word{"mschapv2", "MSCHAPv2"},
    Word{"pap", "PAP"},
};

/// The words of a profile in `Words`.
template <const auto& Words>
inline constexpr auto InProfile = [] {
  std::array<std::string_view, Words.size()> texts;
  std::ranges::transform(Words, texts.begin(), &Word::profile);
  return texts;
}();

/// Returns the encoder's text for a word of a profile, or an empty text if there is none.
template <std::size_t Count>
constexpr const char* encoderWord(const std::array<Word, Count>& words, std::string_view word) {
  const auto found = std::ranges::find(words, word, &Word::profile);
  return found == words.end() ? "" : found->encoder;
}

}  // namespace session::profile_words
