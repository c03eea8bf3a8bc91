// The cursor's tokens, and the constructs of which they consist.

#include "xml/cursor.h"

#include <algorithm>
#include <array>
#include <utility>

#include "util/format.h"
#include "util/output.h"

namespace xml {

namespace {

/// The name of an element must not start with one of these texts. The eighth spelling, "xMl", is
/// allowed on purpose.
constexpr std::array<std::string_view, 7> ReservedPrefixes = {"xml", "XML", "Xml", "XMl",
                                                              "xML", "xmL", "XmL"};

bool isReserved(std::string_view name) {
  return (name.starts_with('x') || name.starts_with('X')) &&
         std::ranges::find(ReservedPrefixes, name.substr(0, 3)) != ReservedPrefixes.end();
}

}  // namespace

bool Cursor::skipProlog() {
  while (!isAtEnd() && (peek() != '<' || !isOf(NameStart, peek(1)))) {
    if (!skipMarkup()) {
      return false;
    }
  }
  return true;
}

Token Cursor::next() {
  if (std::exchange(m_IsEmpty, false)) {
    return close();
  }
  while (!isAtEnd()) {
    if (peek() != '<') {
      readText();
      if (m_Text.empty()) {
        continue;
      }
      if (!m_Open.empty()) {
        return Token::Text;
      }
      m_Position -= m_Text.size();
      util::writeAnswer("dunno what to do?!\n");
      return fail();
    }
    if (isOf(NameStart, peek(1))) {
      if (!readStartTag()) {
        return fail();
      }
      m_Open.push_back(m_Name);
      return Token::StartTag;
    }
    if (peek(1) == '/') {
      const bool isRead = readEndTag(m_Open.empty() ? std::string_view() : m_Open.back());
      return isRead ? close() : fail();
    }
    if (!skipMarkup()) {
      return fail();
    }
  }
  return Token::End;
}

bool Cursor::readStartTag() {
  m_Attributes.clear();
  if (!take('<') || !readName()) {
    return false;
  }
  skipSpace();
  while (!isAtEnd() && peek() != '>' && (peek() != '/' || peek(1) != '>')) {
    if (!readAttribute(m_Attributes.emplace_back())) {
      m_Attributes.pop_back();
      return false;
    }
    ++m_Position;
    skipSpace();
  }
  m_IsEmpty = take('/');
  take('>');
  return true;
}

bool Cursor::readEndTag(std::string_view expected) {
  if (!take('<', '/')) {
    return false;
  }
  if (expected.empty() || !rest().starts_with(expected) || isOf(NamePart, peek(expected.size()))) {
    // Moves past the other name, if it is a name. The fault is there.
    readName();
    return false;
  }
  m_Position += expected.size();
  skipSpace();
  return take('>');
}

bool Cursor::readName() {
  if (!isOf(NameStart, peek()) || isReserved(rest())) {
    return false;
  }
  m_Name = takeName();
  return true;
}

bool Cursor::readAttribute(Attribute& attribute) {
  if (!isOf(NameStart, peek())) {
    return false;
  }
  attribute.name = takeName();
  skipSpace();
  if (!take('=')) {
    return false;
  }
  skipSpace();
  return readValue(attribute.value);
}

bool Cursor::readValue(std::string_view& value) {
  if (!take('"')) {
    return false;
  }
  value = rest().substr(0, rest().find('"'));
  m_Position += value.size();
  return !isAtEnd();
}

void Cursor::readText() {
  skipSpace();
  m_Text = rest().substr(0, rest().find('<'));
  m_Position += m_Text.size();
}

bool Cursor::skipInstruction() {
  if (!take('<', '?')) {
    return false;
  }
  // The "?" of "<?" may also be the "?" of "?>", so "<?>" is a complete instruction.
  --m_Position;
  return skipPast("?>");
}

bool Cursor::skipComment() {
  return take('<', '!') && skipPast("-->");
}

std::string_view Cursor::takeName() {
  const std::string_view all = rest();
  std::size_t size = 0;
  while (size < all.size() && isOf(NamePart, all[size])) {
    ++size;
  }
  m_Position += size;
  return all.substr(0, size);
}

bool Cursor::skipPast(std::string_view token) {
  const std::size_t found = m_Document.find(token, m_Position);
  m_Position = found == std::string_view::npos ? m_Document.size() : found + token.size();
  return found != std::string_view::npos;
}

bool Cursor::skipMarkup() {
  if (peek() == '<' && peek(1) == '?') {
    return skipInstruction();
  }
  if (peek() == '<' && peek(1) == '!') {
    return skipComment();
  }
  ++m_Position;
  return true;
}

Token Cursor::close() {
  m_Name = m_Open.back();
  m_Open.pop_back();
  return Token::EndTag;
}

Token Cursor::fail() const {
  printFault(m_Document, m_Position);
  return Token::Error;
}

void printFault(std::string_view document, std::size_t position) {
  util::writeAnswer(position >= document.size()
                        ? "<<end of string>>\n"
                        : util::formatted("Parsing error at character %d, '%c'\n",
                                          static_cast<int>(position), document[position]));
}

}  // namespace xml
