// JsonReport: builds the members of the JSON document. The problems of an input follow all packets
// of this input.

#include "decoder/json_report.h"

#include <array>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
#include <utility>

#include "catalogue/hex_text.h"
#include "decoder/call_text.h"
#include "decoder/words.h"

namespace decoder {

namespace {

using Json = nlohmann::ordered_json;
using SettingKind = catalogue::SettingInfo::Kind;

std::string hexByte(npa::Byte byte) {
  return catalogue::hexText(std::array{byte});
}

/// Returns the members that describe a place. Each packet and each problem begins with these
/// members.
Json placeOf(const Stream& stream, Place place) {
  const std::string unit = stream.unit == Stream::Unit::Line ? "line" : "frame";
  Json json = {{unit, place.first}};
  if (place.last != place.first) {
    json["last_" + unit] = place.last;
  }
  if (!stream.device.empty()) {
    json["device"] = stream.device;
  }
  return json;
}

/// Returns the JSON text in one line.
std::string textOf(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

/// Adds the members for the value of a setting. `info` is null for an unknown setting.
void addValue(Json& json, const catalogue::SettingInfo* info, const Bytes& value) {
  if (info == nullptr) {
    json["bytes"] = catalogue::hexText(value);
    return;
  }
  switch (info->kind) {
    case SettingKind::Text: {
      const auto text = catalogue::withoutTerminator(value);
      json["value"] = std::string(text.begin(), text.end());
      break;
    }
    case SettingKind::Address:
      json["value"] = catalogue::addressText(value);
      break;
    case SettingKind::Number:
    case SettingKind::Flag: {
      const std::optional<std::size_t> number = catalogue::numberOf(value);
      if (!number) {
        json["bytes"] = catalogue::hexText(value);
        break;
      }
      json["value"] = *number;
      if (*number < info->numberNames.size()) {
        json["meaning"] = info->numberNames[*number];
      }
      break;
    }
  }
}

Json settingOf(const Setting& setting, bool showSecrets) {
  const catalogue::SettingInfo* const info = catalogue::findSetting(setting.key);
  Json json = {{"group", hexByte(setting.key.group)}, {"object", hexByte(setting.key.object)}};
  if (const auto group = catalogue::groupName(setting.key.group); !group.empty()) {
    json["group_name"] = group;
  }
  if (info != nullptr) {
    json["name"] = info->name;
  }
  if (!setting.value) {
    return json;
  }
  json["size"] = setting.value->size();
  if (catalogue::isSecret(setting.key) && !showSecrets) {
    json["masked"] = true;
  } else {
    addValue(json, info, *setting.value);
  }
  return json;
}

void addIfAny(Json& json, const char* name, const std::string& text) {
  if (!text.empty()) {
    json[name] = text;
  }
}

Json contentOf(const Content& content, bool showSecrets) {
  Json json = {{"kind", kindText(content.kind)}};
  if (content.kind == Content::Kind::Stored) {
    json["accepted"] = content.result == 1;
    json["result"] = content.result;
  }
  addIfAny(json, "problem", content.problem);
  for (const Setting& setting : content.settings) {
    json["settings"].push_back(settingOf(setting, showSecrets));
  }
  if (content.kind == Content::Kind::MethodCall || content.kind == Content::Kind::MethodReply) {
    const std::optional<CallText> call = readCallText(content.xml);
    json["well_formed"] = call.has_value();
    if (call) {
      addIfAny(json, "method", call->method);
      addIfAny(json, "request_id", call->requestId);
      addIfAny(json, "status", call->status);
      addIfAny(json, "message", call->message);
    }
    json["xml"] = content.xml;
  }
  if (!content.data.empty()) {
    json["size"] = content.data.size();
    if (showSecrets) {
      json["bytes"] = catalogue::hexText(content.data);
    } else {
      json["masked"] = true;
    }
  }
  return json;
}

Json packetOf(const Packet& packet, bool showSecrets) {
  Json json = placeOf(packet.stream, packet.place);
  json["role"] = roleText(packet);
  json["size"] = packet.size;
  json["wrapped"] = packet.isWrapped;
  if (packet.isCollected) {
    json["collected"] = true;
  } else {
    json["flag"] = hexByte(packet.flag);
    json["more_follows"] = hasMoreFollowing(packet);
  }
  json["contents"] = Json::array();
  for (const Content& content : packet.contents) {
    json["contents"].push_back(contentOf(content, showSecrets));
  }
  return json;
}

}  // namespace

JsonReport::JsonReport(Sink sink, bool showSecrets)
    : m_Sink(std::move(sink)), m_ShowSecrets(showSecrets) {}

void JsonReport::beginInput(const std::string& name) {
  endInput();
  ++m_Inputs;
  m_Sink((m_Inputs == 1 ? "{\"inputs\": [\n{\"input\": " : ",\n{\"input\": ") + textOf(name) +
         ", \"packets\": [");
}

void JsonReport::packet(const Packet& packet) {
  const bool showSecrets = m_ShowSecrets && !packet.stream.hasHiddenBytes;
  m_Sink((m_Packets == 0 ? "\n" : ",\n") + textOf(packetOf(packet, showSecrets)));
  ++m_Packets;
}

void JsonReport::problem(const Problem& problem) {
  Json json = placeOf(problem.stream, problem.place);
  json["text"] = problem.text;
  m_Problems.push_back(textOf(json));
}

void JsonReport::unreadable(const std::string& reason) {
  m_Unreadable = reason;
}

void JsonReport::endInput() {
  if (m_Inputs == 0) {
    return;
  }
  m_Sink("], \"problems\": [");
  const char* separator = "\n";
  for (const std::string& problem : m_Problems) {
    m_Sink(separator + problem);
    separator = ",\n";
  }
  m_Sink(m_Unreadable.empty() ? "]}" : "], \"unreadable\": " + textOf(m_Unreadable) + "}");
  m_Packets = 0;
  m_Problems.clear();
  m_Unreadable.clear();
}

void JsonReport::finish() {
  endInput();
  m_Sink(m_Inputs == 0 ? "{\"inputs\": []}\n" : "\n]}\n");
}

}  // namespace decoder
