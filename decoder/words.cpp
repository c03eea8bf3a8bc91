// WordsReport: builds the lines of the text report.

#include "decoder/words.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "catalogue/hex_text.h"
#include "decoder/call_text.h"

namespace decoder {

namespace {

using Direction = Stream::Direction;
using Kind = Content::Kind;

constexpr std::string_view Indentation = "    ";

/// Returns a place as text: "line 3", "frames 3-5 (1:5)".
std::string placeText(const Stream& stream, Place place) {
  std::string text = stream.unit == Stream::Unit::Line ? "line" : "frame";
  text.append(place.first == place.last ? " " : "s ").append(std::to_string(place.first));
  if (place.first != place.last) {
    text.append("-").append(std::to_string(place.last));
  }
  return stream.device.empty() ? text : text.append(" (").append(stream.device).append(")");
}

/// Returns the first line of a packet, up to the kind of its first content.
std::string headText(const Packet& packet) {
  std::string text = placeText(packet.stream, packet.place);
  text.append(": ").append(roleText(packet)).append(packet.isWrapped ? ", wrapped" : ", bare");
  text.append(packet.isCollected ? ", collected" : "");
  text.append(hasMoreFollowing(packet) ? ", more follows" : "");
  return text.append(", ").append(countOf(packet.size));
}

/// Returns a setting as text: `wireless network 28 08: SSID = "home"`.
std::string settingText(const Setting& setting, bool showSecrets) {
  const npa::SettingKey key = setting.key;
  std::string text(catalogue::groupName(key.group));
  text.append(text.empty() ? "" : " ");
  text.append(catalogue::hexText(std::array{key.group, key.object})).append(": ");
  if (setting.value) {
    return text.append(catalogue::describeSetting(key, *setting.value, showSecrets));
  }
  const catalogue::SettingInfo* const info = catalogue::findSetting(key);
  return text.append(info == nullptr ? "unknown setting" : info->name);
}

void appendLine(std::string& text, std::string_view line) {
  text.append(Indentation).append(line).append("\n");
}

/// Appends the lines of an arbitrary text, escaped.
void appendLines(std::string& text, std::string_view lines) {
  while (!lines.empty()) {
    const std::size_t end = std::min(lines.find('\n'), lines.size());
    appendLine(text, catalogue::escaped(lines.substr(0, end)));
    lines.remove_prefix(std::min(end + 1, lines.size()));
  }
}

/// Returns the method and id of a call, or the status and message of a reply. Omits missing parts.
std::string callSummary(const CallText& call) {
  std::string text;
  if (!call.method.empty()) {
    text.append(" ").append(catalogue::escaped(call.method));
  }
  if (!call.requestId.empty()) {
    text.append(" (").append(catalogue::escaped(call.requestId)).append(")");
  }
  if (!call.status.empty()) {
    text.append(", status ").append(catalogue::escaped(call.status));
    text.append(" (").append(catalogue::escaped(call.message)).append(")");
  }
  return text;
}

/// Returns the text of a content. The text begins with ": " and continues a line; it may have more
/// lines.
std::string contentText(const Content& content, bool showSecrets) {
  std::string text = ": ";
  text.append(kindText(content.kind));
  const bool hasXml = content.kind == Kind::MethodCall || content.kind == Kind::MethodReply;
  const std::optional<CallText> call = hasXml ? readCallText(content.xml) : std::nullopt;
  if (content.kind == Kind::Stored) {
    text.append(content.result == 1 ? " accepted (" : " not accepted (");
    text.append(catalogue::hexText(std::array{content.result})).append(")");
  } else if (call) {
    text.append(callSummary(*call));
  } else if (hasXml) {
    text.append(", not well-formed XML");
  } else if (!content.problem.empty()) {
    text.append(", ").append(content.problem);
  }
  text.append("\n");
  for (const Setting& setting : content.settings) {
    appendLine(text, settingText(setting, showSecrets));
  }
  if (hasXml) {
    appendLines(text, call ? call->indented : content.xml);
  }
  if (!content.data.empty()) {
    appendLine(text, "data = " + (showSecrets ? catalogue::hexText(content.data)
                                              : "(" + countOf(content.data.size()) + ")"));
  }
  return text;
}

/// Returns the direction in which a content of this kind is sent.
Direction directionOf(Kind kind) {
  switch (kind) {
    case Kind::Query:
    case Kind::StoreGroup:
    case Kind::StoreSingly:
    case Kind::Announcement:
    case Kind::MethodCall:
      return Direction::ToPrinter;
    case Kind::Value:
    case Kind::Stored:
    case Kind::Refusal:
    case Kind::MethodReply:
    case Kind::MethodReplyPart:
    case Kind::EndOfExchange:
      return Direction::FromPrinter;
    case Kind::Unknown:
    case Kind::Malformed:
      break;
  }
  return Direction::Unknown;
}

}  // namespace

std::string_view kindText(Kind kind) {
  switch (kind) {
    case Kind::Query:
      return "query";
    case Kind::Value:
      return "value";
    case Kind::StoreGroup:
      return "store settings";
    case Kind::StoreSingly:
      return "store settings one by one";
    case Kind::Stored:
      return "settings";
    case Kind::Refusal:
      return "refused";
    case Kind::Announcement:
      return "announces a method call";
    case Kind::MethodCall:
      return "method call";
    case Kind::MethodReply:
      return "reply to a method call";
    case Kind::MethodReplyPart:
      return "part of the reply to a method call";
    case Kind::EndOfExchange:
      return "ends the exchange";
    case Kind::Unknown:
      return "unknown packet";
    case Kind::Malformed:
      return "malformed packet";
  }
  return {};
}

std::string_view roleText(const Packet& packet) {
  Direction direction = packet.stream.direction;
  for (const Content& content : packet.contents) {
    if (direction == Direction::Unknown) {
      direction = directionOf(content.kind);
    }
  }
  switch (direction) {
    case Direction::ToPrinter:
      return "request";
    case Direction::FromPrinter:
      return "reply";
    case Direction::Unknown:
      break;
  }
  return "packet";
}

WordsReport::WordsReport(Sink sink, bool showSecrets, bool namesInputs)
    : m_Sink(std::move(sink)), m_ShowSecrets(showSecrets), m_NamesInputs(namesInputs) {}

void WordsReport::beginInput(const std::string& name) {
  if (m_NamesInputs) {
    m_Sink(catalogue::escaped(name) + ":\n");
  }
}

void WordsReport::unreadable(const std::string& /*reason*/) {}

void WordsReport::packet(const Packet& packet) {
  std::string text;
  const std::string head = headText(packet);
  for (const Content& content : packet.contents) {
    // If the log has masked secrets, their bytes are not known, so they cannot be shown.
    const bool showSecrets = m_ShowSecrets && !packet.stream.hasHiddenBytes;
    text.append(text.empty() ? head : std::string(Indentation) + "and");
    text.append(contentText(content, showSecrets));
  }
  m_Sink(text);
}

void WordsReport::problem(const Problem& problem) {
  m_Sink(placeText(problem.stream, problem.place) + ": " + catalogue::escaped(problem.text) + "\n");
}

}  // namespace decoder
