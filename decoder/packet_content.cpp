#include "decoder/packet_content.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "catalogue/setting_objects.h"
#include "npa/packet.h"

namespace decoder {

namespace {

using npa::Byte;
using Data = std::span<const Byte>;
using Kind = Content::Kind;

constexpr std::size_t CommandOffset = npa::FlagOffset + 1;
constexpr std::size_t KindSize = npa::DataKind{}.size();
constexpr std::size_t KeySize = 2;
constexpr std::size_t SizeFieldSize = 2;
/// What stands behind the command byte of a method call, and of a reply to one.
constexpr std::size_t CallHeadOffset = 5;
/// Between head and text of a reply: a zero byte, and the command byte of a second packet or what
/// stands for it.
constexpr Byte ReplyMark = 0x00;

bool opensWith(Data data, Data head) {
  return data.size() >= head.size() && std::ranges::equal(data.first(head.size()), head);
}

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

/// `data` is what follows the kind.
Content readQuery(Data data) {
  if (data.size() < KeySize) {
    return malformed("a query without a setting", data);
  }
  const npa::SettingKey key = {data[0], data[1]};
  data = data.subspan(KeySize);
  Content content;
  content.kind = Kind::Query;
  content.settings.push_back({key, std::nullopt});
  if (data.empty()) {
    return content;
  }
  if (data.size() < SizeFieldSize) {
    return malformed("a byte behind a query", data);
  }
  const std::size_t sizeField = npa::numberAt(data, 0);
  data = data.subspan(SizeFieldSize);
  if (catalogue::sizeOfValue(key, sizeField, data.size()) != data.size()) {
    Content wrong = malformed(
        "a value should have " + countOf(sizeField) + ", has " + std::to_string(data.size()), data);
    wrong.settings = std::move(content.settings);
    return wrong;
  }
  content.kind = Kind::Value;
  content.settings.back().value = Bytes(data.begin(), data.end());
  return content;
}

Content readSettings(Data data, Kind kind) {
  Content content;
  if (data.size() == 1) {
    content.kind = Kind::Stored;
    content.result = data[0];
    return content;
  }
  std::vector<catalogue::SettingObject> objects;
  content.kind = kind;
  const bool isWhole = catalogue::readSettingObjects(data, objects);
  std::size_t used = 0;
  for (const catalogue::SettingObject& object : objects) {
    content.settings.push_back({object.key, Bytes(object.value.begin(), object.value.end())});
    used += npa::ObjectHeaderSize + object.value.size();
  }
  if (!isWhole) {
    Content cut = malformed("a setting that does not fit in", data.subspan(used));
    cut.settings = std::move(content.settings);
    return cut;
  }
  return content;
}

std::string textOf(Data data) {
  return {data.begin(), data.end()};
}

Content readMethodCall(Data data) {
  Content content;
  const bool isReply = !data.empty() && data[0] == ReplyMark;
  content.kind = isReply ? Kind::MethodReply : Kind::MethodCall;
  if (!isReply) {
    content.xml = textOf(data);
    return content;
  }
  data = data.subspan(1);
  if (!data.empty() && data[0] == npa::RequestCommand) {
    data = data.subspan(1);
  }
  content.xml = textOf(data);
  return content;
}

/// `body` begins with the command byte.
Content readBody(Data body) {
  const Data callHead = Data(npa::ObjStoreNpaHeader).subspan(CommandOffset);
  if (opensWith(body, callHead)) {
    return readMethodCall(body.subspan(callHead.size()));
  }
  if (body.empty() || body[0] != npa::RequestCommand) {
    return unknown(body);
  }
  const Data data = body.subspan(1);
  if (opensWith(data, npa::DataQuery)) {
    return readQuery(data.subspan(KindSize));
  }
  if (opensWith(data, npa::DataSettings)) {
    return readSettings(data.subspan(KindSize), Kind::StoreGroup);
  }
  if (opensWith(data, npa::DataSingleSettings)) {
    return readSettings(data.subspan(KindSize), Kind::StoreSingly);
  }
  return unknown(data);
}

/// A whole packet, which is no wrapper.
Content readBare(Data bytes) {
  if (bytes.size() <= npa::FlagOffset) {
    return malformed("a packet without a flag byte", {});
  }
  Content content;
  if (std::ranges::equal(bytes, npa::usbSniff)) {
    content.kind = Kind::Announcement;
    return content;
  }
  const Byte flag = bytes[npa::FlagOffset];
  if (flag == npa::FlagRefused) {
    content.kind = Kind::Refusal;
    return content;
  }
  if ((flag & npa::FlagEndsExchange) != 0) {
    content.kind = Kind::EndOfExchange;
    return content;
  }
  return readBody(bytes.subspan(CommandOffset));
}

/// The packets inside a wrapper, one behind the other.
void readInside(Data inside, std::vector<Content>& contents) {
  while (!inside.empty()) {
    if (inside[0] != npa::StartByte) {
      contents.push_back(malformed(countOf(inside.size()) + " outside any packet", inside));
      return;
    }
    const std::size_t size =
        inside.size() < npa::LengthHeaderSize ? inside.size() + 1 : catalogue::packetSize(inside);
    if (size > inside.size()) {
      contents.push_back(malformed("a packet that is cut inside a wrapper", inside));
      return;
    }
    contents.push_back(readBare(inside.first(size)));
    inside = inside.subspan(size);
  }
}

/// Reads what is wrapped. `data` is what follows the command byte; returns how much of it counts.
std::size_t readWrapper(Data data, std::vector<Content>& contents) {
  constexpr std::size_t head = KindSize + SizeFieldSize;
  if (data.size() < head) {
    contents.push_back(malformed("a wrapper without a size", data));
    return data.size();
  }
  const std::size_t size = npa::numberAt(data, KindSize);
  const Data inside = data.subspan(head);
  if (size > inside.size()) {
    contents.push_back(malformed(
        "a wrapper should hold " + countOf(size) + ", holds " + std::to_string(inside.size()),
        inside));
    return data.size();
  }
  if (size == 0) {
    contents.push_back(malformed("an empty wrapper", {}));
  }
  readInside(inside.first(size), contents);
  return head + size;
}

/// How many bytes of a collected reply, command byte included, belong to its first packet, which is
/// no wrapper: a value tells its size, all else is taken to be the last.
std::size_t collectedSize(Data body) {
  constexpr std::size_t valueHead = 1 + KindSize + KeySize + SizeFieldSize;
  constexpr std::size_t resultSize = 1 + KindSize + 1;
  if (body.size() >= valueHead && opensWith(body.subspan(1), npa::DataQuery)) {
    return std::min(body.size(), valueHead + npa::numberAt(body, valueHead - SizeFieldSize));
  }
  if (opensWith(body.subspan(1), npa::DataSettings)) {
    return std::min(body.size(), resultSize);
  }
  return body.size();
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
  Packet packet;
  packet.size = bytes.size();
  packet.flag = bytes.size() > npa::FlagOffset ? bytes[npa::FlagOffset] : Byte{0};
  const bool counts = (packet.flag & npa::FlagEndsExchange) == 0;
  const Data body = bytes.size() > CommandOffset ? bytes.subspan(CommandOffset) : Data();
  if (counts && !body.empty() && body[0] == npa::RequestCommand &&
      opensWith(body.subspan(1), npa::DataWrapped)) {
    packet.isWrapped = true;
    const Data data = body.subspan(1);
    const std::size_t used = readWrapper(data, packet.contents);
    if (used < data.size()) {
      packet.contents.push_back(
          malformed(countOf(data.size() - used) + " behind what is wrapped", data.subspan(used)));
    }
    return packet;
  }
  packet.contents.push_back(readBare(bytes));
  return packet;
}

Packet readCollectedReply(Data bytes) {
  Packet packet;
  packet.size = bytes.size();
  packet.isCollected = true;
  const Data callHead = Data(npa::ObjStoreNpaHeader).subspan(CommandOffset, CallHeadOffset);
  if (opensWith(bytes, callHead)) {
    // Between the texts of several packets stand their command bytes, which no ASCII text has.
    Content content = readBody(bytes);
    std::erase(content.xml, static_cast<char>(npa::RequestCommand));
    packet.contents.push_back(std::move(content));
    return packet;
  }
  while (!bytes.empty()) {
    if (bytes[0] == npa::RequestCommand && opensWith(bytes.subspan(1), npa::DataWrapped)) {
      packet.isWrapped = true;
      bytes = bytes.subspan(1 + readWrapper(bytes.subspan(1), packet.contents));
    } else {
      const std::size_t size = collectedSize(bytes);
      packet.contents.push_back(readBody(bytes.first(size)));
      bytes = bytes.subspan(size);
    }
  }
  return packet;
}

}  // namespace decoder
