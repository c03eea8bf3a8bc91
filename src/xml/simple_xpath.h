#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
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
/// Each query parses the document again, up to the first match. The time is about linear in the
/// length of the document and of the path.
class simpleXPath : public SimpleSAXHandler {
 public:
  /// Either one step of a path, or an open element of the document that matches its step.
  struct nodeType {
    std::string name;         ///< the element's name; in a step, the wanted name
    std::string text;         ///< open element at the path: its text, except in inner elements
    attributes attrs;         ///< open element: its attributes
    std::int32_t index = 0;   ///< open element: see `startElement`; step: the wanted position
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

  /// Returns the text of the first element at `path` that closes. Returns an empty text if there is
  /// no such element, it has no text, or the path has no step. Also returns an empty text if the
  /// document is malformed before that element; the parser has then printed its error line.
  std::string query(const std::string& path);
  /// Does the same for a C string. A null pointer is an empty path.
  std::string query(const char* path);

  /// Returns the texts at the positions 1 to 9 of `path`, up to the first empty text. The texts are
  /// those that the queries for `path` + "[1]" to `path` + "[9]" return, but the document is parsed
  /// only once.
  std::vector<std::string> queryList(const std::string& path);

  // --- The parser's callbacks ---------------------------------------------------------------
  //
  // `SimpleSAXParser` calls them during a path query.

  /// Clears the state of the previous path query.
  void start() override;
  /// Opens an element. If the element that closed last, at any depth, has the same name, the
  /// position of the new element is one more than that element's position. Otherwise the position
  /// is 1.
  void startElement(const char* name, attributes& attrs) override;
  /// Closes the innermost element. If the element is at the path, its text is the result of the
  /// query.
  void endElement(const char* name) override;
  /// Appends `text` to the text of the innermost element if this element is at the path. Ignores
  /// `len`.
  void characters(const char* text, unsigned int len) override;
  /// Does nothing.
  void end() override;

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
  static constexpr std::int32_t LargestPosition = 9;

  /// Returns true if an open element matches the step.
  static bool isStepMatch(const nodeType& step, const nodeType& element);
  /// Returns true if an element with this name, position and attributes matches the step.
  static bool passes(const nodeType& step, std::string_view name, std::int32_t index,
                     const attributes& attrs);

  /// Parses the document and compares its elements with the steps of `path`.
  void run(std::string_view path);
  /// Returns true if the innermost open element is at the path.
  bool isAtPath() const {
    return !m_Path.empty() && m_Stack.size() == m_Path.size() && m_Open.size() == m_Path.size();
  }
  /// Stores the text of a list entry. Stops the parse if no later element can change the list.
  void storeEntry(const nodeType& entry);

  std::string m_Xml;
  /// The steps of the path.
  std::vector<nodeType> m_Path;
  /// The positions of all open elements, outermost first.
  std::vector<std::int32_t> m_Open;
  /// The open elements up to the first one that does not match its step. No element inside the
  /// mismatching element can be at the path.
  std::vector<nodeType> m_Stack;
  std::string m_Result;
  nodeType m_LastClosed;  ///< name and index of the element that closed last, at any depth
  /// True during `queryList`. The last step of the path then matches at each position.
  bool m_IsListing = false;
  /// The list's entries by position, the first one at index 0. An entry without a value was not
  /// found.
  std::array<std::optional<std::string>, LargestPosition> m_Entries;
};
