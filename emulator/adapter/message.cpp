// Parses requests, and marks the bytes that are secret.

#include "emulator/adapter/message.h"

#include <algorithm>
#include <utility>

#include "catalogue/packet_grammar.h"
#include "npa/packet.h"

namespace emulator {

namespace {

using Kind = Message::Kind;

/// Marks the last `count` bytes of the packet as secret.
void hideEnd(Message& message, std::size_t count) {
  std::fill_n(message.secretBytes.rbegin(), count, true);
}

Kind parseQuery(Message& message, catalogue::Data content) {
  const catalogue::QueryOrValue parsed = catalogue::readQueryOrValue(content);
  if (!parsed.isQuery()) {
    return Kind::Malformed;
  }
  message.asked = *parsed.key;
  return Kind::Query;
}

/// Parses settings. `content` must be a part of the message's packet.
Kind parseSettings(Message& message, catalogue::Data content) {
  const catalogue::Settings settings = catalogue::readSettings(content);
  for (const catalogue::SettingObject& object : settings.objects) {
    if (catalogue::isSecret(object.key)) {
      const auto offset = object.value.data() - message.packet.data();
      std::fill_n(message.secretBytes.begin() + offset, object.value.size(), true);
    }
    message.settings.push_back({object.key, npa::Bytes(object.value.begin(), object.value.end())});
  }
  return settings.rest.empty() ? Kind::StoreSettings : Kind::Malformed;
}

Kind parseCall(Message& message, catalogue::Data text) {
  message.call = parseMethodCall(std::string(text.begin(), text.end()));
  return Kind::MethodCall;
}

/// Parses the inner packet and returns its kind. If the message's packet is bare, the inner packet
/// is this packet.
Kind parseInner(Message& message, const catalogue::PacketParts& inner) {
  const catalogue::Body body = catalogue::readBody(inner.body);
  switch (body.kind) {
    case catalogue::Body::Kind::QueryOrValue:
      return parseQuery(message, body.content);
    case catalogue::Body::Kind::SettingsGroup:
    case catalogue::Body::Kind::SingleSettings:
      return parseSettings(message, body.content);
    case catalogue::Body::Kind::MethodCall:
      return parseCall(message, body.content);
    case catalogue::Body::Kind::Wrapper:
    case catalogue::Body::Kind::Unknown:
      break;
  }
  const bool isAnnouncement = inner.kind == catalogue::PacketParts::Kind::Announcement;
  return isAnnouncement ? Kind::Announcement : Kind::Unknown;
}

/// Returns the packet inside a wrapper, or nothing if the lengths contradict each other.
std::optional<catalogue::Data> unwrap(catalogue::Data content) {
  const catalogue::Wrapper wrapper = catalogue::readWrapper(content);
  catalogue::Cursor cursor(wrapper.inside);
  const auto inner = cursor.packet();
  const bool consistent = wrapper.isWhole() && wrapper.after.empty() && cursor.rest().empty();
  return consistent ? inner : std::nullopt;
}

/// Returns true if the parser has found all secrets of the packet. Otherwise any byte of the packet
/// may be secret.
bool isUnderstood(const Message& message) {
  switch (message.kind) {
    case Kind::Query:
    case Kind::StoreSettings:
    case Kind::Announcement:
      return true;
    case Kind::MethodCall:
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
    case Kind::Announcement:
      return "announces a method call";
    case Kind::MethodCall:
      return "method call";
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
  catalogue::PacketParts inner = catalogue::readPacketParts(message.packet);
  const catalogue::Body body = catalogue::readBody(inner.body);
  message.wrapped = body.kind == catalogue::Body::Kind::Wrapper;
  if (message.wrapped) {
    const auto packetInside = unwrap(body.content);
    if (!packetInside) {
      message.kind = Kind::Malformed;
      hideEnd(message, message.packet.size());
      return message;
    }
    inner = catalogue::readPacketParts(*packetInside);
  }
  message.kind = parseInner(message, inner);
  if (!isUnderstood(message) && !inner.body.empty()) {
    // The command byte is not secret.
    hideEnd(message, inner.body.size() - 1);
  }
  return message;
}

std::string describe(const Message& message, bool showSecrets) {
  std::string text(kindText(message.kind));
  text.append(message.wrapped ? ", wrapped" : "");
  if (message.kind == Kind::Query) {
    const catalogue::SettingInfo* const info = catalogue::findSetting(message.asked);
    text.append(": ").append(info != nullptr ? info->name : "unknown setting");
  }
  if (message.kind == Kind::MethodCall) {
    const auto* const call = std::get_if<MethodCall>(&*message.call);
    text.append(": ").append(call != nullptr ? describe(*call) : "cannot be parsed");
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
