#pragma once

/// Byte helpers shared by the packet builders and the exchange: big-endian numbers, hex text and
/// the packet dump. Stateless; no operation keeps a pointer it was given.
class Utility {
 public:
  /// Writes `value` to `destination[0..1]`, high byte first.
  static void CopyToBigEndianBuffer(unsigned short value, unsigned char* destination);

  /// Writes the low 32 bits of `value` to `destination[0..3]`, highest byte first; higher bits are
  /// ignored.
  static void CopyToBigEndianBuffer(unsigned long value, unsigned char* destination);

  /// Returns the 16-bit big-endian number at `source[0..1]`.
  static unsigned short ExtractShortFromBuffer(const unsigned char* source);

  /// Returns the 32-bit big-endian number at `source[0..3]`.
  static unsigned long ExtractLongFromBuffer(const unsigned char* source);

  /// Writes the low `*length` bytes of `*value` to `out`, highest first; a length of 0 writes
  /// nothing and bytes beyond the fourth from the end are 0. Returns 0.
  static int IntToChar(unsigned int* value, unsigned char* out, unsigned int* length);

  /// Reads `*length` bytes from `in` as a big-endian number into `*value`; of more than four bytes
  /// the last four count. Returns 0.
  static int CharToInt(unsigned int* value, unsigned char* in, unsigned int* length);

  /// Converts pairs of hex digits, in either case, to bytes, the first digit of a pair the high
  /// half. `buffer` receives a new array (released by the caller with `delete[]`) and the result is
  /// its size, half the text's length; an odd last digit is dropped.
  ///
  /// An empty text gives 0 and leaves `buffer` alone. A character that is no hex digit is reported
  /// on standard output and sets `buffer` to null, yet the result stays half the text's length:
  /// test the buffer, not the count.
  static int getHexValues(const char* text, unsigned char*& buffer);

  /// Dumps `count` bytes to standard error, at most 16 a line: in hex, a bar, and as text with "."
  /// for all that is not printable ASCII. A count of 0 or less writes nothing.
  static void ShowBytes(unsigned char* data, int count);
};
