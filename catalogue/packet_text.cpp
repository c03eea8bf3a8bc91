#include "catalogue/packet_text.h"

#include <algorithm>

#include "catalogue/hex_text.h"
#include "catalogue/setting_catalogue.h"

namespace catalogue {

namespace {

/// Builds the text of one packet.
class Describer {
 public:
  explicit Describer(Data packet) : m_Packet(packet), m_Hidden(packet.size(), false) {}

  PacketText describe() {
    PacketParts parts = readPacketParts(m_Packet);
    Body body = readBody(parts.body);
    if (body.kind == Body::Kind::Wrapper) {
      const Wrapper wrapper = readWrapper(body.content);
      Cursor cursor(wrapper.inside);
      const auto inner = cursor.packet();
      if (!inner || !cursor.rest().empty() || !wrapper.isWhole()) {
        hide(body.content);
        return text("a wrapper whose packet is not whole");
      }
      m_Prefix = "wrapped: ";
      parts = readPacketParts(*inner);
      body = readBody(parts.body);
    }
    return describe(parts, body);
  }

 private:
  PacketText describe(const PacketParts& parts, const Body& body) {
    if (parts.kind == PacketParts::Kind::Announcement) {
      return text("a method call follows");
    }
    if (parts.kind == PacketParts::Kind::Refusal) {
      return text("refused");
    }
    switch (body.kind) {
      case Body::Kind::QueryOrValue:
        return describe(readQueryOrValue(body.content));
      case Body::Kind::SettingsGroup:
      case Body::Kind::SingleSettings:
        return describe(readSettings(body.content));
      case Body::Kind::MethodCall:
        return text("a method call or its reply");
      case Body::Kind::Wrapper:
      case Body::Kind::Unknown:
        break;
    }
    hide(body.content);
    return text("not understood");
  }

  PacketText describe(const QueryOrValue& record) {
    if (record.isQuery()) {
      const SettingInfo* const info = findSetting(*record.key);
      return text(std::string("query: ").append(info != nullptr ? info->name : "unknown setting"));
    }
    if (!record.isValue()) {
      hide(record.rest);
      return text("a record that is not whole");
    }
    return text("reply: " + value(*record.key, record.rest));
  }

  PacketText describe(const Settings& settings) {
    if (settings.result) {
      return text(*settings.result == Accepted ? "accepted" : "not accepted");
    }
    std::string words;
    for (const SettingObject& object : settings.objects) {
      words.append(words.empty() ? "store " : ", ").append(value(object.key, object.value));
    }
    if (!settings.rest.empty()) {
      hide(settings.rest);
      words.append(" and bytes that are not understood");
    }
    return text(words);
  }

  std::string value(npa::SettingKey key, Data bytes) {
    if (isSecret(key)) {
      hide(bytes);
    }
    return describeSetting(key, bytes, false);
  }

  /// Masks a part of the packet.
  void hide(Data part) {
    if (!part.empty()) {
      std::fill_n(m_Hidden.begin() + (part.data() - m_Packet.data()), part.size(), true);
    }
  }

  PacketText text(const std::string& meaning) const {
    return {hexText(m_Packet, m_Hidden), m_Prefix + meaning};
  }

  static constexpr npa::Byte Accepted = 0x01;

  Data m_Packet;
  std::vector<bool> m_Hidden;
  std::string m_Prefix;
};

}  // namespace

PacketText packetText(Data packet) {
  return Describer(packet).describe();
}

}  // namespace catalogue
