#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "xml/attributes.h"
#include "xml/simple_sax_handler.h"

/// Finds the text of the first element at a path in an XML document:
///
///     simpleXPath document("<a><b>one</b><b>two</b></a>");
///     document.query("/a/b[2]");  // "two"
///
/// A path is absolute. Each step names an element and may have a filter:
///
///     /response/MapElem/child[@name='status_code']/IntegerElem      by an attribute's value
///     /response/MapElem/child/ListElem/StringElem[2]                by a position from 1 to 9
///
/// Each query reads the document again, up to the first match. The time is about linear in the
/// length of the document and of the path.
///
/// An element has a position: if the element that closed last, at any depth, has the same name, the
/// position is one more than that element's position. Otherwise it is 1.
///
/// A query reads the tokens of an `xml::Cursor`. It does not use the inherited callbacks of the
/// parser, which do nothing.
class simpleXPath : public SimpleSAXHandler {
 public:
  /// Either one step of a path, or an open element of the document that matches its step.
  struct nodeType {
    std::string name;         ///< the element's name; in a step, the wanted name
    std::string text;         ///< open element at the path: its text, except in inner elements
    attributes attrs;         ///< open element: its attributes
    std::int32_t index = 0;   ///< open element: its position; step: the wanted position
    std::string filterName;   ///< step: empty for no filter, `IndexFilter`, `NoMatchFilter`, or the
                              ///< name of an attribute
    std::string filterValue;  ///< step: the wanted value of the attribute, or the position as text
  };

  /// Filter names that no attribute can have: a filter by position, and a filter that no element
  /// passes.
  static constexpr std::string_view IndexFilter = "<INDEX>";
  static constexpr std::string_view NoMatchFilter = "<UNDEFINED>";

  /// Copies the document, which ends at its first zero byte.
  explicit simpleXPath(const std::string& xml);

  /// Returns the text of the first element at `path` that closes, and sets `m_Stop` to whether
  /// there is such an element. Returns an empty text if there is no such element, it has no text,
  /// or the path has no step. Also returns an empty text if the document is malformed before that
  /// element; a line about the fault has then been printed.
  std::string query(const std::string& path);
  /// Does the same for a C string. A null pointer is an empty path.
  std::string query(const char* path);

  /// Returns the texts at the positions 1 to 9 of `path`, up to the first empty text. The texts are
  /// those that the queries for `path` + "[1]" to `path` + "[9]" return, but the document is read
  /// only once. The last step of `path` has no filter.
  std::vector<std::string> queryList(const std::string& path);

  // --- The steps of a path query ------------------------------------------------------------

  /// Clears all texts and attributes and sets the index to 0.
  static void resetNode(nodeType& node);

  /// Returns the steps, which "/" separates. Ignores empty steps and the text before the first "/".
  static std::vector<nodeType> parsePath(std::string_view path);

  /// Reads one step, "name" or "name[filter]". Ignores a filter without "]".
  static nodeType parseNode(std::string_view step);

  /// Reads the filter "@name='value'" into `node`. A filter without "@" becomes `NoMatchFilter`.
  /// Ignores a filter in which another part is missing.
  static void parseFilterAttr(std::string_view filter, nodeType& node);

  /// Returns `text` without the spaces at both ends. Other white space stays.
  static std::string_view removeSpaces(std::string_view text);

  /// Compares the open elements in `stack`, outermost first, with the steps of `path` one by one.
  /// If all match and the counts are equal, sets `result` to the text of the innermost element and
  /// returns true.
  static bool isFindMatch(const std::vector<nodeType>& path, const std::vector<nodeType>& stack,
                          std::string& result);

 private:
  std::string m_Xml;
};
