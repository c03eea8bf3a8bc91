#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "xml/attributes.h"
#include "xml/simple_sax_handler.h"

namespace xml {
class Cursor;
}

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
/// Parsing takes time about linear in the length of the document, whatever its content. The depth
/// of elements is limited only by memory. The parser keeps no state between documents.
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
  virtual ~SimpleSAXParser() = default;
  SimpleSAXParser(const SimpleSAXParser&) = delete;
  SimpleSAXParser& operator=(const SimpleSAXParser&) = delete;

  /// Parses the document `xml`, which ends at its first zero byte and must not change during the
  /// parse. A null pointer is an empty document. Returns 0, or -1 if the document is malformed. If
  /// the fault is in or after the first element, also prints a line about the fault to standard
  /// output. The parser has then made the callbacks for the document before the fault.
  int parseXMLString(const char* xml);
  /// Does the same with a copy of `xml`, so the handler may change the original.
  int parseXMLString(const std::string& xml);

  // --- The steps of a parse -----------------------------------------------------------------
  //
  // Unless its comment says otherwise, each step reads one construct of `text` that starts at
  // `position`, and moves `position` past the construct. After a failure the position is at the
  // first unexpected character, and the other arguments are unchanged.

  /// Reads everything from the first start tag to the end of the text, and makes the callbacks for
  /// elements and text. Returns 0. On failure calls `showError` and returns -1.
  int parseElement(std::string_view text, std::size_t& position);

  /// Reads "<name attribute...>" or "<name attribute.../>" and sets `isEmpty` for the second form.
  /// If an attribute is repeated, the last value counts. If the text ends after the name of the tag
  /// or after an attribute, the tag counts as complete. After a failure `attrs` has the attributes
  /// before the fault, and `name` and `isEmpty` have no meaning.
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

  /// Skips white space, stores the text up to the next "<" in `buffer` instead of its old content,
  /// and passes the text to the handler unless the text is empty.
  ParseRetType parseText(std::string_view text, std::size_t& position, std::string& buffer);

  /// Skips from "<?" past the next "?>".
  ParseRetType skipProcessingInstruction(std::string_view text, std::size_t& position) const;

  /// Skips from "<!" past the next "-->".
  ParseRetType skipComment(std::string_view text, std::size_t& position) const;

  /// Replaces every entity in `text`, from "&" to the next ";", by its character. Removes unknown
  /// entities. Does not search a replaced character again, and does not search the character after
  /// a removed entity.
  void replaceEntities(std::string& text) const;

  /// Returns the character of `entity`, such as "<" for "&lt;". Returns an empty text unless it is
  /// one of the five predefined entities.
  std::string_view translateEntityRef(std::string_view entity) const;

  /// Prints to standard output where in `text` a parse failed. If the position is at the end,
  /// prints that the text has ended. Otherwise, if `ret` is `PARSE_ERROR`, prints the position,
  /// counted from 0, and the character there.
  void showError(ParseRetType ret, std::string_view text, std::size_t position) const;

 private:
  /// Reads the tokens of the cursor and calls the handler. Returns 0, or -1 at a fault.
  int parseContent(xml::Cursor& cursor);
  /// Passes a text to the handler, with its entities replaced in `buffer`.
  void reportText(std::string_view run, std::string& buffer);

  SimpleSAXHandler* m_Handler;  ///< not owned
};
