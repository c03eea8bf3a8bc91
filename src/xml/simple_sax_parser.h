#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "xml/attributes.h"
#include "xml/simple_sax_handler.h"

/// Parses an XML document in memory and calls a handler for each part of it:
///
///     SimpleSAXParser parser(handler);
///     const bool isWellFormed = parser.parseXMLString("<a b=\"1\">text</a>") == 0;
///
/// The parser knows the subset of XML 1.0 that the printer's replies use: elements, attributes in
/// double quotes, text, and the entities &amp; &quot; &apos; &lt; &gt;. It skips processing
/// instructions and everything from "<!" to "-->". It does not know namespaces, DTDs, CDATA
/// sections, character references and single-quoted values.
///
/// The time is linear in the length of any document. Only memory limits the depth of elements. A
/// parse keeps nothing for the next one.
class SimpleSAXParser {
 public:
  /// The result of reading one construct.
  enum ParseRetType {
    PARSE_ERROR = -1,     ///< malformed; the position is at the fault
    PARSE_OK = 0,         ///< read; the position is after the construct
    PARSE_WHITESPACE = 1  ///< white space is at the position, so the construct does not start there
  };

  /// Keeps a pointer to `handler`, which the caller owns and which must outlive the parser.
  explicit SimpleSAXParser(SimpleSAXHandler& handler);
  virtual ~SimpleSAXParser();
  SimpleSAXParser(const SimpleSAXParser&) = delete;
  SimpleSAXParser& operator=(const SimpleSAXParser&) = delete;

  /// Parses the document `xml`, which ends at its first zero byte. A null pointer is an empty
  /// document. Returns 0, or -1 if the document is malformed. A fault in or after the first element
  /// is also printed to standard output. The callbacks before a fault have been made.
  int parseXMLString(const char* xml);
  /// Does the same with a copy of `xml`, so the handler may change the original.
  int parseXMLString(const std::string& xml);

  // --- The steps of a parse -----------------------------------------------------------------
  //
  // Each reads one construct of `text` that starts at `position` and moves the position past it. On
  // failure the position is at the character that does not fit.

  /// Reads everything from the first start tag to the end of the text, with all callbacks. Returns
  /// 0, or -1 after `showError`.
  int parseElement(std::string_view text, std::size_t& position);

  /// Reads "<name attribute...>" or "<name attribute.../>" and sets `isEmpty` for the second form.
  /// A repeated attribute keeps its last value. A tag that the end of the text cuts after its name
  /// or after an attribute is complete.
  ParseRetType parseOpenTag(std::string_view text, std::size_t& position, std::string_view& name,
                            attributes& attrs, bool& isEmpty) const;

  /// Reads "</expected>".
  ParseRetType parseCloseTag(std::string_view text, std::size_t& position,
                             std::string_view expected) const;

  /// Reads the name of an element. It must not start with "xml" in any mix of cases except "xMl".
  ParseRetType parseName(std::string_view text, std::size_t& position,
                         std::string_view& name) const;

  /// Reads `name="value"` with the entities of the value replaced. Leaves the position on the
  /// closing quote.
  ParseRetType parseAttribute(std::string_view text, std::size_t& position, std::string_view& name,
                              std::string& value) const;

  /// Reads `"value"` with its entities replaced. Leaves the position on the closing quote.
  ParseRetType parseAttrValue(std::string_view text, std::size_t& position,
                              std::string& value) const;

  /// Skips white space and passes the text up to the next "<" to the handler, unless it is empty.
  /// The text is stored in `buffer`, whose content is overwritten.
  ParseRetType parseText(std::string_view text, std::size_t& position, std::string& buffer);

  /// Skips from "<?" past the next "?>".
  ParseRetType skipProcessingInstruction(std::string_view text, std::size_t& position) const;

  /// Skips from "<!" past the next "-->".
  ParseRetType skipComment(std::string_view text, std::size_t& position) const;

  /// Replaces every entity in `text`, from "&" to the next ";", by its character. Removes unknown
  /// entities. Does not search replaced text again, nor the character after a removed entity.
  void replaceEntities(std::string& text) const;

  /// Returns the character of `entity`, such as "<" for "&lt;". Returns an empty text unless it is
  /// one of the five predefined entities.
  std::string_view translateEntityRef(std::string_view entity) const;

  /// Prints to standard output where in `text` a parse failed. If the position is at the end,
  /// prints that the text has ended. Otherwise, if `ret` is `PARSE_ERROR`, prints the position,
  /// counted from 0, and the character there.
  void showError(ParseRetType ret, std::string_view text, std::size_t position) const;

 private:
  class OpenNames;
  struct Content;

  /// Skips everything before the first start tag.
  ParseRetType parseProlog(std::string_view text, std::size_t& position) const;
  /// Reads the construct that starts with the "<" at `position`. Skips a "<" that starts none.
  ParseRetType parseMarkup(Content& content, std::string_view text, std::size_t& position);
  /// Reads a start tag or an empty-element tag and calls the handler.
  ParseRetType openElement(Content& content, std::string_view text, std::size_t& position);
  /// Reads the end tag of the innermost element and calls the handler.
  ParseRetType closeElement(Content& content, std::string_view text, std::size_t& position);

  /// Stores an attribute with the entities of its value replaced.
  void store(std::string_view name, std::string_view value, attributes& attrs) const;

  /// Calls one callback of the handler.
  template <typename... Parameters, typename... Arguments>
  void notify(void (SimpleSAXHandler::*callback)(Parameters...), Arguments&&... arguments);
  /// Moves to the end of the text if the handler has set `m_Stop`.
  void honourStop(std::string_view text, std::size_t& position) const;

  SimpleSAXHandler* m_Handler;  ///< not owned
};
