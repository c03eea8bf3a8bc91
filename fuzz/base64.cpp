// The target decodes the input as a text, and encodes the input as bytes. Decoding the text must
// give the same result as decoding each group of four characters separately. Decoding the encoded
// input must return the input.

#include "util/base64.h"

#include <string>
#include <vector>

#include "fuzz_target.h"

namespace {

using Bytes = std::vector<unsigned char>;

/// Decodes a padded copy of the text one group at a time.
Bytes decodeByGroups(const std::string& text) {
  std::string padded = text.substr(0, text.find('\0')) + "====";
  std::erase_if(padded, [](char c) { return c != '=' && Base64::base64CharValue(c) < 0; });
  Bytes bytes;
  for (std::size_t i = 0;; i += 4) {
    Bytes group(3);
    group.resize(static_cast<std::size_t>(Base64::base64DecodeTriple(&padded[i], group.data())));
    bytes.insert(bytes.end(), group.begin(), group.end());
    if (group.size() < 3) {
      return bytes;
    }
  }
}

/// Decodes into a buffer of `room` bytes, which must be enough.
Bytes decode(const std::string& text, std::size_t room) {
  Bytes bytes(room);
  const long count = Base64::decode(text.c_str(), bytes.data(), bytes.size());
  fuzz::require(count >= 0);
  fuzz::require(static_cast<std::size_t>(count) <= room);
  bytes.resize(static_cast<std::size_t>(count));
  return bytes;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = fuzz::textOf(data, size);
  const Bytes expected = decodeByGroups(text);
  fuzz::require(decode(text, text.size() + 3) == expected);
  fuzz::require(decode(text, expected.size()) == expected);
  if (!expected.empty()) {
    Bytes tooSmall(expected.size() - 1);
    fuzz::require(Base64::decode(text.c_str(), tooSmall.data(), tooSmall.size()) == -1);
  }

  Bytes bytes(data, data + size);
  std::string encoded(4 * ((size + 2) / 3) + 1, '#');
  fuzz::require(Base64::encode(bytes.data(), size, encoded.data(), encoded.size() - 1) == 0);
  fuzz::require(Base64::encode(bytes.data(), size, encoded.data(), encoded.size()) == 1);
  fuzz::require(encoded.find('\0') == encoded.size() - 1);
  fuzz::require(decode(encoded, size) == bytes);
  return 0;
}
