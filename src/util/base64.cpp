#include "util/base64.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
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

void encodeGroup(const unsigned char* three, char* four) {
  const std::uint32_t bits =
      std::uint32_t{three[0]} << 16U | std::uint32_t{three[1]} << 8U | std::uint32_t{three[2]};
  four[0] = Alphabet[bits >> 18U];
  four[1] = Alphabet[bits >> 12U & 0x3FU];
  four[2] = Alphabet[bits >> 6U & 0x3FU];
  four[3] = Alphabet[bits & 0x3FU];
}

/// Takes the next group out of `text`: whatever is neither of the alphabet nor padding is skipped,
/// and a text that ends is taken as padded.
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

/// Decodes groups from the front of `text` into the front of `out` as long as a group's four
/// characters stand side by side and its bytes fit, and takes both away. Returns the bytes written.
std::size_t decodeWholeGroups(std::string_view& text, std::span<unsigned char>& out) {
  const std::size_t groups = std::min(text.size() / CharsPerGroup, out.size() / BytesPerGroup);
  std::size_t done = 0;
  for (; done < groups; ++done) {
    const char* four = &text[done * CharsPerGroup];
    const std::uint32_t a = valueOf(four[0]);
    const std::uint32_t b = valueOf(four[1]);
    const std::uint32_t c = valueOf(four[2]);
    const std::uint32_t d = valueOf(four[3]);
    if (((a | b | c | d) & 0xC0U) != 0) {
      break;
    }
    const std::uint32_t bits = a << 18U | b << 12U | c << 6U | d;
    unsigned char* three = &out[done * BytesPerGroup];
    three[0] = static_cast<unsigned char>(bits >> 16U);
    three[1] = static_cast<unsigned char>(bits >> 8U & 0xFFU);
    three[2] = static_cast<unsigned char>(bits & 0xFFU);
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
