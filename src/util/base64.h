#pragma once

/// The Base64 encoding of RFC 4648: the standard alphabet with "=" as padding and no line breaks.
/// `decode` skips other characters. The operations are stateless. The caller owns all buffers. For
/// `encode` and `decode` a null pointer counts as an empty buffer.
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
  /// for every 3 bytes, and 4 characters for 1 or 2 bytes at the end. Returns 1. Returns 0 and
  /// writes nothing if text and zero byte do not fit into `outSize` bytes.
  static int encode(unsigned char* in, unsigned long inLen, char* out, unsigned long outSize);

  /// Decodes `text` into `out`. Skips every character that is neither in the alphabet nor padding.
  /// The first group of four characters with padding ends the decoding, and the rest of the text is
  /// ignored. The end of the text counts as padding. A group with padding before another character
  /// yields no byte. Returns the count of bytes. Returns -1 if the bytes do not fit into `outSize`
  /// bytes; the groups that fit have then been written.
  static long decode(const char* text, unsigned char* out, unsigned long outSize);

  /// Writes the four characters of the bytes `three[0..2]` to `four[0..3]`, without a zero byte.
  static void base64EncodeTriple(unsigned char* three, char* four);

  /// Decodes the group `four[0..3]` into `three`. Returns the count of bytes written: 3 minus the
  /// count of characters outside the alphabet at the end of the group, but at least 0. Returns 0 if
  /// a character outside the alphabet precedes a character of the alphabet.
  static int base64DecodeTriple(char* four, unsigned char* three);

  /// Returns the value (0 to 63) of a character of the alphabet, or -1 for any other character.
  static int base64CharValue(char c);
};
