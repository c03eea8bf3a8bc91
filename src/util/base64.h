#pragma once

/// The Base64 encoding of RFC 4648: the standard alphabet with "=" as padding and no line breaks.
/// Decoding skips other characters. The operations are stateless. All buffers belong to the caller,
/// and a null pointer counts as an empty buffer.
///
///     char text[9];                                      // two groups of 4, and a zero byte
///     Base64::encode(sixBytes, 6, text, sizeof text);    // returns 1: the text fits
///     Base64::decode(text, sixBytes, 6);                 // returns 6
class Base64 {
 public:
  Base64() = default;
  virtual ~Base64() = default;
  Base64(const Base64&) = default;
  Base64& operator=(const Base64&) = default;

  /// Writes the Base64 text of `in[0..inLen-1]` and a zero byte to `out`. The text has 4 characters
  /// for every 3 bytes, the last group rounded up. Returns 1, or 0 with nothing written if
  /// `outSize` bytes are too few.
  static int encode(unsigned char* in, unsigned long inLen, char* out, unsigned long outSize);

  /// Decodes `text` into `out`. Skips every character outside the alphabet. The first group of four
  /// with padding ends the decoding, and the rest of the text is ignored; the end of the text
  /// counts as padding. A group with padding before another character yields no byte. Returns the
  /// count of bytes. Returns -1 if they exceed `outSize`; the whole groups that fit have then been
  /// written.
  static long decode(const char* text, unsigned char* out, unsigned long outSize);

  /// Writes the four characters of the bytes `three[0..2]` to `four[0..3]`, without a zero byte.
  static void base64EncodeTriple(unsigned char* three, char* four);

  /// Decodes the group `four[0..3]` into `three`. Returns the count of bytes written: 3, minus one
  /// for each character outside the alphabet at the end of the group. Returns 0 if such a character
  /// precedes one of the alphabet.
  static int base64DecodeTriple(char* four, unsigned char* three);

  /// Returns the value (0 to 63) of a character of the alphabet, or -1 for any other character.
  static int base64CharValue(char c);
};
