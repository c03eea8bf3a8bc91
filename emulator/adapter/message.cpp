#include "emulator/adapter/message.h"

#include <algorithm>
#include <utility>

#include "catalogue/packet_grammar.h"
#include "npa/packet.h"

namespace emulator {

namespace {

using Kind = Message::Kind;

/// Hides the last `count` bytes of the packet.
void hideEnd(Message& message, std::size_t count) {
  std::fill_n(message.secretBytes.rbegin(), count, true);
}

Kind parseRecord(Message& message, catalogue::Data content) {
  const catalogue::Record record = catalogue::readRecord(content);
  if (!record.isQuery()) {
    return Kind::Malformed;
  }
  message.asked = *record.key;
  return Kind::Query;
}

/// Reads settings, whose bytes are part of the message's packet.
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
  return Kind::ObjectStoreCall;
}

/// Reads a packet that is the end of the message's packet, or all of it.
Kind parseInner(Message& message, const catalogue::PacketParts& inner) {
  const catalogue::Body body = catalogue::readBody(inner.body);
  switch (body.kind) {
    case catalogue::Body::Kind::Record:
      return parseRecord(message, body.content);
    case catalogue::Body::Kind::SettingsGroup:
    case catalogue::Body::Kind::SingleSettings:
      return parseSettings(message, body.content);
    case catalogue::Body::Kind::ObjectStoreCall:
      return parseCall(message, body.content);
    case catalogue::Body::Kind::Wrapper:
    case catalogue::Body::Kind::Unknown:
      break;
  }
  const bool isSniff = inner.kind == catalogue::PacketParts::Kind::Announcement;
  return isSniff ? Kind::Sniff : Kind::Unknown;
}

/// The packet inside a wrapper; nothing if its lengths contradict the wrapper's.
std::optional<catalogue::Data> unwrap(catalogue::Data content) {
  const catalogue::Wrapper wrapper = catalogue::readWrapper(content);
  catalogue::Cursor cursor(wrapper.inside);
  const auto inner = cursor.packet();
  const bool consistent = wrapper.isWhole() && wrapper.behind.empty() && cursor.rest().empty();
  return consistent ? inner : std::nullopt;
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
    // All but the command byte.
    hideEnd(message, inner.body.size() - 1);
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
