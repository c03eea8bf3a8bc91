#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "decoder/hex_line.h"
#include "decoder/packet.h"
#include "npa/packet.h"

namespace decoder {

/// How many bytes the "*" of dumps may stand for in one input: the size of the largest packet.
/// Without a limit, a few characters could stand for as many bytes as a number can count.
inline constexpr std::size_t MostRepeatedBytes = npa::LengthLimit + npa::LengthHeaderSize;

/// Lines of hex that follow each other and belong together. They are decoded when they end.
class HexBlock {
 public:
  /// `report` belongs to the caller and must outlive the block.
  explicit HexBlock(Report& report) : m_Report(report) {}

  /// Takes a line of hex, or what stands for bytes in a dump. Begins another block where the line
  /// does not go on with the one so far. Returns false, and changes nothing, for anything else.
  bool take(std::string_view text, std::size_t number);

  /// Decodes the lines so far. The next one begins another block.
  void end();

 private:
  struct Line {
    std::size_t number;
    Bytes bytes;
  };

  bool isOpen() const { return !m_Lines.empty(); }
  bool isInDump() const { return isOpen() && m_Form == HexLine::Form::Counted; }
  /// Takes the "*" of repeated lines, and the offset that ends a dump.
  bool takeMark(std::string_view text, std::size_t number);
  /// Says whether a line may begin a block, or go on with this one.
  bool accepts(const HexLine& line) const;
  /// Says whether a line goes on with the open block.
  bool goesOn(const HexLine& line) const;
  void add(HexLine line, std::size_t number);
  /// Has a dump go on at `offset`, which is not before its end: after bytes that are repeated or
  /// missing.
  void goOnAt(std::uint64_t offset, std::size_t number);
  void reportCollected(const Stream& stream) const;
  void complain(std::size_t number, std::string text) const;

  Report& m_Report;
  std::vector<Line> m_Lines;
  HexLine::Form m_Form = HexLine::Form::Plain;
  Stream::Direction m_Direction = Stream::Direction::Unknown;
  bool m_HasHiddenBytes = false;
  std::uint64_t m_NextOffset = 0;  ///< of a dump
  std::size_t m_RepeatedAt = 0;    ///< the line of a dump's "*", 0 for none
  std::uint64_t m_RepeatsLeft = MostRepeatedBytes;
};

}  // namespace decoder
