// The parser reads the tokens of a cursor and calls the handler.

#include "xml/simple_sax_parser.h"

#include <algorithm>
#include <vector>

#include "util/c_text.h"
#include "xml/character_class.h"
#include "xml/cursor.h"
#include "xml/entities.h"

namespace {

using ParseRetType = SimpleSAXParser::ParseRetType;

/// Reads one construct with a cursor at `position`, and moves `position` with the cursor. A
/// position after the end stays.
template <typename Read>
ParseRetType step(std::string_view text, std::size_t& position, Read read) {
  const bool isSpace = position < text.size() && xml::isOf(xml::WhiteSpace, text[position]);
  xml::Cursor cursor(text, position);
  const bool isRead = read(cursor);
  position = std::max(position, cursor.position());
  if (isRead) {
    return SimpleSAXParser::PARSE_OK;
  }
  return isSpace ? SimpleSAXParser::PARSE_WHITESPACE : SimpleSAXParser::PARSE_ERROR;
}

/// Stores the attributes of a start tag with the entities of their values replaced.
void store(const std::vector<xml::Attribute>& tag, attributes& attrs) {
  std::string replaced;
  for (const auto& [name, value] : tag) {
    replaced = value;
    xml::replaceEntities(replaced);
    attrs.setAttribute(name, replaced);
  }
}

}  // namespace

SimpleSAXParser::SimpleSAXParser(SimpleSAXHandler& handler) : m_Handler(&handler) {}

int SimpleSAXParser::parseXMLString(const std::string& xml) {
  // A copy, because the handler may change `xml` during the parse.
  return parseXMLString(std::string(xml).c_str());
}

int SimpleSAXParser::parseXMLString(const char* xml) {
  xml::Cursor cursor(util::textOf(xml));
  m_Handler->start();
  if (m_Handler->m_Stop) {
    cursor.stop();
  }
  const int result = cursor.skipProlog() ? parseContent(cursor) : -1;
  m_Handler->end();
  return result;
}

int SimpleSAXParser::parseElement(std::string_view text, std::size_t& position) {
  xml::Cursor cursor(text, position);
  const int result = parseContent(cursor);
  position = std::max(position, cursor.position());
  return result;
}

int SimpleSAXParser::parseContent(xml::Cursor& cursor) {
  // All tags use the same list of attributes, and all texts the same string.
  attributes attrs;
  std::string buffer;
  for (;;) {
    switch (cursor.next()) {
      case xml::Token::StartTag:
        attrs.clear();
        store(cursor.attributes(), attrs);
        buffer = cursor.name();
        m_Handler->startElement(buffer.c_str(), attrs);
        break;
      case xml::Token::EndTag:
        buffer = cursor.name();
        m_Handler->endElement(buffer.c_str());
        break;
      case xml::Token::Text:
        reportText(cursor.text(), buffer);
        break;
      case xml::Token::End:
        return 0;
      case xml::Token::Error:
        return -1;
    }
    // An empty-element tag is complete only with its end.
    if (m_Handler->m_Stop && !cursor.isEmpty()) {
      cursor.stop();
    }
  }
}

void SimpleSAXParser::reportText(std::string_view run, std::string& buffer) {
  buffer = run;
  xml::replaceEntities(buffer);
  // The length is the length of the text in the document. The text in `buffer` may be shorter and
  // ends at its zero byte.
  m_Handler->characters(buffer.c_str(), static_cast<unsigned int>(run.size()));
}

ParseRetType SimpleSAXParser::parseOpenTag(std::string_view text, std::size_t& position,
                                           std::string_view& name, attributes& attrs,
                                           bool& isEmpty) const {
  return step(text, position, [&](xml::Cursor& cursor) {
    const bool isRead = cursor.readStartTag();
    name = cursor.name();
    isEmpty = cursor.isEmpty();
    store(cursor.attributes(), attrs);
    return isRead;
  });
}

ParseRetType SimpleSAXParser::parseCloseTag(std::string_view text, std::size_t& position,
                                            std::string_view expected) const {
  xml::Cursor name(expected);
  const bool isName = name.readName() && name.position() == expected.size();
  return step(text, position, [&](xml::Cursor& cursor) {
    return cursor.readEndTag(isName ? expected : std::string_view());
  });
}

ParseRetType SimpleSAXParser::parseName(std::string_view text, std::size_t& position,
                                        std::string_view& name) const {
  return step(text, position, [&](xml::Cursor& cursor) {
    const bool isRead = cursor.readName();
    if (isRead) {
      name = cursor.name();
    }
    return isRead;
  });
}

ParseRetType SimpleSAXParser::parseAttribute(std::string_view text, std::size_t& position,
                                             std::string_view& name, std::string& value) const {
  return step(text, position, [&](xml::Cursor& cursor) {
    xml::Attribute attribute;
    const bool isRead = cursor.readAttribute(attribute);
    if (isRead) {
      name = attribute.name;
      value = attribute.value;
      replaceEntities(value);
    }
    return isRead;
  });
}

ParseRetType SimpleSAXParser::parseAttrValue(std::string_view text, std::size_t& position,
                                             std::string& value) const {
  return step(text, position, [&](xml::Cursor& cursor) {
    std::string_view raw;
    const bool isRead = cursor.readValue(raw);
    if (isRead) {
      value = raw;
      replaceEntities(value);
    }
    return isRead;
  });
}

ParseRetType SimpleSAXParser::parseText(std::string_view text, std::size_t& position,
                                        std::string& buffer) {
  return step(text, position, [&](xml::Cursor& cursor) {
    cursor.readText();
    if (!cursor.text().empty()) {
      reportText(cursor.text(), buffer);
      if (m_Handler->m_Stop) {
        cursor.stop();
      }
    }
    return true;
  });
}

ParseRetType SimpleSAXParser::skipProcessingInstruction(std::string_view text,
                                                        std::size_t& position) const {
  return step(text, position, [](xml::Cursor& cursor) { return cursor.skipInstruction(); });
}

ParseRetType SimpleSAXParser::skipComment(std::string_view text, std::size_t& position) const {
  return step(text, position, [](xml::Cursor& cursor) { return cursor.skipComment(); });
}

void SimpleSAXParser::replaceEntities(std::string& text) const {
  xml::replaceEntities(text);
}

std::string_view SimpleSAXParser::translateEntityRef(std::string_view entity) const {
  return xml::characterOf(entity);
}

void SimpleSAXParser::showError(ParseRetType ret, std::string_view text,
                                std::size_t position) const {
  if (position >= text.size() || ret == PARSE_ERROR) {
    xml::printFault(text, position);
  }
}
