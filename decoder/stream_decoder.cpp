// StreamDecoder: splits a stream into packets, keeps the place of each byte, and joins method
// replies.

#include "decoder/stream_decoder.h"

#include <algorithm>
#include <array>
#include <utility>

#include "catalogue/packet_grammar.h"
#include "decoder/packet_content.h"
#include "npa/packet.h"

namespace decoder {

namespace {

using Kind = Content::Kind;

}  // namespace

StreamDecoder::StreamDecoder(Stream stream, Report& report)
    : m_Stream(std::move(stream)), m_Report(report) {}

void StreamDecoder::feed(std::span<const npa::Byte> bytes, std::size_t place) {
  if (bytes.empty()) {
    return;
  }
  m_Waiting.insert(m_Waiting.end(), bytes.begin(), bytes.end());
  m_Segments.push_back({place, bytes.size()});
  const std::size_t taken = takePackets();
  m_Waiting.erase(m_Waiting.begin(), m_Waiting.begin() + static_cast<std::ptrdiff_t>(taken));
}

std::size_t StreamDecoder::takePackets() {
  catalogue::Cursor cursor(m_Waiting);
  while (!cursor.rest().empty()) {
    const auto start = static_cast<std::size_t>(std::ranges::find(cursor.rest(), npa::StartByte) -
                                                cursor.rest().begin());
    takeStray(start);
    cursor.bytes(start);
    const auto packet = cursor.packet();
    if (!packet) {
      break;
    }
    reportStray();
    takePacket(*packet);
  }
  return m_Waiting.size() - cursor.rest().size();
}

Place StreamDecoder::takePlace(std::size_t count) {
  Place place = {m_Segments.front().place, m_Segments.front().place};
  while (count > 0) {
    Segment& segment = m_Segments.front();
    const std::size_t part = std::min(count, segment.size);
    place.last = segment.place;
    segment.size -= part;
    count -= part;
    if (segment.size == 0) {
      m_Segments.pop_front();
    }
  }
  return place;
}

void StreamDecoder::takeStray(std::size_t count) {
  if (count == 0) {
    return;
  }
  const Place place = takePlace(count);
  if (m_StrayBytes == 0) {
    m_StrayPlace = place;
  }
  m_StrayPlace.last = place.last;
  m_StrayBytes += count;
}

void StreamDecoder::reportStray() {
  if (m_StrayBytes > 0) {
    reportProblem(m_StrayPlace, countOf(m_StrayBytes) + " outside any packet");
    m_StrayBytes = 0;
  }
}

void StreamDecoder::takePacket(std::span<const npa::Byte> bytes) {
  const Place place = takePlace(bytes.size());
  Packet packet = readPacket(bytes);
  packet.stream = m_Stream;
  packet.place = place;
  joinReply(packet, bytes);
  m_Report.packet(packet);
}

void StreamDecoder::joinReply(Packet& packet, std::span<const npa::Byte> bytes) {
  Content& content = packet.contents.front();
  const bool more = hasMoreFollowing(packet);
  if (!m_ReplyText) {
    if (content.kind == Kind::MethodReply && more) {
      m_ReplyText = std::move(content.xml);
      m_ReplyPlace = packet.place;
      content.xml.clear();
      content.kind = Kind::MethodReplyPart;
    }
    return;
  }
  catalogue::Cursor body(catalogue::readPacketParts(bytes).body);
  const bool continues = content.kind == Kind::Unknown && body.skip(CommandMark);
  if (!continues) {
    endReply(packet.place);
    return;
  }
  m_ReplyText->append(body.rest().begin(), body.rest().end());
  content = Content();
  content.kind = Kind::MethodReplyPart;
  if (!more) {
    content.kind = Kind::MethodReply;
    content.xml = *std::exchange(m_ReplyText, std::nullopt);
  }
}

void StreamDecoder::endReply(Place place) {
  if (m_ReplyText) {
    m_ReplyText.reset();
    reportProblem({m_ReplyPlace.first, place.last}, "the last packet of a reply is missing");
  }
}

void StreamDecoder::reportProblem(Place place, std::string text) {
  m_Report.problem({m_Stream, place, std::move(text)});
}

void StreamDecoder::skip(std::size_t count, std::size_t place) {
  finish();
  reportProblem({place, place}, countOf(count) + " missing from the capture");
}

void StreamDecoder::finish() {
  reportStray();
  Place last = m_ReplyPlace;
  if (!m_Waiting.empty()) {
    const std::size_t count = m_Waiting.size();
    last = takePlace(count);
    reportProblem(last, count < npa::LengthHeaderSize
                            ? "cut packet: " + countOf(count)
                            : "cut packet: " + std::to_string(count) + " of " +
                                  countOf(catalogue::packetSize(m_Waiting)));
    m_Waiting.clear();
  }
  endReply(last);
}

}  // namespace decoder
