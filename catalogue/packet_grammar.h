#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "npa/packet.h"
#include "npa/setting_keys.h"

/// Parsing of packets. `npa/packet.h` has the layout. A wrapper may hold several packets. The reply
/// to a query is the query, followed by size(2) and the value.
///
/// A parser accepts any bytes: it returns the parts that it found, and whether they are complete.
/// The results point into the bytes that were parsed.
///
///     const PacketParts parts = readPacketParts(packet);  // flag byte and body
///     const Body body = readBody(parts.body);             // kind and content
///     if (body.kind == Body::Kind::QueryOrValue) {
///       const QueryOrValue parsed = readQueryOrValue(body.content);
///     }
namespace catalogue {

using Data = std::span<const npa::Byte>;

/// Reads a range of bytes from front to back. Each operation takes bytes from the front. If too few
/// are left, it takes none and returns nothing or false.
class Cursor {
 public:
  explicit Cursor(Data bytes) : m_Rest(bytes) {}

  /// Returns the bytes that have not been taken.
  Data rest() const { return m_Rest; }

  /// Takes `head`. Returns false if the rest does not begin with it.
  bool skip(Data head);
  std::optional<Data> bytes(std::size_t count);
  std::optional<npa::Byte> byte();
  /// Takes a big-endian number of two bytes.
  std::optional<std::size_t> number();
  /// Takes a group and an object number.
  std::optional<npa::SettingKey> key();
  /// Takes a packet. Returns nothing if the rest does not begin with a start byte, or if the packet
  /// is cut.
  std::optional<Data> packet();

 private:
  Data m_Rest;
};

/// Returns the size of the packet at the start of `bytes` (at least 3 bytes) by its length field.
/// The packet that generates a certificate has 4 bytes more than its length field says. Its first 9
/// bytes identify it.
std::size_t packetSize(Data bytes);

/// The parts of a complete packet.
struct PacketParts {
  enum class Kind {
    NoFlag,         ///< ends before its flag byte
    Announcement,   ///< the fixed packet that precedes a method call
    Refusal,        ///< its flag byte refuses the request
    EndOfExchange,  ///< its flag byte ends the exchange
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
    QueryOrValue,    ///< a query, or the reply to it
    SettingsGroup,   ///< settings to store all together, or the reply
    SingleSettings,  ///< settings to store one by one, or the reply
    Wrapper,
    MethodCall,  ///< a method call, or the reply to it
  };

  Kind kind = Kind::Unknown;
  /// The bytes after those that identify the kind. For an unknown kind, the bytes after the usual
  /// command byte. If the command byte is another one, all bytes of the body.
  Data content;
};

/// Parses the bytes after a packet's flag byte.
Body readBody(Data body);

/// The content of a query, or of the reply to it.
struct QueryOrValue {
  std::optional<npa::SettingKey> key;    ///< nothing if the content is shorter
  std::optional<std::size_t> sizeField;  ///< nothing if the content is shorter, as in a query
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

/// The content of a packet that stores settings, or of the reply to it.
struct Settings {
  std::optional<npa::Byte> result;     ///< of a reply; 1 means accepted
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
