#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/setting_catalogue.h"

namespace decoder {

using npa::Bytes;

/// Where bytes come from.
struct Stream {
  enum class Unit { Line, Frame };
  enum class Direction { Unknown, ToPrinter, FromPrinter };

  Unit unit = Unit::Line;
  Direction direction = Direction::Unknown;
  std::string device;           ///< of a capture: "BUS:DEVICE"
  bool hasHiddenBytes = false;  ///< whether a log has masked some of them
};

/// The lines or frames in which something stands, both included; they count from 1.
struct Place {
  std::size_t first = 0;
  std::size_t last = 0;
};

/// "1 byte", "2 bytes".
inline std::string countOf(std::uint64_t bytes) {
  return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
}

/// A setting that is spoken of, with its value unless it is only asked for.
struct Setting {
  npa::SettingKey key;
  std::optional<Bytes> value;
};

/// What a packet says, without its wrapper.
struct Content {
  enum class Kind {
    Query,            ///< asks for a setting
    Value,            ///< the answer
    StoreGroup,       ///< settings to be stored together
    StoreSingly,      ///< settings to be stored one by one
    Stored,           ///< whether they were accepted
    Refusal,          ///< the request is refused
    Announcement,     ///< the fixed packet ahead of a method call
    MethodCall,       ///< a call in XML
    MethodReply,      ///< its reply, of several packets in the last
    MethodReplyPart,  ///< what comes before the last
    EndOfExchange,    ///< counts for nothing but the end of the exchange
    Unknown,          ///< of no known kind
    Malformed,        ///< of a known kind, but not as it has to be
  };

  Kind kind = Kind::Unknown;
  std::vector<Setting> settings;
  npa::Byte result = 0;  ///< of `Stored`: 1 is accepted
  std::string xml;       ///< of `MethodCall` and `MethodReply`
  Bytes data;            ///< of `Unknown` and `Malformed`: all that could not be read
  std::string problem;   ///< of `Malformed`: why
};

/// A packet and where it stands.
struct Packet {
  Stream stream;
  Place place;
  std::size_t size = 0;  ///< in bytes
  /// Whether it is what the program dumps of a reply: the command and data bytes of all of the
  /// reply's packets, without the headers in front of them. There is no flag byte then.
  bool isCollected = false;
  npa::Byte flag = 0;
  bool isWrapped = false;
  std::vector<Content> contents;  ///< several only in a wrapper or a collected reply
};

/// Something in the input that is no packet.
struct Problem {
  Stream stream;
  Place place;
  std::string text;
};

/// Takes what was found in the input, in order.
class Report {
 public:
  Report() = default;
  virtual ~Report() = default;
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;

  /// What follows is of this input.
  virtual void beginInput(const std::string& name) = 0;
  virtual void packet(const Packet& packet) = 0;
  virtual void problem(const Problem& problem) = 0;
  /// The input cannot be read; nothing of it follows.
  virtual void unreadable(const std::string& reason) = 0;
};

/// Says whether everything in the packet is known.
bool isUnderstood(const Packet& packet);

/// Whether the flag byte announces a further packet.
bool hasMoreFollowing(const Packet& packet);

}  // namespace decoder
