// The parser's single constructs: tags, names, attributes, entities, and the parts that it skips.

#include <algorithm>
#include <array>
#include <vector>

#include "xml/scan.h"
#include "xml/simple_sax_parser.h"

namespace {

using ParseRetType = SimpleSAXParser::ParseRetType;

/// The name of an element must not start with one of these texts. The eighth spelling, "xMl", is
/// allowed on purpose.
constexpr std::array<std::string_view, 7> ReservedPrefixes = {"xml", "XML", "Xml", "XMl",
                                                              "xML", "xmL", "XmL"};

/// A predefined entity: its reference in a document, and the character that it stands for.
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

/// Returns true if the name has a reserved prefix.
bool isReserved(std::string_view name) {
  return (name.starts_with('x') || name.starts_with('X')) &&
         std::ranges::find(ReservedPrefixes, name.substr(0, 3)) != ReservedPrefixes.end();
}

/// Reads the characters of a name and moves past them. Does not check for reserved names.
std::string_view readName(std::string_view text, std::size_t& position) {
  const std::size_t start = position;
  xml::skip(xml::NamePart, text, position);
  return text.substr(start, position - start);
}

/// Moves past the next `token` at or after `position`. If there is no such token, moves to the end
/// of the text and returns `PARSE_ERROR`.
ParseRetType skipPast(std::string_view token, std::string_view text, std::size_t& position) {
  const std::size_t found = text.find(token, position);
  if (found == std::string_view::npos) {
    position = text.size();
    return SimpleSAXParser::PARSE_ERROR;
  }
  position = found + token.size();
  return SimpleSAXParser::PARSE_OK;
}

/// An attribute as written in a tag: its entities are not replaced.
struct TagAttribute {
  std::string_view name;
  std::string_view value;
};

/// Returns the result for a construct whose first character is not at `position`.
ParseRetType doesNotStart(std::string_view text, std::size_t position) {
  return xml::isAt(xml::WhiteSpace, text, position) ? SimpleSAXParser::PARSE_WHITESPACE
                                                    : SimpleSAXParser::PARSE_ERROR;
}

/// Reads a value in double quotes and moves to the closing quote.
ParseRetType readValue(std::string_view text, std::size_t& position, std::string_view& value) {
  if (!xml::isTokenAt(text, position, "\"")) {
    return doesNotStart(text, position);
  }
  const std::size_t start = position + 1;
  position = std::min(text.find('"', start), text.size());
  value = text.substr(start, position - start);
  return position < text.size() ? SimpleSAXParser::PARSE_OK : SimpleSAXParser::PARSE_ERROR;
}

/// Reads `name="value"` and moves to the closing quote.
ParseRetType readAttribute(std::string_view text, std::size_t& position, TagAttribute& attribute) {
  if (!xml::isAt(xml::NameStart, text, position)) {
    return doesNotStart(text, position);
  }
  attribute.name = readName(text, position);
  xml::skipWhiteSpace(text, position);
  if (!xml::isTokenAt(text, position, "=")) {
    return SimpleSAXParser::PARSE_ERROR;
  }
  ++position;
  xml::skipWhiteSpace(text, position);
  return readValue(text, position, attribute.value);
}

}  // namespace

void SimpleSAXParser::store(std::string_view name, std::string_view value,
                            attributes& attrs) const {
  if (value.find('&') == std::string_view::npos) {
    attrs.setAttribute(name, value);
    return;
  }
  std::string replaced(value);
  replaceEntities(replaced);
  attrs.setAttribute(name, replaced);
}

ParseRetType SimpleSAXParser::parseOpenTag(std::string_view text, std::size_t& position,
                                           std::string_view& name, attributes& attrs,
                                           bool& isEmpty) const {
  isEmpty = false;
  if (!xml::isTokenAt(text, position, "<")) {
    return doesNotStart(text, position);
  }
  ++position;
  if (parseName(text, position, name) != PARSE_OK) {
    return PARSE_ERROR;
  }
  // While the names are in sorted order, each attribute is added at the end of the list. From the
  // first name that is out of order on, the attributes are collected and sorted before they are
  // added. To insert thousands of unsorted names one by one would be slow, because each search
  // reads parts of the list that are not in the processor's cache.
  std::vector<TagAttribute> unsorted;
  std::string_view previous;
  xml::skipWhiteSpace(text, position);
  while (position < text.size() && text[position] != '>' && !xml::isTokenAt(text, position, "/>")) {
    TagAttribute attribute;
    if (readAttribute(text, position, attribute) != PARSE_OK) {
      return PARSE_ERROR;
    }
    if (unsorted.empty() && previous < attribute.name) {
      store(attribute.name, attribute.value, attrs);
      previous = attribute.name;
    } else {
      unsorted.push_back(attribute);
    }
    ++position;
    xml::skipWhiteSpace(text, position);
  }
  std::ranges::stable_sort(unsorted, {}, &TagAttribute::name);
  for (const TagAttribute& attribute : unsorted) {
    store(attribute.name, attribute.value, attrs);
  }
  if (xml::isTokenAt(text, position, "/")) {
    isEmpty = true;
    ++position;
  }
  if (xml::isTokenAt(text, position, ">")) {
    ++position;
  }
  return PARSE_OK;
}

ParseRetType SimpleSAXParser::parseCloseTag(std::string_view text, std::size_t& position,
                                            std::string_view expected) const {
  if (!xml::isTokenAt(text, position, "</")) {
    return doesNotStart(text, position);
  }
  position += 2;
  std::string_view name;
  if (parseName(text, position, name) != PARSE_OK || name != expected) {
    return PARSE_ERROR;
  }
  xml::skipWhiteSpace(text, position);
  if (!xml::isTokenAt(text, position, ">")) {
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
  name = readName(text, position);
  return PARSE_OK;
}

ParseRetType SimpleSAXParser::parseAttribute(std::string_view text, std::size_t& position,
                                             std::string_view& name, std::string& value) const {
  TagAttribute attribute;
  const ParseRetType result = readAttribute(text, position, attribute);
  if (result == PARSE_OK) {
    name = attribute.name;
    value = attribute.value;
    replaceEntities(value);
  }
  return result;
}

ParseRetType SimpleSAXParser::parseAttrValue(std::string_view text, std::size_t& position,
                                             std::string& value) const {
  std::string_view raw;
  const ParseRetType result = readValue(text, position, raw);
  if (result == PARSE_OK) {
    value = raw;
    replaceEntities(value);
  }
  return result;
}

ParseRetType SimpleSAXParser::skipProcessingInstruction(std::string_view text,
                                                        std::size_t& position) const {
  if (!xml::isTokenAt(text, position, "<?")) {
    return doesNotStart(text, position);
  }
  // The "?" of "<?" may also be the "?" of "?>", so "<?>" is a complete instruction.
  ++position;
  return skipPast("?>", text, position);
}

ParseRetType SimpleSAXParser::skipComment(std::string_view text, std::size_t& position) const {
  if (!xml::isTokenAt(text, position, "<!")) {
    return doesNotStart(text, position);
  }
  position += 2;
  return skipPast("-->", text, position);
}

std::string_view SimpleSAXParser::translateEntityRef(std::string_view entity) const {
  const auto found = std::ranges::find(Entities, entity, &Entity::reference);
  return found == Entities.end() ? std::string_view() : found->character;
}

// Works in place, because the result is never longer than the text: a character is shorter than its
// entity. The text before `read` has been read, and the text before `written` is final.
void SimpleSAXParser::replaceEntities(std::string& text) const {
  const auto ampersandFrom = [&text](std::size_t position) {
    return std::min(text.find('&', position), text.size());
  };
  std::size_t ampersand = ampersandFrom(0);
  std::size_t written = ampersand;
  std::size_t read = ampersand;
  // Moves the text up to `end` to its final place.
  const auto keepUntil = [&text, &written, &read](std::size_t end) {
    // Before the first replacement the text is already in its final place. std::copy does not allow
    // a destination that is the start of the source.
    if (written < read) {
      std::copy(&text[read], &text[end], &text[written]);
    }
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
    // The search continues one character after the place of the entity. If an unknown entity was
    // removed, the character after the entity moves to this place. So the search skips this
    // character, which stays even if it is "&".
    ampersand = ampersandFrom(character.empty() ? read + 1 : read);
    keepUntil(ampersand);
  }
  keepUntil(text.size());
  text.resize(written);
}
