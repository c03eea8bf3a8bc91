// Decodes packets, and describes what is wrong with malformed packets.

#include "decoder/packet_content.h"

#include <algorithm>
#include <array>
#include <utility>

#include "catalogue/packet_grammar.h"
#include "npa/packet.h"

namespace decoder {

namespace {

using catalogue::Body;
using catalogue::Cursor;
using catalogue::Data;
using catalogue::PacketParts;
using Kind = Content::Kind;

// The bytes between the head and the XML in the reply to a method call: a zero byte and a command
// byte. In a reply of several packets, the command byte belongs to the second packet. In a reply of
// one packet, it is part of the data.
constexpr std::array<npa::Byte, 1> ReplyMark = {0x00};

Content malformed(std::string problem, Data data) {
  Content content;
  content.kind = Kind::Malformed;
  content.problem = std::move(problem);
  content.data.assign(data.begin(), data.end());
  return content;
}

Content unknown(Data data) {
  Content content;
  content.data.assign(data.begin(), data.end());
  return content;
}

Content readQueryOrValue(Data data) {
  const catalogue::QueryOrValue parsed = catalogue::readQueryOrValue(data);
  if (!parsed.key) {
    return malformed("cut query", data);
  }
  Content content;
  content.kind = parsed.isQuery() ? Kind::Query : Kind::Value;
  content.settings.push_back({*parsed.key, std::nullopt});
  if (parsed.isQuery()) {
    return content;
  }
  if (!parsed.sizeField) {
    return malformed(countOf(parsed.rest.size()) + " after the query", parsed.rest);
  }
  if (!parsed.isValue()) {
    Content wrong = malformed("expected a value of " + countOf(*parsed.sizeField) + ", got " +
                                  std::to_string(parsed.rest.size()),
                              parsed.rest);
    wrong.settings = std::move(content.settings);
    return wrong;
  }
  content.settings.back().value = Bytes(parsed.rest.begin(), parsed.rest.end());
  return content;
}

Content readSettings(Data data, Kind kind) {
  const catalogue::Settings settings = catalogue::readSettings(data);
  Content content;
  content.kind = kind;
  if (settings.result) {
    content.kind = Kind::Stored;
    content.result = *settings.result;
    return content;
  }
  if (!settings.rest.empty()) {
    content = malformed("cut setting object", settings.rest);
  }
  for (const catalogue::SettingObject& object : settings.objects) {
    content.settings.push_back({object.key, Bytes(object.value.begin(), object.value.end())});
  }
  return content;
}

Content readMethodCall(Data data) {
  Cursor cursor(data);
  Content content;
  content.kind = Kind::MethodCall;
  if (cursor.skip(ReplyMark)) {
    content.kind = Kind::MethodReply;
    cursor.skip(CommandMark);
  }
  content.xml.assign(cursor.rest().begin(), cursor.rest().end());
  return content;
}

/// Decodes the bytes after a flag byte. For a wrapper the kind is `Unknown`.
Content readContent(Data bytes) {
  const Body body = catalogue::readBody(bytes);
  switch (body.kind) {
    case Body::Kind::QueryOrValue:
      return readQueryOrValue(body.content);
    case Body::Kind::SettingsGroup:
      return readSettings(body.content, Kind::StoreGroup);
    case Body::Kind::SingleSettings:
      return readSettings(body.content, Kind::StoreSingly);
    case Body::Kind::MethodCall:
      return readMethodCall(body.content);
    case Body::Kind::Wrapper:
      return unknown(bytes.subspan(CommandMark.size()));
    case Body::Kind::Unknown:
      break;
  }
  return unknown(body.content);
}

/// Decodes a complete packet that is not a wrapper.
Content readBare(const PacketParts& packet) {
  Content content;
  switch (packet.kind) {
    case PacketParts::Kind::NoFlag:
      return malformed("no flag byte", {});
    case PacketParts::Kind::Announcement:
      content.kind = Kind::Announcement;
      return content;
    case PacketParts::Kind::Refusal:
      content.kind = Kind::Refusal;
      return content;
    case PacketParts::Kind::EndOfExchange:
      content.kind = Kind::EndOfExchange;
      return content;
    case PacketParts::Kind::Content:
      break;
  }
  return readContent(packet.body);
}

/// Decodes the packets inside a wrapper.
void readInside(Data inside, std::vector<Content>& contents) {
  Cursor cursor(inside);
  while (!cursor.rest().empty()) {
    const Data rest = cursor.rest();
    if (rest.front() != npa::StartByte) {
      contents.push_back(malformed(countOf(rest.size()) + " outside any packet", rest));
      return;
    }
    const auto packet = cursor.packet();
    if (!packet) {
      contents.push_back(malformed("cut packet in the wrapper", rest));
      return;
    }
    contents.push_back(readBare(catalogue::readPacketParts(*packet)));
  }
}

/// Decodes a wrapper with the body `body`. `bytes` are the bytes of the body, from the command byte
/// on. Returns the bytes that follow the wrapped packets.
Data readWrapper(const Body& body, Data bytes, std::vector<Content>& contents) {
  const catalogue::Wrapper wrapper = catalogue::readWrapper(body.content);
  if (!wrapper.size) {
    contents.push_back(malformed("wrapper without a size", bytes.subspan(CommandMark.size())));
    return {};
  }
  if (!wrapper.isWhole()) {
    contents.push_back(malformed("expected " + countOf(*wrapper.size) + " in the wrapper, got " +
                                     std::to_string(wrapper.inside.size()),
                                 wrapper.inside));
    return {};
  }
  if (wrapper.inside.empty()) {
    contents.push_back(malformed("empty wrapper", {}));
  }
  readInside(wrapper.inside, contents);
  return wrapper.after;
}

/// Returns the size of the first packet of a collected reply, with its command byte. The packet is
/// not a wrapper. A reply to settings has one byte of data. The reply to a query has a size field.
/// Any other packet is assumed to be the last packet of the collected reply.
std::size_t collectedSize(Data bytes) {
  Cursor cursor(bytes);
  cursor.byte();
  if (cursor.skip(npa::DataSettings)) {
    cursor.byte();
    return bytes.size() - cursor.rest().size();
  }
  if (cursor.skip(npa::DataQuery)) {
    const catalogue::QueryOrValue parsed = catalogue::readQueryOrValue(cursor.rest());
    const std::size_t valueSize = parsed.sizeField.value_or(parsed.rest.size());
    return bytes.size() - parsed.rest.size() + std::min(valueSize, parsed.rest.size());
  }
  return bytes.size();
}

}  // namespace

bool isUnderstood(const Packet& packet) {
  return std::ranges::none_of(packet.contents, [](const Content& content) {
    return content.kind == Kind::Unknown || content.kind == Kind::Malformed;
  });
}

bool hasMoreFollowing(const Packet& packet) {
  const bool counts = packet.flag != npa::FlagRefused && (packet.flag & npa::FlagEndsExchange) == 0;
  return counts && (packet.flag & npa::FlagMoreFollows) != 0;
}

Packet readPacket(Data bytes) {
  const PacketParts parts = catalogue::readPacketParts(bytes);
  Packet packet;
  packet.size = bytes.size();
  packet.flag = parts.flag;
  const Body body = catalogue::readBody(parts.body);
  packet.isWrapped = parts.kind == PacketParts::Kind::Content && body.kind == Body::Kind::Wrapper;
  if (!packet.isWrapped) {
    packet.contents.push_back(readBare(parts));
    return packet;
  }
  const Data after = readWrapper(body, parts.body, packet.contents);
  if (!after.empty()) {
    packet.contents.push_back(
        malformed(countOf(after.size()) + " after the wrapped packets", after));
  }
  return packet;
}

Packet readCollectedReply(Data bytes) {
  Packet packet;
  packet.size = bytes.size();
  packet.isCollected = true;
  if (catalogue::readBody(bytes).kind == Body::Kind::MethodCall) {
    // In a collected reply the texts of the packets have command bytes between them. Removing these
    // bytes does not change ASCII text, because ASCII has no such byte.
    Content content = readContent(bytes);
    std::erase(content.xml, static_cast<char>(npa::RequestCommand));
    packet.contents.push_back(std::move(content));
    return packet;
  }
  while (!bytes.empty()) {
    const Body body = catalogue::readBody(bytes);
    if (body.kind == Body::Kind::Wrapper) {
      packet.isWrapped = true;
      bytes = readWrapper(body, bytes, packet.contents);
    } else {
      const std::size_t size = collectedSize(bytes);
      packet.contents.push_back(readContent(bytes.first(size)));
      bytes = bytes.subspan(size);
    }
  }
  return packet;
}

}  // namespace decoder
