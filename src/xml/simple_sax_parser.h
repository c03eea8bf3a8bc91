#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "xml/attributes.h"
#include "xml/simple_sax_handler.h"

/// Reads an XML document held in memory and tells a handler what it finds. It knows the subset of
/// XML 1.0 that the printer's replies are written in:
///
///     elements, attributes in double quotes, text, &amp; &quot; &apos; &lt; &gt;
///     processing instructions, and everything from "<!" to "-->": skipped
///
/// and has no namespaces, DTD, CDATA sections, character references or single-quoted values. The
/// cost is linear in the length of the document, whatever it holds, and the depth of elements is
/// limited by memory alone. Nothing is kept from one parse to the next.
class SimpleSAXParser {
 public:
  /// The result of reading one construct.
  enum ParseRetType {
    PARSE_ERROR = -1,     ///< malformed; the position is where it shows
    PARSE_OK = 0,         ///< read, and the position moved past it
    PARSE_WHITESPACE = 1  ///< white space stands here, so the construct does not start here
  };

  /// Keeps a pointer to `handler`, which the caller owns and which must outlive the parser.
  explicit SimpleSAXParser(SimpleSAXHandler& handler);
  virtual ~SimpleSAXParser();
  SimpleSAXParser(const SimpleSAXParser&) = delete;
  SimpleSAXParser& operator=(const SimpleSAXParser&) = delete;

  /// Parses the document `xml`, which ends at its first zero byte; a null pointer is an empty one.
  /// Returns 0, or -1 when the document is malformed, after a line on standard output unless the
  /// fault lies before the first element. The callbacks made until then stand.
  int parseXMLString(const char* xml);
  /// As above, with a copy of `xml`, which the handler may therefore change.
  int parseXMLString(const std::string& xml);

  // --- The steps of a parse -----------------------------------------------------------------
  //
  // Each reads one construct of `text` that starts at `position` and moves the position past it. A
  // construct that fails leaves the position at the character at which it failed.

  /// Reads everything from the first start tag to the end of the text, with all callbacks. Returns
  /// 0, or -1 after `showError`.
  int parseElement(std::string_view text, std::size_t& position);

  /// Reads "<name attribute...>" or "<name attribute.../>", telling which by `isEmpty`. A repeated
  /// attribute keeps its last value. A tag that the end of the text cuts outside its name and its
  /// attributes is complete.
  ParseRetType parseOpenTag(std::string_view text, std::size_t& position, std::string_view& name,
                            attributes& attrs, bool& isEmpty) const;

  /// Reads "</expected>".
  ParseRetType parseCloseTag(std::string_view text, std::size_t& position,
                             std::string_view expected) const;

  /// Reads the name of an element, which must not start with "xml" in any mix of cases but "xMl".
  ParseRetType parseName(std::string_view text, std::size_t& position,
                         std::string_view& name) const;

  /// Reads `name="value"`, leaving the position on the closing quote.
  ParseRetType parseAttribute(std::string_view text, std::size_t& position, std::string_view& name,
                              std::string& value) const;

  /// Reads `"value"` with its entities replaced, leaving the position on the closing quote.
  ParseRetType parseAttrValue(std::string_view text, std::size_t& position,
                              std::string& value) const;

  /// Skips white space and tells the handler the text up to the next "<", if there is any. `buffer`
  /// is room for that text, whatever it holds.
  ParseRetType parseText(std::string_view text, std::size_t& position, std::string& buffer);

  /// Skips from "<?" past the next "?>".
  ParseRetType skipProcessingInstruction(std::string_view text, std::size_t& position) const;

  /// Skips from "<!" past the next "-->".
  ParseRetType skipComment(std::string_view text, std::size_t& position) const;

  /// Replaces every entity in `text`, from "&" to the next ";", by what it stands for. Replaced
  /// text is not looked at again, nor is the character behind an entity that vanished.
  void replaceEntities(std::string& text) const;

  /// Returns the character that `entity`, such as "&lt;", stands for, as a text; an empty text for
  /// anything but the five predefined entities.
  std::string_view translateEntityRef(std::string_view entity) const;

  /// Writes to standard output where in `text` a parse failed: the position, from 0, and the
  /// character there, or that the text has ended. Writes nothing for other results.
  void showError(ParseRetType ret, std::string_view text, std::size_t position) const;

 private:
  class OpenNames;
  struct Content;

  ParseRetType parseProlog(std::string_view text, std::size_t& position) const;
  ParseRetType parseMarkup(Content& content, std::string_view text, std::size_t& position);
  ParseRetType openElement(Content& content, std::string_view text, std::size_t& position);
  ParseRetType closeElement(Content& content, std::string_view text, std::size_t& position);

  /// Stores an attribute with the entities of its value replaced.
  void store(std::string_view name, std::string_view value, attributes& attrs) const;

  /// Makes one callback.
  template <typename... Parameters, typename... Arguments>
  void tell(void (SimpleSAXHandler::*callback)(Parameters...), Arguments&&... arguments);
  /// Moves to the end of the text when the handler has asked to stop.
  void honourStop(std::string_view text, std::size_t& position) const;

  SimpleSAXHandler* m_Handler;
};
