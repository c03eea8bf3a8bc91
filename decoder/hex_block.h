#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "decoder/hex_line.h"
#include "decoder/packet.h"
#include "npa/packet.h"

namespace decoder {

/// The most bytes that the "*" of dumps may stand for in one input: the size of the largest packet.
/// Without this limit, a short input could make the decoder produce 2^64 bytes.
inline constexpr std::size_t MostRepeatedBytes = npa::LengthLimit + npa::LengthHeaderSize;

/// A block of consecutive lines of hex. Its bytes are decoded when the block ends.
///
///     HexBlock block(report);
///     if (!block.take(line, number)) {
///       block.end();  // the line is not hex
///     }
class HexBlock {
 public:
  /// The report must outlive the block.
  explicit HexBlock(Report& report) : m_Report(report) {}

  /// Adds `text` if it is a line of hex, the "*" of a dump, or the last offset of a dump. Otherwise
  /// changes nothing and returns false. Ends the current block first if `text` does not continue
  /// this block.
  bool take(std::string_view text, std::size_t number);

  /// Decodes the block. The next line of hex begins another block.
  void end();

 private:
  struct Line {
    std::size_t number;
    Bytes bytes;
  };

  bool isOpen() const { return !m_Lines.empty(); }
  bool isInDump() const { return isOpen() && m_Form == HexLine::Form::Counted; }
  /// Handles the "*" and the last offset of a dump. Returns false for any other line.
  bool takeMark(std::string_view text, std::size_t number);
  /// Returns false if the line has colons and is probably a time or a hardware address.
  bool accepts(const HexLine& line) const;
  /// Returns true if the line continues the current block.
  bool continuesBlock(const HexLine& line) const;
  void add(HexLine line, std::size_t number);
  /// Continues a dump at `offset`, which must be at least `m_NextOffset`. If `offset` is larger,
  /// adds the bytes that "*" stands for, or reports missing bytes.
  void continueAt(std::uint64_t offset, std::size_t number);
  /// Decodes the block as a collected reply.
  void reportCollected(const Stream& stream) const;
  void reportProblem(std::size_t number, std::string text) const;

  Report& m_Report;
  std::vector<Line> m_Lines;
  HexLine::Form m_Form = HexLine::Form::Plain;
  Stream::Direction m_Direction = Stream::Direction::Unknown;
  bool m_HasHiddenBytes = false;
  std::uint64_t m_NextOffset = 0;  ///< the expected offset of the next line of a dump
  std::size_t m_RepeatedAt = 0;    ///< the line number of a dump's "*"; 0 if there is none
  std::uint64_t m_RepeatsLeft = MostRepeatedBytes;
};

}  // namespace decoder
