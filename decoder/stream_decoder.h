#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <span>
#include <string>

#include "decoder/packet.h"

namespace decoder {

/// Splits the bytes of one stream into packets, decodes them and reports them. The bytes may arrive
/// in any pieces. Joins the XML of a method reply that extends over several packets.
///
///     StreamDecoder decoder(stream, report);
///     decoder.feed(bytes, 1);  // line or frame 1
///     decoder.finish();
class StreamDecoder {
 public:
  /// The report must outlive the decoder.
  StreamDecoder(Stream stream, Report& report);

  /// Takes the next bytes, from the line or frame `place`.
  void feed(std::span<const npa::Byte> bytes, std::size_t place);

  /// Reports `count` missing bytes. A packet or a reply that has begun is reported as incomplete.
  void skip(std::size_t count, std::size_t place);

  /// Ends the stream. Reports an incomplete packet or reply.
  void finish();

 private:
  /// The bytes of one line or frame.
  struct Segment {
    std::size_t place;
    std::size_t size;  ///< the count of bytes of the segment that are still waiting
  };

  /// Reports the complete packets among the waiting bytes. Returns the count of bytes used.
  std::size_t takePackets();
  /// Removes the first `count` waiting bytes from the segments. Returns the place of these bytes.
  Place takePlace(std::size_t count);
  /// Counts bytes outside a packet. `reportStray` reports all bytes that were counted since its
  /// last call.
  void takeStray(std::size_t count);
  void reportStray();
  void takePacket(std::span<const npa::Byte> bytes);
  /// Joins a method reply of several packets. If `packet` is part of such a reply, sets its
  /// kind. Sets the whole XML in the last packet of the reply.
  void joinReply(Packet& packet, std::span<const npa::Byte> bytes);
  /// Reports an incomplete method reply if there is one.
  void endReply(Place place);
  void reportProblem(Place place, std::string text);

  Stream m_Stream;
  Report& m_Report;
  Bytes m_Waiting;
  std::deque<Segment> m_Segments;
  std::size_t m_StrayBytes = 0;
  Place m_StrayPlace;
  std::optional<std::string> m_ReplyText;  ///< the XML so far of an incomplete method reply
  Place m_ReplyPlace;
};

}  // namespace decoder
