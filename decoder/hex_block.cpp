// HexBlock: finds out which lines of hex belong to one block, and which bytes of a dump are
// repeated or missing.

#include "decoder/hex_block.h"

#include <utility>

#include "decoder/hex_digits.h"
#include "decoder/packet_content.h"
#include "decoder/stream_decoder.h"

namespace decoder {

bool HexBlock::take(std::string_view text, std::size_t number) {
  if (takeMark(trimmed(text), number)) {
    return true;
  }
  std::optional<HexLine> line = readHexLine(text);
  if (!line || !accepts(*line)) {
    return false;
  }
  if (isOpen() && !continuesBlock(*line)) {
    end();
  }
  add(std::move(*line), number);
  return true;
}

bool HexBlock::takeMark(std::string_view text, std::size_t number) {
  if (!isInDump()) {
    return false;
  }
  if (text == "*") {
    m_RepeatedAt = number;
    return true;
  }
  const auto offset = takeOffset(text);
  const bool endsDump = offset && text.empty() &&
                        (*offset == m_NextOffset || (m_RepeatedAt != 0 && *offset > m_NextOffset));
  if (!endsDump) {
    return false;
  }
  continueAt(*offset, number);
  end();
  return true;
}

bool HexBlock::accepts(const HexLine& line) const {
  // Times and hardware addresses have colons too, but neither begins with A5. A hardware address
  // with an odd first byte is a group address, and no device has a group address.
  const bool continuesColons = isOpen() && m_Form == HexLine::Form::Colons;
  return line.form != HexLine::Form::Colons || continuesColons ||
         line.bytes.front() == npa::StartByte;
}

bool HexBlock::continuesBlock(const HexLine& line) const {
  if (isInDump() != (line.form == HexLine::Form::Counted) || m_Direction != line.direction) {
    return false;
  }
  return line.form != HexLine::Form::Counted || line.offset >= m_NextOffset;
}

void HexBlock::add(HexLine line, std::size_t number) {
  if (isInDump()) {
    continueAt(line.offset, number);
  }
  m_Form = line.form;
  m_Direction = line.direction;
  m_HasHiddenBytes = m_HasHiddenBytes || line.hasHiddenBytes;
  m_NextOffset = line.offset + line.bytes.size();
  m_Lines.push_back({number, std::move(line.bytes)});
  if (line.endsBlock) {
    end();
  }
}

void HexBlock::continueAt(std::uint64_t offset, std::size_t number) {
  const std::size_t repeatedAt = std::exchange(m_RepeatedAt, 0);
  const std::uint64_t count = offset - m_NextOffset;
  if (count == 0) {
    return;
  }
  const Bytes& last = m_Lines.back().bytes;
  if (repeatedAt == 0 || count % last.size() != 0) {
    end();
    reportProblem(number, countOf(count) + " missing from the dump");
    return;
  }
  if (count > m_RepeatsLeft) {
    end();
    reportProblem(repeatedAt, countOf(count) + " repeated; the limit for one input is " +
                                  std::to_string(MostRepeatedBytes));
    return;
  }
  m_RepeatsLeft -= count;
  Bytes repeated;
  while (repeated.size() < count) {
    repeated.insert(repeated.end(), last.begin(), last.end());
  }
  m_Lines.push_back({repeatedAt, std::move(repeated)});
}

void HexBlock::end() {
  if (!isOpen()) {
    return;
  }
  const Stream stream = {Stream::Unit::Line, m_Direction, {}, m_HasHiddenBytes};
  if (m_Lines.front().bytes.front() == npa::RequestCommand) {
    reportCollected(stream);
  } else {
    StreamDecoder decoder(stream, m_Report);
    for (const Line& line : m_Lines) {
      decoder.feed(line.bytes, line.number);
    }
    decoder.finish();
  }
  m_Lines.clear();
  m_HasHiddenBytes = false;
  m_RepeatedAt = 0;
}

void HexBlock::reportCollected(const Stream& stream) const {
  Bytes all;
  for (const Line& line : m_Lines) {
    all.insert(all.end(), line.bytes.begin(), line.bytes.end());
  }
  Packet packet = readCollectedReply(all);
  packet.stream = stream;
  packet.stream.direction = Stream::Direction::FromPrinter;
  packet.place = {m_Lines.front().number, m_Lines.back().number};
  m_Report.packet(packet);
}

void HexBlock::reportProblem(std::size_t number, std::string text) const {
  m_Report.problem({{}, {number, number}, std::move(text)});
}

}  // namespace decoder
