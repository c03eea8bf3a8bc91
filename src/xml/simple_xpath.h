#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
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
/// A query reads the tokens of an `xml::Cursor`, which takes half the time of a parse with
/// callbacks. Only for a derived class, which may override the callbacks, `SimpleSAXParser` calls
/// them.
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

  // --- The parser's callbacks ---------------------------------------------------------------

  /// Forgets the result and the open elements of the last parse.
  void start() override;
  /// Opens an element.
  void startElement(const char* name, attributes& attrs) override;
  /// Closes the innermost element. If it is at the path, its text is the result of the query, and
  /// the parse stops.
  void endElement(const char* name) override;
  /// Adds a C string to the text of the innermost element. Ignores `len`.
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
  /// Compares the open elements of a document with the steps of a path. `Name` is the type of the
  /// name that it keeps: a copy, or a view of the document.
  template <typename Name>
  class Matcher {
   public:
    Matcher() = default;
    explicit Matcher(std::vector<nodeType> path) : m_Path(std::move(path)) {}

    /// Opens an element. `has` returns true if an attribute of the element has a value.
    template <typename Has>
    void open(std::string_view name, Has has);
    /// Adds to the text of the element at the path. Only for this element is its text needed.
    void addText(std::string_view text) { m_Text += text; }
    /// Closes the innermost element. Returns true if it is at the path.
    bool close(std::string_view name);

    bool hasOpen() const { return !m_Open.empty(); }
    /// Returns true if the innermost element is at the path.
    bool isAtPath() const { return m_Matching == m_Open.size() && m_Matching == m_Path.size(); }
    /// Returns the text of the element at the path, except that of its inner elements.
    const std::string& text() const { return m_Text; }
    /// Returns the position of the element that closed last.
    std::int32_t index() const { return m_ClosedIndex; }
    /// Forgets the elements, but keeps the path.
    void restart() { *this = Matcher(std::move(m_Path)); }

   private:
    std::vector<nodeType> m_Path;
    std::vector<std::int32_t> m_Open;  ///< the positions of all open elements, outermost first
    std::size_t m_Matching = 0;        ///< how many of these elements, from the outermost on, match
    std::string m_Text;                ///< of the element at the path
    Name m_ClosedName;                 ///< of the element that closed last, at any depth
    std::int32_t m_ClosedIndex = 0;
  };
  /// Finds the elements at a path with a cursor.
  class Matches;

  std::string m_Xml;
  Matcher<std::string> m_Matcher;  ///< of the callbacks
  std::string m_Result;            ///< of the callbacks
};
