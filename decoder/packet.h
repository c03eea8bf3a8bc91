#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/setting_catalogue.h"

/// The results of the decoder: the packets and problems in an input, with their places. The
/// functions that read inputs pass these results to a `Report`, which shows them.
namespace decoder {

using npa::Bytes;

/// Where the bytes of a packet come from.
struct Stream {
  enum class Unit { Line, Frame };
  enum class Direction { Unknown, ToPrinter, FromPrinter };

  Unit unit = Unit::Line;
  Direction direction = Direction::Unknown;
  std::string device;           ///< in a capture: "BUS:DEVICE"
  bool hasHiddenBytes = false;  ///< true if a log has masked some of the bytes
};

/// The first and the last line, or the first and the last frame, of a packet or a problem. Lines
/// and frames are counted from 1.
struct Place {
  std::size_t first = 0;
  std::size_t last = 0;
};

/// Returns a count of bytes as text: "1 byte", "2 bytes".
inline std::string countOf(std::uint64_t bytes) {
  return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
}

/// A setting in a packet. A setting in a query has no value.
struct Setting {
  npa::SettingKey key;
  std::optional<Bytes> value;
};

/// The content of a packet without its wrapper.
struct Content {
  enum class Kind {
    Query,            ///< asks for a setting
    Value,            ///< the reply to a query
    StoreGroup,       ///< settings to store all together
    StoreSingly,      ///< settings to store one by one
    Stored,           ///< the reply to settings
    Refusal,          ///< refuses the request
    Announcement,     ///< the fixed packet that precedes a method call
    MethodCall,       ///< a method call
    MethodReply,      ///< the reply to a method call; the last packet if the reply has several
    MethodReplyPart,  ///< an earlier packet of a reply of several packets
    EndOfExchange,    ///< ends the exchange; its data is ignored
    Unknown,          ///< a packet of any other kind
    Malformed,        ///< a known kind with wrong lengths
  };

  Kind kind = Kind::Unknown;
  std::vector<Setting> settings;
  npa::Byte result = 0;  ///< Stored: 1 means accepted
  std::string xml;       ///< MethodCall, MethodReply
  Bytes data;            ///< Unknown, Malformed: the bytes that could not be decoded
  std::string problem;   ///< Malformed: the reason
};

/// A packet or a collected reply, and its place in the input.
struct Packet {
  Stream stream;
  Place place;
  std::size_t size = 0;  ///< in bytes
  /// True for a collected reply: the command and data bytes of all packets of a reply, joined. A
  /// collected reply has no flag byte.
  bool isCollected = false;
  npa::Byte flag = 0;
  bool isWrapped = false;
  std::vector<Content> contents;  ///< one, except in a wrapper or a collected reply
};

/// Something in the input that is not a complete packet, such as stray or missing bytes.
struct Problem {
  Stream stream;
  Place place;
  std::string text;
};

/// Receives the packets and problems of the inputs, in order.
class Report {
 public:
  Report() = default;
  virtual ~Report() = default;
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;

  /// Begins an input. The calls until the next `beginInput` are about this input.
  virtual void beginInput(const std::string& name) = 0;
  virtual void packet(const Packet& packet) = 0;
  virtual void problem(const Problem& problem) = 0;
  /// Reports that the input cannot be read. Such an input has no packets and no problems.
  virtual void unreadable(const std::string& reason) = 0;
};

/// Returns true if every content of the packet has a known kind and is not malformed.
bool isUnderstood(const Packet& packet);

/// Returns true if the flag byte announces another packet of the reply.
bool hasMoreFollowing(const Packet& packet);

}  // namespace decoder
