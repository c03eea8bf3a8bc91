// The parser's loop over a document: prolog, elements, text and the calls of the handler.

#include "xml/simple_sax_parser.h"

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

#include "util/c_text.h"
#include "util/format.h"
#include "util/output.h"
#include "xml/character_class.h"
#include "xml/scan.h"

/// The names of the open elements, outermost first, each followed by a zero byte. All names are in
/// one string, so an element needs no separate allocation.
class SimpleSAXParser::OpenNames {
 public:
  /// Returns true if no element is open.
  bool isEmpty() const { return m_Starts.empty(); }

  /// Returns the name of the innermost element, or an empty text if no element is open. An empty
  /// text is not a valid name.
  std::string_view innermost() const {
    if (isEmpty()) {
      return {};
    }
    const std::string_view names = m_Names;
    return names.substr(m_Starts.back(), names.size() - m_Starts.back() - 1);
  }

  /// Opens an element.
  void push(std::string_view name) {
    m_Starts.push_back(m_Names.size());
    m_Names.append(name).push_back('\0');
  }

  /// Closes the innermost element. At least one must be open.
  void pop() {
    m_Names.resize(m_Starts.back());
    m_Starts.pop_back();
  }

 private:
  std::string m_Names;
  std::vector<std::size_t> m_Starts;  ///< the offset of each name in `m_Names`
};

/// The state that is kept from one construct to the next inside an element.
struct SimpleSAXParser::Content {
  OpenNames open;
  attributes attrs;    ///< of the last start tag
  std::string buffer;  ///< the last run of text
};

SimpleSAXParser::SimpleSAXParser(SimpleSAXHandler& handler) : m_Handler(&handler) {}

SimpleSAXParser::~SimpleSAXParser() {
  m_Handler = nullptr;
}

template <typename... Parameters, typename... Arguments>
void SimpleSAXParser::notify(void (SimpleSAXHandler::*callback)(Parameters...),
                             Arguments&&... arguments) {
  if (m_Handler != nullptr) {
    (m_Handler->*callback)(std::forward<Arguments>(arguments)...);
  }
}

void SimpleSAXParser::honourStop(std::string_view text, std::size_t& position) const {
  if (m_Handler != nullptr && m_Handler->m_Stop) {
    position = text.size();
  }
}

int SimpleSAXParser::parseXMLString(const std::string& xml) {
  // A copy, because the handler may change `xml` during the parse.
  return parseXMLString(std::string(xml).c_str());
}

int SimpleSAXParser::parseXMLString(const char* xml) {
  const std::string_view text = util::textOf(xml);
  std::size_t position = 0;
  notify(&SimpleSAXHandler::start);
  honourStop(text, position);
  int result = parseProlog(text, position);
  if (result == PARSE_OK && position < text.size()) {
    result = parseElement(text, position);
  }
  notify(&SimpleSAXHandler::end);
  return result;
}

SimpleSAXParser::ParseRetType SimpleSAXParser::parseProlog(std::string_view text,
                                                           std::size_t& position) const {
  ParseRetType result = PARSE_OK;
  while (position < text.size() && result == PARSE_OK) {
    if (xml::isTokenAt(text, position, "<?")) {
      result = skipProcessingInstruction(text, position);
    } else if (xml::isTokenAt(text, position, "<!")) {
      result = skipComment(text, position);
    } else if (text[position] == '<' && xml::isAt(xml::NameStart, text, position + 1)) {
      break;
    } else {
      ++position;
    }
  }
  return result;
}

int SimpleSAXParser::parseElement(std::string_view text, std::size_t& position) {
  Content content;
  ParseRetType result = PARSE_OK;
  while (position < text.size() && result == PARSE_OK) {
    if (text[position] == '<') {
      result = parseMarkup(content, text, position);
    } else if (!content.open.isEmpty()) {
      result = parseText(text, position, content.buffer);
    } else if (xml::isAt(xml::WhiteSpace, text, position)) {
      ++position;
    } else {
      util::writeAnswer("dunno what to do?!\n");
      result = PARSE_ERROR;
    }
  }
  if (result == PARSE_ERROR) {
    showError(result, text, position);
    return -1;
  }
  return 0;
}

SimpleSAXParser::ParseRetType SimpleSAXParser::parseMarkup(Content& content, std::string_view text,
                                                           std::size_t& position) {
  if (xml::isAt(xml::NameStart, text, position + 1)) {
    return openElement(content, text, position);
  }
  if (xml::isTokenAt(text, position, "</")) {
    return closeElement(content, text, position);
  }
  if (xml::isTokenAt(text, position, "<?")) {
    return skipProcessingInstruction(text, position);
  }
  if (xml::isTokenAt(text, position, "<!")) {
    return skipComment(text, position);
  }
  ++position;
  return PARSE_OK;
}

SimpleSAXParser::ParseRetType SimpleSAXParser::openElement(Content& content, std::string_view text,
                                                           std::size_t& position) {
  std::string_view name;
  bool isEmpty = false;
  // All tags use the same list of attributes, because the list reuses its memory.
  content.attrs.clear();
  const ParseRetType result = parseOpenTag(text, position, name, content.attrs, isEmpty);
  if (result != PARSE_OK) {
    return result;
  }
  content.open.push(name);
  notify(&SimpleSAXHandler::startElement, content.open.innermost().data(), content.attrs);
  if (isEmpty) {
    notify(&SimpleSAXHandler::endElement, content.open.innermost().data());
    content.open.pop();
  }
  honourStop(text, position);
  return PARSE_OK;
}

SimpleSAXParser::ParseRetType SimpleSAXParser::closeElement(Content& content, std::string_view text,
                                                            std::size_t& position) {
  const ParseRetType result = parseCloseTag(text, position, content.open.innermost());
  if (result == PARSE_OK) {
    notify(&SimpleSAXHandler::endElement, content.open.innermost().data());
    honourStop(text, position);
    content.open.pop();
  }
  return result;
}

SimpleSAXParser::ParseRetType SimpleSAXParser::parseText(std::string_view text,
                                                         std::size_t& position,
                                                         std::string& buffer) {
  xml::skipWhiteSpace(text, position);
  std::string_view run = text.substr(std::min(position, text.size()));
  run = run.substr(0, run.find('<'));
  if (!run.empty()) {
    buffer = run;
    position += run.size();
    replaceEntities(buffer);
    // The length is the length of the text in the document. The text in `buffer` may be shorter and
    // ends at its zero byte.
    notify(&SimpleSAXHandler::characters, buffer.c_str(), static_cast<unsigned int>(run.size()));
    honourStop(text, position);
  }
  return PARSE_OK;
}

void SimpleSAXParser::showError(ParseRetType ret, std::string_view text,
                                std::size_t position) const {
  if (position >= text.size()) {
    util::writeAnswer("<<end of string>>\n");
  } else if (ret == PARSE_ERROR) {
    util::writeAnswer(util::formatted("Parsing error at character %d, '%c'\n",
                                      static_cast<int>(position), text[position]));
  }
}
