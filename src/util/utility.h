#pragma once

/// Byte helpers of the packet builders and the exchange: big-endian numbers, hex text and the
/// packet dump. The operations are stateless and keep no pointer.
class Utility {
 public:
  /// Writes `value` to `destination[0..1]`, high byte first.
  static void CopyToBigEndianBuffer(unsigned short value, unsigned char* destination);

  /// Writes the low 32 bits of `value` to `destination[0..3]`, highest byte first. Ignores the
  /// higher bits.
  static void CopyToBigEndianBuffer(unsigned long value, unsigned char* destination);

  /// Returns the 16-bit big-endian number at `source[0..1]`.
  static unsigned short ExtractShortFromBuffer(const unsigned char* source);

  /// Returns the 32-bit big-endian number at `source[0..3]`.
  static unsigned long ExtractLongFromBuffer(const unsigned char* source);

  /// Writes the low `*length` bytes of `*value` to `out`, highest first. If `*length` exceeds 4,
  /// the first bytes are 0. Always returns 0.
  static int IntToChar(unsigned int* value, unsigned char* out, unsigned int* length);

  /// Reads `*length` bytes from `in` as a big-endian number into `*value`. Only the last 4 bytes
  /// count. Always returns 0.
  static int CharToInt(unsigned int* value, unsigned char* in, unsigned int* length);

  /// Converts pairs of hex digits, in upper or lower case, to bytes. The first digit of a pair is
  /// the high half of the byte. If the count of digits is odd, the last digit is ignored. Sets
  /// `buffer` to a new array, which the caller frees with `delete[]`, and returns its size: half
  /// the text's length.
  ///
  /// For an empty text or a null pointer, returns 0 and leaves `buffer` unchanged. If a character
  /// is not a hex digit, the function prints a line about it to standard output and sets `buffer`
  /// to null. The result is half the text's length even then, so test `buffer` and not the result.
  static int getHexValues(const char* text, unsigned char*& buffer);

  /// Dumps `count` bytes to standard error, at most 16 per line. A line has the bytes in hex, a
  /// "|", and the bytes as characters. A byte that is not printable ASCII is shown as ".". Writes
  /// nothing if `count` is 0 or less.
  ///
  ///     A5 00 06 41 |...A
  static void ShowBytes(unsigned char* data, int count);
};
