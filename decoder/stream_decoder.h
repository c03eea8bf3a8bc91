#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <span>
#include <string>

#include "decoder/packet.h"

namespace decoder {

/// Cuts the bytes of one stream, which may arrive in any pieces, into packets, reads them and
/// reports them. Joins the reply to a method call that goes over several packets.
class StreamDecoder {
 public:
  /// `report` belongs to the caller and must outlive the decoder.
  StreamDecoder(Stream stream, Report& report);

  /// Takes the next bytes, which stand in that line or frame.
  void feed(std::span<const npa::Byte> bytes, std::size_t place);

  /// Says that so many bytes are missing here: what has begun stays incomplete.
  void skip(std::size_t count, std::size_t place);

  /// Says that nothing follows.
  void finish();

 private:
  struct Segment {
    std::size_t place;
    std::size_t size;  ///< bytes of it that are not taken yet
  };

  /// Reports the packets at the start of what waits; returns how many bytes that were.
  std::size_t takePackets();
  /// Removes the first `count` waiting bytes from the segments; returns where they stood.
  Place takePlace(std::size_t count);
  void takeStray(std::size_t count);
  void reportStray();
  void takePacket(std::span<const npa::Byte> bytes);
  /// Gives what a packet says of a reply over several packets its place in it.
  void joinReply(Packet& packet, std::span<const npa::Byte> bytes);
  void endReply(Place place);
  void complain(Place place, std::string text);

  Stream m_Stream;
  Report& m_Report;
  Bytes m_Waiting;
  std::deque<Segment> m_Segments;
  std::size_t m_StrayBytes = 0;
  Place m_StrayPlace;
  std::optional<std::string> m_ReplyText;  ///< so far, while the reply's last packet is awaited
  Place m_ReplyPlace;
};

}  // namespace decoder
