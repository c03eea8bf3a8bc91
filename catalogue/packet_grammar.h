#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "npa/packet.h"
#include "npa/setting_keys.h"

/// What a packet consists of. `npa/packet.h` has the layout; a wrapper may hold several packets,
/// and the answer to a query is the query with size(2) and the value after it.
///
/// The readers judge nothing: they return what they found, and whether it is complete. Their
/// results point into the bytes that they were given.
namespace catalogue {

using Data = std::span<const npa::Byte>;

/// Takes bytes from the front of a range. Each operation checks first whether enough are left, and
/// takes nothing if not.
class Cursor {
 public:
  explicit Cursor(Data bytes) : m_Rest(bytes) {}

  /// What is not taken yet.
  Data rest() const { return m_Rest; }

  /// Takes `head` if the rest begins with it; returns whether it does.
  bool skip(Data head);
  std::optional<Data> bytes(std::size_t count);
  std::optional<npa::Byte> byte();
  /// Takes a number of two bytes, big-endian.
  std::optional<std::size_t> number();
  /// Takes group and object.
  std::optional<npa::SettingKey> key();
  /// Takes a packet, from its start byte on. Nothing if there is another byte, or the packet is
  /// cut.
  std::optional<Data> packet();

 private:
  Data m_Rest;
};

/// Returns the size of the packet at the start of `bytes` (at least 3 bytes), which its length
/// field gives. One packet, which its first nine bytes identify, has four bytes more than its
/// length says: the one that generates a certificate.
std::size_t packetSize(Data bytes);

/// A whole packet.
struct PacketParts {
  enum class Kind {
    NoFlag,         ///< ends before its flag byte
    Announcement,   ///< the fixed packet ahead of a method call
    Refusal,        ///< by its flag byte
    EndOfExchange,  ///< by its flag byte
    Content,        ///< any other
  };

  Kind kind = Kind::NoFlag;
  npa::Byte flag = 0;
  Data body;  ///< of each kind: all that follows the flag byte
};

/// Takes a whole packet apart.
PacketParts readPacketParts(Data packet);

/// What follows a packet's flag byte.
struct Body {
  enum class Kind {
    Unknown,
    Record,          ///< a query or its answer
    SettingsGroup,   ///< settings to be stored together, or the result
    SingleSettings,  ///< settings to be stored one by one, or the result
    Wrapper,
    ObjectStoreCall,  ///< a method call or its reply
  };

  Kind kind = Kind::Unknown;
  /// What follows the bytes that give the kind. If it is unknown: what follows the usual command
  /// byte, or all bytes if the command is another.
  Data content;
};

/// Reads a packet's body, from the command byte on.
Body readBody(Data body);

/// The content of a query or its answer.
struct Record {
  std::optional<npa::SettingKey> key;    ///< none: less than that
  std::optional<std::size_t> sizeField;  ///< none: less than that, as in a query
  Data rest;                             ///< what follows: all of the value, or what cannot be read

  bool isQuery() const { return key && !sizeField && rest.empty(); }
  /// Whether the value has the size that its size field gives.
  bool isValue() const;
};

Record readRecord(Data content);

/// One setting object, `group object 00 size(2) value`.
struct SettingObject {
  npa::SettingKey key;
  Data value;
};

/// The content of a packet that stores settings, or of the reply.
struct Settings {
  std::optional<npa::Byte> result;     ///< of the reply: 1 is accepted
  std::vector<SettingObject> objects;  ///< the whole ones at the start
  Data rest;                           ///< what follows them; empty if they fill the content
};

Settings readSettings(Data content);

/// The content of a wrapper.
struct Wrapper {
  std::optional<std::size_t> size;  ///< none: less than a size field
  Data inside;                      ///< as many bytes, or fewer if there are no more
  Data behind;                      ///< what follows

  bool isWhole() const { return size && inside.size() == *size; }
};

Wrapper readWrapper(Data content);

}  // namespace catalogue
