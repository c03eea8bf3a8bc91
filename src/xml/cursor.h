#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

#include "xml/character_class.h"

namespace xml {

/// An attribute as written in a tag: its entities are not replaced.
struct Attribute {
  std::string_view name;
  std::string_view value;
};

/// What a cursor has read.
enum class Token {
  StartTag,  ///< a start tag, or the first half of an empty-element tag
  EndTag,    ///< an end tag, or the second half of an empty-element tag
  Text,      ///< a run of text inside an element
  End,       ///< the end of the document
  Error      ///< a fault; the position is at the fault
};

/// Reads a document token by token and copies nothing: names, attributes and texts are views into
/// the document. `SimpleSAXParser` describes the documents and the constructs.
///
///     xml::Cursor cursor("<a b=\"1\">text</a>");
///     cursor.skipProlog();
///     cursor.next();  // Token::StartTag; name() is "a", attributes() has b="1"
///     cursor.next();  // Token::Text; text() is "text"
///     cursor.next();  // Token::EndTag; name() is "a"
class Cursor {
 public:
  /// A position after the end counts as the end.
  explicit Cursor(std::string_view document, std::size_t position = 0)
      : m_Document(document), m_Position(std::min(position, document.size())) {}

  /// Skips everything before the first start tag. Returns false, and moves to the end, if an
  /// instruction or a comment does not end.
  bool skipProlog();
  /// Reads the next token. If there is a fault, prints a line about the fault to standard output.
  Token next();
  /// Moves to the end of the document. If the last token is the first half of an empty-element tag,
  /// the next token is still the second half.
  void stop() { m_Position = m_Document.size(); }

  std::size_t position() const { return m_Position; }
  /// Returns the name in the last start tag or end tag.
  std::string_view name() const { return m_Name; }
  /// Returns the attributes of the last start tag, in the order of the tag.
  const std::vector<Attribute>& attributes() const { return m_Attributes; }
  /// Returns true if the last start tag is an empty-element tag.
  bool isEmpty() const { return m_IsEmpty; }
  /// Returns the last text, without leading white space.
  std::string_view text() const { return m_Text; }

  // Each step reads one construct at the position and moves past it, or leaves the position at the
  // first unexpected character and returns false.

  bool readStartTag();
  /// Reads "</expected>". `expected` is a name, or empty, which no end tag matches.
  bool readEndTag(std::string_view expected);
  /// Reads the name of an element.
  bool readName();
  /// Reads `name="value"` up to the closing quote.
  bool readAttribute(Attribute& attribute);
  /// Reads `"value"` up to the closing quote.
  bool readValue(std::string_view& value);
  /// Reads the text up to the next "<", which may be empty.
  void readText();
  bool skipInstruction();
  bool skipComment();

 private:
  bool isAtEnd() const { return m_Position == m_Document.size(); }
  /// Returns the character `ahead` places after the position, or a zero byte after the end.
  char peek(std::size_t ahead = 0) const {
    const std::size_t place = m_Position + ahead;
    return place < m_Document.size() ? m_Document[place] : '\0';
  }
  /// Moves past these characters if they are at the position.
  bool take(char first) {
    const bool isThere = peek() == first;
    m_Position += isThere ? 1U : 0U;
    return isThere;
  }
  bool take(char first, char second) {
    const bool isThere = peek() == first && peek(1) == second;
    m_Position += isThere ? 2U : 0U;
    return isThere;
  }
  void skipSpace() {
    while (isOf(WhiteSpace, peek())) {
      ++m_Position;
    }
  }
  /// Returns the document from the position on.
  std::string_view rest() const { return m_Document.substr(m_Position); }
  /// Moves past the characters of a name and returns them.
  std::string_view takeName();
  /// Moves past the next `token`, or to the end if there is none.
  bool skipPast(std::string_view token);
  /// Skips an instruction, a comment, or one other character.
  bool skipMarkup();
  /// Closes the innermost element.
  Token close();
  Token fail() const;

  std::string_view m_Document;
  std::size_t m_Position;  ///< at most the size of the document
  std::string_view m_Name;
  std::string_view m_Text;
  std::vector<Attribute> m_Attributes;
  bool m_IsEmpty = false;
  std::vector<std::string_view> m_Open;  ///< the names of the open elements, outermost first
};

/// Prints to standard output that the document has ended, or the position and the character there.
void printFault(std::string_view document, std::size_t position);

}  // namespace xml
