// The constructs of a document: tags, names, attributes, entities, and what is skipped.

#include <algorithm>
#include <array>

#include "xml/scan.h"
#include "xml/simple_sax_parser.h"

namespace {

using ParseRetType = SimpleSAXParser::ParseRetType;

/// Elements must not start with these. The missing eighth spelling, "xMl", is allowed.
constexpr std::array<std::string_view, 7> ReservedPrefixes = {"xml", "XML", "Xml", "XMl",
                                                              "xML", "xmL", "XmL"};

struct Entity {
  std::string_view reference;
  std::string_view character;
};

constexpr std::array<Entity, 5> Entities = {{
    {"&amp;", "&"},
    {"&quot;", "\""},
    {"&apos;", "'"},
    {"&lt;", "<"},
    {"&gt;", ">"},
}};

bool isReserved(std::string_view name) {
  return std::ranges::find(ReservedPrefixes, name.substr(0, 3)) != ReservedPrefixes.end();
}

/// Reads a name, reserved or not.
std::string_view takeName(std::string_view text, std::size_t& position) {
  const std::size_t start = position;
  xml::skip(xml::NamePart, text, position);
  return text.substr(start, position - start);
}

/// Moves past the next `token` from `position` on, or to the end of the text when there is none.
ParseRetType skipPast(std::string_view token, std::string_view text, std::size_t& position) {
  const std::size_t found = text.find(token, position);
  if (found == std::string_view::npos) {
    position = text.size();
    return SimpleSAXParser::PARSE_ERROR;
  }
  position = found + token.size();
  return SimpleSAXParser::PARSE_OK;
}

/// How a construct fails that starts with another character than the one at the position.
ParseRetType doesNotStart(std::string_view text, std::size_t position) {
  return xml::isAt(xml::WhiteSpace, text, position) ? SimpleSAXParser::PARSE_WHITESPACE
                                                    : SimpleSAXParser::PARSE_ERROR;
}

}  // namespace

ParseRetType SimpleSAXParser::parseOpenTag(std::string_view text, std::size_t& position,
                                           std::string_view& name, attributes& attrs,
                                           bool& isEmpty) const {
  isEmpty = false;
  if (!xml::standsAt(text, position, "<")) {
    return doesNotStart(text, position);
  }
  ++position;
  if (parseName(text, position, name) != PARSE_OK) {
    return PARSE_ERROR;
  }
  std::string value;
  xml::skipWhiteSpace(text, position);
  while (position < text.size() && text[position] != '>' && !xml::standsAt(text, position, "/>")) {
    std::string_view attribute;
    if (parseAttribute(text, position, attribute, value) != PARSE_OK) {
      return PARSE_ERROR;
    }
    attrs.setAttribute(attribute, value);
    ++position;
    xml::skipWhiteSpace(text, position);
  }
  if (xml::standsAt(text, position, "/")) {
    isEmpty = true;
    ++position;
  }
  if (xml::standsAt(text, position, ">")) {
    ++position;
  }
  return PARSE_OK;
}

ParseRetType SimpleSAXParser::parseCloseTag(std::string_view text, std::size_t& position,
                                            std::string_view expected) const {
  if (!xml::standsAt(text, position, "</")) {
    return doesNotStart(text, position);
  }
  position += 2;
  std::string_view name;
  if (parseName(text, position, name) != PARSE_OK || name != expected) {
    return PARSE_ERROR;
  }
  xml::skipWhiteSpace(text, position);
  if (!xml::standsAt(text, position, ">")) {
    return PARSE_ERROR;
  }
  ++position;
  return PARSE_OK;
}

ParseRetType SimpleSAXParser::parseName(std::string_view text, std::size_t& position,
                                        std::string_view& name) const {
  if (!xml::isAt(xml::NameStart, text, position)) {
    return doesNotStart(text, position);
  }
  if (isReserved(text.substr(position))) {
    return PARSE_ERROR;
  }
  name = takeName(text, position);
  return PARSE_OK;
}

ParseRetType SimpleSAXParser::parseAttribute(std::string_view text, std::size_t& position,
                                             std::string_view& name, std::string& value) const {
  if (!xml::isAt(xml::NameStart, text, position)) {
    return doesNotStart(text, position);
  }
  name = takeName(text, position);
  xml::skipWhiteSpace(text, position);
  if (!xml::standsAt(text, position, "=")) {
    return PARSE_ERROR;
  }
  ++position;
  xml::skipWhiteSpace(text, position);
  return parseAttrValue(text, position, value);
}

ParseRetType SimpleSAXParser::parseAttrValue(std::string_view text, std::size_t& position,
                                             std::string& value) const {
  if (!xml::standsAt(text, position, "\"")) {
    return doesNotStart(text, position);
  }
  const std::size_t start = position + 1;
  position = std::min(text.find('"', start), text.size());
  if (position == text.size()) {
    return PARSE_ERROR;
  }
  value.assign(text, start, position - start);
  replaceEntities(value);
  return PARSE_OK;
}

ParseRetType SimpleSAXParser::skipProcessingInstruction(std::string_view text,
                                                        std::size_t& position) const {
  if (!xml::standsAt(text, position, "<?")) {
    return doesNotStart(text, position);
  }
  // The "?" of "<?" may end the instruction too: "<?>" is complete.
  ++position;
  return skipPast("?>", text, position);
}

ParseRetType SimpleSAXParser::skipComment(std::string_view text, std::size_t& position) const {
  if (!xml::standsAt(text, position, "<!")) {
    return doesNotStart(text, position);
  }
  position += 2;
  return skipPast("-->", text, position);
}

std::string_view SimpleSAXParser::translateEntityRef(std::string_view entity) const {
  const auto found = std::ranges::find(Entities, entity, &Entity::reference);
  return found == Entities.end() ? std::string_view() : found->character;
}

void SimpleSAXParser::replaceEntities(std::string& text) const {
  const auto ampersandFrom = [&text](std::size_t position) {
    return std::min(text.find('&', position), text.size());
  };
  std::size_t ampersand = ampersandFrom(0);
  std::size_t written = ampersand;
  std::size_t read = ampersand;
  const auto keepUntil = [&text, &written, &read](std::size_t end) {
    std::copy(&text[read], &text[end], &text[written]);
    written += end - read;
    read = end;
  };
  while (ampersand < text.size()) {
    const std::size_t semicolon = text.find(';', ampersand);
    if (semicolon == std::string::npos) {
      break;
    }
    read = semicolon + 1;
    const std::string_view character =
        translateEntityRef(std::string_view(text).substr(ampersand, read - ampersand));
    written += character.copy(&text[written], character.size());
    // The search goes on one character behind the entity's place. When the entity vanished, that
    // place holds the character that followed it, which therefore stays even if it is a "&".
    ampersand = ampersandFrom(character.empty() ? read + 1 : read);
    keepUntil(ampersand);
  }
  keepUntil(text.size());
  text.resize(written);
}
