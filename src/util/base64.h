#pragma once

/// The Base64 encoding of RFC 4648: its standard alphabet with "=" as padding, without line breaks.
/// Decoding is lenient towards what stands between the characters. Stateless; all buffers are the
/// caller's, and a null pointer counts as an empty one.
class Base64 {
 public:
  Base64() = default;
  virtual ~Base64() = default;
  Base64(const Base64&) = default;
  Base64& operator=(const Base64&) = default;

  /// Writes the Base64 text of `in[0..inLen-1]` and a zero byte to `out`. Returns 1, or 0 with
  /// nothing written when that is more than `outSize` bytes: four for each three begun, and one.
  static int encode(unsigned char* in, unsigned long inLen, char* out, unsigned long outSize);

  /// Decodes `text`, skipping every character outside the alphabet, up to the first group of four
  /// with padding (the end of the text counts as padding) and writes the bytes to `out`. What
  /// stands behind that group is ignored, and a group with padding before another character gives
  /// no byte. Returns the count of bytes, or -1 when they are more than `outSize`; the whole groups
  /// that fit have then been written.
  static long decode(const char* text, unsigned char* out, unsigned long outSize);

  /// Writes the four characters for the bytes `three[0..2]` to `four[0..3]`.
  static void base64EncodeTriple(unsigned char* three, char* four);

  /// Decodes the group `four[0..3]` into `three`. Returns how many bytes it gave and wrote: 3, less
  /// one for each character outside the alphabet at the end; 0 when one stands before another.
  static int base64DecodeTriple(char* four, unsigned char* three);

  /// Returns the value, 0 to 63, of a character of the alphabet, and -1 for any other.
  static int base64CharValue(char c);
};
