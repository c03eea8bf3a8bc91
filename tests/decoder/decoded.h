#pragma once

#include <string>
#include <string_view>

#include "decoder/decode.h"
#include "decoder/tally.h"
#include "decoder/words.h"

/// The result of decoding an input.
struct Decoded {
  std::string words;  ///< the report in words
  int status = 0;     ///< exit status
};

/// Decodes an input with these options.
inline Decoded decodedWith(const decoder::Options& options, std::string_view input) {
  Decoded result;
  decoder::WordsReport words([&](std::string_view text) { result.words.append(text); },
                             options.showSecrets);
  decoder::Tally tally(words);
  tally.beginInput("input");
  decoder::decode(input, options, tally);
  result.status = tally.status();
  return result;
}

inline Decoded decoded(std::string_view input) {
  return decodedWith({}, input);
}

inline std::string wordsOf(std::string_view input) {
  return decoded(input).words;
}
