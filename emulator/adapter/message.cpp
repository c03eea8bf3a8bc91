#include "emulator/adapter/message.h"

#include <algorithm>
#include <utility>

#include "catalogue/setting_objects.h"
#include "npa/packet.h"

namespace emulator {

namespace {

using npa::Byte;
using Kind = Message::Kind;

constexpr std::size_t CommandOffset = 4;
constexpr std::size_t DataOffset = 5;
constexpr std::size_t ObjectsOffset = DataOffset + npa::DataKind{}.size();

/// Whether the packet is a method call; its text follows the header.
bool isObjectStoreCall(std::span<const Byte> packet) {
  const std::span header = std::span(npa::ObjStoreNpaHeader).subspan(CommandOffset);
  return packet.size() >= npa::ObjStoreNpaHeader.size() &&
         std::ranges::equal(packet.subspan(CommandOffset, header.size()), header);
}

bool opensWith(std::span<const Byte> packet, npa::DataKind kind) {
  return packet.size() >= ObjectsOffset && packet[CommandOffset] == npa::RequestCommand &&
         std::ranges::equal(packet.subspan(DataOffset, kind.size()), kind);
}

/// Hides the last `count` bytes of the packet.
void hideEnd(Message& message, std::size_t count) {
  std::fill_n(message.secretBytes.rbegin(), count, true);
}

/// Reads the setting objects of `inner`, which is the end of the message's packet or all of it.
bool parseSettings(Message& message, std::span<const Byte> inner) {
  const std::size_t innerStart = message.packet.size() - inner.size();
  std::vector<catalogue::SettingObject> objects;
  const bool isWhole = catalogue::readSettingObjects(inner.subspan(ObjectsOffset), objects);
  for (const catalogue::SettingObject& object : objects) {
    if (catalogue::isSecret(object.key)) {
      const auto offset = innerStart + static_cast<std::size_t>(object.value.data() - inner.data());
      std::fill_n(message.secretBytes.begin() + static_cast<std::ptrdiff_t>(offset),
                  object.value.size(), true);
    }
    message.settings.push_back({object.key, npa::Bytes(object.value.begin(), object.value.end())});
  }
  return isWhole;
}

Kind parseInner(Message& message, std::span<const Byte> inner) {
  if (opensWith(inner, npa::DataQuery)) {
    if (inner.size() != npa::QuerySize) {
      return Kind::Malformed;
    }
    message.asked = {inner[npa::QuerySize - 2], inner[npa::QuerySize - 1]};
    return Kind::Query;
  }
  if (opensWith(inner, npa::DataSettings) || opensWith(inner, npa::DataSingleSettings)) {
    return parseSettings(message, inner) ? Kind::StoreSettings : Kind::Malformed;
  }
  if (isObjectStoreCall(inner)) {
    const auto text = inner.subspan(npa::ObjStoreNpaHeader.size());
    message.call = parseMethodCall(std::string(text.begin(), text.end()));
    return Kind::ObjectStoreCall;
  }
  return std::ranges::equal(inner, npa::usbSniff) ? Kind::Sniff : Kind::Unknown;
}

/// The packet inside a wrapper; empty when its lengths contradict the wrapper's.
std::span<const Byte> unwrap(std::span<const Byte> packet) {
  if (packet.size() < npa::WrapHeaderSize + npa::LengthHeaderSize) {
    return {};
  }
  const std::span<const Byte> inner = packet.subspan(npa::WrapHeaderSize);
  const bool consistent = npa::numberAt(packet, ObjectsOffset) == inner.size() &&
                          inner[0] == npa::StartByte &&
                          catalogue::packetSize(inner) == inner.size();
  return consistent ? inner : std::span<const Byte>();
}

/// Whether it is known where in the packet keys may stand; if not, they may anywhere.
bool isUnderstood(const Message& message) {
  switch (message.kind) {
    case Kind::Query:
    case Kind::StoreSettings:
    case Kind::Sniff:
      return true;
    case Kind::ObjectStoreCall:
      return std::holds_alternative<MethodCall>(*message.call);
    case Kind::Unknown:
    case Kind::Malformed:
      return false;
  }
  return false;
}

std::string_view kindText(Kind kind) {
  switch (kind) {
    case Kind::Query:
      return "query";
    case Kind::StoreSettings:
      return "store settings";
    case Kind::Sniff:
      return "sniff";
    case Kind::ObjectStoreCall:
      return "object-store call";
    case Kind::Unknown:
      return "unknown packet";
    case Kind::Malformed:
      return "malformed packet";
  }
  return {};
}

}  // namespace

Message parseMessage(npa::Bytes packet) {
  Message message;
  message.packet = std::move(packet);
  message.secretBytes.assign(message.packet.size(), false);
  std::span<const Byte> inner(message.packet);
  message.wrapped = opensWith(inner, npa::DataWrapped);
  if (message.wrapped) {
    inner = unwrap(inner);
    if (inner.empty()) {
      message.kind = Kind::Malformed;
      hideEnd(message, message.packet.size());
      return message;
    }
  }
  message.kind = parseInner(message, inner);
  if (!isUnderstood(message) && inner.size() > DataOffset) {
    hideEnd(message, inner.size() - DataOffset);
  }
  return message;
}

std::string describe(const Message& message, bool showSecrets) {
  std::string text(kindText(message.kind));
  text.append(message.wrapped ? ", wrapped" : "");
  if (message.kind == Kind::Query) {
    const catalogue::SettingInfo* const info = catalogue::findSetting(message.asked);
    text.append(": ").append(info != nullptr ? info->name : "a setting that is not known");
  }
  if (message.kind == Kind::ObjectStoreCall) {
    const auto* const call = std::get_if<MethodCall>(&*message.call);
    text.append(": ").append(call != nullptr ? describe(*call) : "cannot be read");
  }
  const char* separator = ": ";
  for (const Message::Setting& setting : message.settings) {
    text.append(separator).append(
        catalogue::describeSetting(setting.key, setting.value, showSecrets));
    separator = ", ";
  }
  return text;
}

}  // namespace emulator
