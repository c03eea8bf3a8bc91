#include "decoder/text_input.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "decoder/hex_line.h"
#include "decoder/packet_content.h"
#include "decoder/stream_decoder.h"
#include "npa/packet.h"

namespace decoder {

namespace {

/// What the lines of the programs begin with. Another line may stand unfinished in front of them.
constexpr std::array<std::string_view, 2> LineStarts = {"D [ZVK] ", "zvkprinter: "};

/// The first place behind the start of `line` where a program's line begins. The text column of a
/// dump is not looked at.
std::size_t nextStart(std::string_view line) {
  for (std::size_t i = 1; i < line.size() && line[i] != '|'; ++i) {
    const std::string_view rest = line.substr(i);
    if (std::ranges::any_of(LineStarts, [&](auto start) { return rest.starts_with(start); })) {
      return i;
    }
  }
  return line.size();
}

/// Lines of hex that follow each other.
class Block {
 public:
  explicit Block(Report& report) : m_Report(report) {}

  void add(HexLine line, std::size_t number) {
    if (!m_Lines.empty() && m_Direction != line.direction) {
      end();
    }
    m_Direction = line.direction;
    m_HasHiddenBytes = m_HasHiddenBytes || line.hasHiddenBytes;
    m_Lines.push_back({number, std::move(line.bytes)});
    if (line.endsBlock) {
      end();
    }
  }

  void end() {
    if (m_Lines.empty()) {
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
  }

 private:
  struct Line {
    std::size_t number;
    Bytes bytes;
  };

  void reportCollected(const Stream& stream) const {
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

  Report& m_Report;
  std::vector<Line> m_Lines;
  Stream::Direction m_Direction = Stream::Direction::Unknown;
  bool m_HasHiddenBytes = false;
};

void decodeLine(std::string_view line, std::size_t number, Block& block) {
  do {
    const std::size_t end = nextStart(line);
    if (std::optional<HexLine> hex = readHexLine(line.substr(0, end))) {
      block.add(std::move(*hex), number);
    } else {
      block.end();
    }
    line.remove_prefix(end);
  } while (!line.empty());
}

}  // namespace

void decodeText(std::string_view text, Report& report) {
  Block block(report);
  for (std::size_t number = 1; !text.empty(); ++number) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    decodeLine(text.substr(0, end), number, block);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  block.end();
}

}  // namespace decoder
