// Parses packets. The parsers check every length before they use the bytes.

#include "catalogue/packet_grammar.h"

#include <algorithm>
#include <array>

#include "catalogue/setting_catalogue.h"

namespace catalogue {

namespace {

/// The start of the packet that generates a certificate. The packet stores the setting 2A 0C, but
/// its length field has the value of a query's length field.
constexpr std::array<npa::Byte, 9> GenerateHead = {0xA5, 0x00, 0x06, 0x50, 0xE0,
                                                   0xDA, 0x01, 0x2A, 0x0C};
/// How many bytes this packet has after the bytes that its length field counts: the last three
/// bytes of the setting object's header, and one byte of value.
constexpr std::size_t GenerateRest = 4;

/// A kind of body, and the bytes that identify this kind. They follow the command byte.
struct BodyHead {
  Data bytes;
  Body::Kind kind;
};

constexpr std::array BodyHeads = {
    BodyHead{npa::DataQuery, Body::Kind::QueryOrValue},
    BodyHead{npa::DataSettings, Body::Kind::SettingsGroup},
    BodyHead{npa::DataSingleSettings, Body::Kind::SingleSettings},
    BodyHead{npa::DataWrapped, Body::Kind::Wrapper},
    BodyHead{Data(npa::ObjStoreNpaHeader).subspan(npa::FlagOffset + 2), Body::Kind::MethodCall},
};

bool beginsWith(Data bytes, Data head) {
  return bytes.size() >= head.size() && std::ranges::equal(bytes.first(head.size()), head);
}

/// Returns the size of a setting's value. `left` bytes follow the size field. If the size field of
/// the setting holds only the low byte of the size, the field 0 means 256 bytes, unless fewer bytes
/// are left. Hosts never send such a setting with an empty value.
std::size_t sizeOfValue(npa::SettingKey key, std::size_t sizeField, std::size_t left) {
  constexpr std::size_t longest = 256;
  if (sizeField != 0 || left < longest) {
    return sizeField;
  }
  const SettingInfo* const info = findSetting(key);
  return info != nullptr && info->sizeIsLowByte ? longest : 0;
}

/// Takes a setting object. Returns nothing if the object is cut.
std::optional<SettingObject> readSettingObject(Cursor& cursor) {
  const auto key = cursor.key();
  const auto flags = cursor.byte();
  const auto sizeField = cursor.number();
  if (!key || !flags || !sizeField) {
    return std::nullopt;
  }
  const auto value = cursor.bytes(sizeOfValue(*key, *sizeField, cursor.rest().size()));
  return value ? std::optional(SettingObject{*key, *value}) : std::nullopt;
}

}  // namespace

bool Cursor::skip(Data head) {
  return beginsWith(m_Rest, head) && bytes(head.size());
}

std::optional<Data> Cursor::bytes(std::size_t count) {
  if (m_Rest.size() < count) {
    return std::nullopt;
  }
  const Data taken = m_Rest.first(count);
  m_Rest = m_Rest.subspan(count);
  return taken;
}

std::optional<npa::Byte> Cursor::byte() {
  const auto taken = bytes(1);
  return taken ? std::optional((*taken)[0]) : std::nullopt;
}

std::optional<std::size_t> Cursor::number() {
  const auto taken = bytes(2);
  return taken ? std::optional(npa::numberAt(*taken, 0)) : std::nullopt;
}

std::optional<npa::SettingKey> Cursor::key() {
  const auto taken = bytes(2);
  return taken ? std::optional(npa::SettingKey{(*taken)[0], (*taken)[1]}) : std::nullopt;
}

std::optional<Data> Cursor::packet() {
  const bool hasHeader = m_Rest.size() >= npa::LengthHeaderSize && m_Rest.front() == npa::StartByte;
  return hasHeader ? bytes(packetSize(m_Rest)) : std::nullopt;
}

std::size_t packetSize(Data bytes) {
  const std::size_t size = npa::LengthHeaderSize + npa::numberAt(bytes, 1);
  return beginsWith(bytes, GenerateHead) ? size + GenerateRest : size;
}

PacketParts readPacketParts(Data packet) {
  using Kind = PacketParts::Kind;
  Cursor cursor(packet);
  const auto header = cursor.bytes(npa::LengthHeaderSize);
  const auto flag = cursor.byte();
  if (!header || !flag) {
    return {};
  }
  const auto kind = [&] {
    if (std::ranges::equal(packet, npa::usbSniff)) {
      return Kind::Announcement;
    }
    if (*flag == npa::FlagRefused) {
      return Kind::Refusal;
    }
    return (*flag & npa::FlagEndsExchange) != 0 ? Kind::EndOfExchange : Kind::Content;
  };
  return {kind(), *flag, cursor.rest()};
}

Body readBody(Data body) {
  Cursor cursor(body);
  if (!cursor.skip(std::array{npa::RequestCommand})) {
    return {Body::Kind::Unknown, body};
  }
  for (const BodyHead& head : BodyHeads) {
    if (cursor.skip(head.bytes)) {
      return {head.kind, cursor.rest()};
    }
  }
  return {Body::Kind::Unknown, cursor.rest()};
}

bool QueryOrValue::isValue() const {
  return key && sizeField && sizeOfValue(*key, *sizeField, rest.size()) == rest.size();
}

QueryOrValue readQueryOrValue(Data content) {
  Cursor cursor(content);
  QueryOrValue parsed;
  parsed.key = cursor.key();
  if (parsed.key) {
    parsed.sizeField = cursor.number();
  }
  parsed.rest = cursor.rest();
  return parsed;
}

Settings readSettings(Data content) {
  Settings settings;
  if (content.size() == 1) {
    settings.result = content.front();
  }
  Cursor cursor(content);
  settings.rest = content;
  while (const auto object = readSettingObject(cursor)) {
    settings.objects.push_back(*object);
    settings.rest = cursor.rest();
  }
  return settings;
}

Wrapper readWrapper(Data content) {
  Cursor cursor(content);
  Wrapper wrapper;
  wrapper.size = cursor.number();
  if (wrapper.size) {
    const auto inside = cursor.bytes(*wrapper.size);
    wrapper.inside = inside ? *inside : cursor.rest();
    wrapper.after = inside ? cursor.rest() : Data();
  } else {
    wrapper.after = cursor.rest();
  }
  return wrapper;
}

}  // namespace catalogue
