// Base64 (RFC 4648) with look-up tables. A group is four characters, which stand for three bytes.
// Encoding writes two characters per look-up. Decoding handles a group of four valid characters in
// one step, and all other text character by character.

#include "util/base64.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

#include "util/c_text.h"

namespace {

constexpr std::string_view Alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char Padding = '=';
constexpr std::size_t BytesPerGroup = 3;
constexpr std::size_t CharsPerGroup = 4;
constexpr std::uint8_t Invalid = 0xFF;

/// The 6-bit value of each character; `Invalid` for characters outside the alphabet.
constexpr auto CharValues = [] {
  std::array<std::uint8_t, 256> values{};
  values.fill(Invalid);
  for (std::size_t i = 0; i < Alphabet.size(); ++i) {
    values[static_cast<unsigned char>(Alphabet[i])] = static_cast<std::uint8_t>(i);
  }
  return values;
}();

constexpr std::uint8_t valueOf(char c) {
  return CharValues[static_cast<unsigned char>(c)];
}

using Group = std::array<char, CharsPerGroup>;
using Pair = std::array<char, 2>;

/// The two characters for each 12-bit number. With these, encoding needs half as many look-ups as
/// with single characters.
constexpr auto Pairs = [] {
  std::array<Pair, 4096> pairs{};
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    pairs[i] = {Alphabet[i >> 6U], Alphabet[i & 0x3FU]};
  }
  return pairs;
}();

/// The three bytes of a group in memory order. The fourth byte is not 0 if a character of the group
/// is outside the alphabet.
using GroupBytes = std::array<std::uint8_t, CharsPerGroup>;

/// The bits that a character contributes to its group. The first index is the character's place in
/// the group, the second index is the character. The bits of a group are the four entries of its
/// characters, combined with OR.
constexpr auto Contributions = [] {
  std::array<std::array<std::uint32_t, 256>, CharsPerGroup> places{};
  for (std::size_t place = 0; place < places.size(); ++place) {
    places[place].fill(std::bit_cast<std::uint32_t>(GroupBytes{0, 0, 0, Invalid}));
    for (std::size_t i = 0; i < Alphabet.size(); ++i) {
      const std::size_t bits = i << (18U - 6U * place);
      places[place][static_cast<unsigned char>(Alphabet[i])] = std::bit_cast<std::uint32_t>(
          GroupBytes{static_cast<std::uint8_t>(bits >> 16U), static_cast<std::uint8_t>(bits >> 8U),
                     static_cast<std::uint8_t>(bits), 0});
    }
  }
  return places;
}();

/// Decodes `four[0..3]`. The caller checks the fourth byte of the result.
constexpr GroupBytes decodeWholeGroup(const char* four) {
  return std::bit_cast<GroupBytes>(Contributions[0][static_cast<unsigned char>(four[0])] |
                                   Contributions[1][static_cast<unsigned char>(four[1])] |
                                   Contributions[2][static_cast<unsigned char>(four[2])] |
                                   Contributions[3][static_cast<unsigned char>(four[3])]);
}

void encodeGroup(const unsigned char* three, char* four) {
  const std::uint32_t bits =
      std::uint32_t{three[0]} << 16U | std::uint32_t{three[1]} << 8U | std::uint32_t{three[2]};
  std::memcpy(four, &Pairs[bits >> 12U], sizeof(Pair));
  std::memcpy(four + sizeof(Pair), &Pairs[bits & 0xFFFU], sizeof(Pair));
}

/// Removes the next group from the front of `text` and returns it. Skips characters that are
/// neither in the alphabet nor padding. If the text ends early, the rest of the group is padding.
Group takeGroup(std::string_view& text) {
  Group group;
  group.fill(Padding);
  std::size_t count = 0;
  std::size_t read = 0;
  while (count < CharsPerGroup && read < text.size()) {
    const char c = text[read++];
    if (c == Padding || valueOf(c) != Invalid) {
      group[count++] = c;
    }
  }
  text.remove_prefix(read);
  return group;
}

/// Decodes groups from the front of `text` into the front of `out` while each group is four
/// consecutive characters of the alphabet and its bytes fit. Removes the decoded part from `text`
/// and the filled part from `out`. Returns the count of bytes written.
std::size_t decodeWholeGroups(std::string_view& text, std::span<unsigned char>& out) {
  const std::size_t groups = std::min(text.size() / CharsPerGroup, out.size() / BytesPerGroup);
  std::size_t done = 0;
  for (; done < groups; ++done) {
    const GroupBytes bytes = decodeWholeGroup(text.data() + done * CharsPerGroup);
    if (bytes[BytesPerGroup] != 0) {
      break;
    }
    unsigned char* three = out.data() + done * BytesPerGroup;
    three[0] = bytes[0];
    three[1] = bytes[1];
    three[2] = bytes[2];
  }
  text.remove_prefix(done * CharsPerGroup);
  out = out.subspan(done * BytesPerGroup);
  return done * BytesPerGroup;
}

}  // namespace

int Base64::encode(unsigned char* in, unsigned long inLen, char* out, unsigned long outSize) {
  std::span<const unsigned char> bytes(in, in == nullptr ? 0 : inLen);
  const std::size_t groups =
      bytes.size() / BytesPerGroup + (bytes.size() % BytesPerGroup == 0 ? 0 : 1);
  // Divides instead of multiplying, because the product of `groups` and `CharsPerGroup` may
  // overflow.
  if (out == nullptr || outSize < 1 || groups > (outSize - 1) / CharsPerGroup) {
    return 0;
  }
  for (; bytes.size() >= BytesPerGroup; bytes = bytes.subspan(BytesPerGroup)) {
    encodeGroup(bytes.data(), out);
    out += CharsPerGroup;
  }
  if (!bytes.empty()) {
    std::array<unsigned char, BytesPerGroup> last{};
    std::ranges::copy(bytes, last.begin());
    encodeGroup(last.data(), out);
    std::fill(out + bytes.size() + 1, out + CharsPerGroup, Padding);
    out += CharsPerGroup;
  }
  *out = '\0';
  return 1;
}

long Base64::decode(const char* text, unsigned char* out, unsigned long outSize) {
  std::string_view rest = util::textOf(text);
  std::span<unsigned char> space(out, out == nullptr ? 0 : outSize);
  std::size_t total = 0;
  std::size_t count = BytesPerGroup;
  // A group of fewer than 3 bytes has padding, so it is the last group.
  while (count == BytesPerGroup) {
    total += decodeWholeGroups(rest, space);
    Group group = takeGroup(rest);
    std::array<unsigned char, BytesPerGroup> bytes{};
    count = static_cast<std::size_t>(base64DecodeTriple(group.data(), bytes.data()));
    if (count > space.size()) {
      return -1;
    }
    std::copy_n(bytes.begin(), count, space.begin());
    space = space.subspan(count);
    total += count;
  }
  return static_cast<long>(total);
}

void Base64::base64EncodeTriple(unsigned char* three, char* four) {
  encodeGroup(three, four);
}

int Base64::base64DecodeTriple(char* four, unsigned char* three) {
  int count = BytesPerGroup;
  // Reads the group from its end, because only the characters after the last valid character are
  // padding.
  bool isPadded = true;
  std::uint32_t bits = 0;
  for (std::size_t i = CharsPerGroup; i-- > 0;) {
    const std::uint32_t value = valueOf(four[i]);
    if (value != Invalid) {
      isPadded = false;
      bits |= value << (6U * (CharsPerGroup - 1 - i));
    } else if (isPadded) {
      --count;
    } else {
      return 0;
    }
  }
  count = std::max(count, 0);
  for (int i = 0; i < count; ++i) {
    three[i] =
        static_cast<unsigned char>(bits >> (16U - 8U * static_cast<unsigned int>(i)) & 0xFFU);
  }
  return count;
}

int Base64::base64CharValue(char c) {
  const std::uint8_t value = valueOf(c);
  return value == Invalid ? -1 : value;
}
