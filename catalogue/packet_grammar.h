#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "npa/packet.h"
#include "npa/setting_keys.h"

/// Parsing of packets. `npa/packet.h` describes the layout. A wrapper may contain several packets.
/// The reply to a query repeats the query; a size of 2 bytes and the value follow.
///
/// The parsers accept any bytes. They return the parts that they find, and show which parts are
/// missing. The results point into the parsed bytes.
///
///     const PacketParts parts = readPacketParts(packet);  // flag byte and body
///     const Body body = readBody(parts.body);             // kind and content
///     if (body.kind == Body::Kind::QueryOrValue) {
///       const QueryOrValue parsed = readQueryOrValue(body.content);
///     }
namespace catalogue {

using Data = std::span<const npa::Byte>;

/// Reads a range of bytes from front to back. Each operation takes bytes from the front. If too few
/// bytes are left, the operation takes no byte and returns nothing or false.
class Cursor {
 public:
  explicit Cursor(Data bytes) : m_Rest(bytes) {}

  /// Returns the bytes that have not been taken.
  Data rest() const { return m_Rest; }

  /// Takes `head`. Returns false and takes nothing if the rest does not begin with `head`.
  bool skip(Data head);
  std::optional<Data> bytes(std::size_t count);
  std::optional<npa::Byte> byte();
  /// Takes a big-endian number of two bytes.
  std::optional<std::size_t> number();
  /// Takes a group and an object number.
  std::optional<npa::SettingKey> key();
  /// Takes a packet. Returns nothing if the rest does not begin with a start byte or if the packet
  /// is cut.
  std::optional<Data> packet();

 private:
  Data m_Rest;
};

/// Returns the size of the packet at the start of `bytes` (at least 3 bytes). The size follows from
/// the length field. Only the packet that generates a certificate has 4 more bytes. Its first 9
/// bytes identify this packet.
std::size_t packetSize(Data bytes);

/// The parts of a complete packet.
struct PacketParts {
  enum class Kind {
    NoFlag,         ///< the packet ends before its flag byte
    Announcement,   ///< the fixed packet that precedes a method call
    Refusal,        ///< the flag byte refuses the request
    EndOfExchange,  ///< the flag byte ends the exchange
    Content,        ///< any other packet
  };

  Kind kind = Kind::NoFlag;
  npa::Byte flag = 0;
  Data body;  ///< the bytes after the flag byte
};

/// Splits a complete packet.
PacketParts readPacketParts(Data packet);

/// The bytes after a packet's flag byte.
struct Body {
  enum class Kind {
    Unknown,
    QueryOrValue,    ///< a query, or the reply to a query
    SettingsGroup,   ///< settings to store all together, or the reply to them
    SingleSettings,  ///< settings to store one by one, or the reply to them
    Wrapper,
    MethodCall,  ///< a method call, or the reply to a method call
  };

  Kind kind = Kind::Unknown;
  /// For a known kind, the bytes after those that identify the kind. For an unknown kind, the bytes
  /// after the command byte if that is 0xE0, otherwise all bytes of the body.
  Data content;
};

/// Parses the bytes after a packet's flag byte.
Body readBody(Data body);

/// The content of a query, or of the reply to a query.
struct QueryOrValue {
  std::optional<npa::SettingKey> key;    ///< nothing if the content is too short
  std::optional<std::size_t> sizeField;  ///< nothing if the content is too short, as in a query
  Data rest;                             ///< the bytes after these fields: the value

  bool isQuery() const { return key && !sizeField && rest.empty(); }
  /// Returns true if the value has the size that the size field gives.
  bool isValue() const;
};

QueryOrValue readQueryOrValue(Data content);

/// A setting object: `group object 00 size(2) value`.
struct SettingObject {
  npa::SettingKey key;
  Data value;
};

/// The content of a packet that stores settings, or of the reply to such a packet.
struct Settings {
  std::optional<npa::Byte> result;     ///< the result if this is a reply; 1 means accepted
  std::vector<SettingObject> objects;  ///< the complete objects at the start
  Data rest;                           ///< the bytes after these objects
};

Settings readSettings(Data content);

/// The content of a wrapper.
struct Wrapper {
  std::optional<std::size_t> size;  ///< nothing if the content is shorter than a size field
  Data inside;                      ///< `size` bytes, or fewer if the wrapper is cut
  Data after;                       ///< the bytes after `inside`

  bool isWhole() const { return size && inside.size() == *size; }
};

Wrapper readWrapper(Data content);

}  // namespace catalogue
