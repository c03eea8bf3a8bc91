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

/// Answers what the text of the first element at a path of an XML document is. A path is absolute,
/// and every step names an element and may narrow it by a filter:
///
///     /response/MapElem/child[@name='status_code']/IntegerElem      by an attribute's value
///     /response/MapElem/child/ListElem/StringElem[2]                by a position from 1 to 9
///
/// Each query parses the document anew, up to the first match, and costs a time linear in the
/// document and the path.
class simpleXPath : public SimpleSAXHandler {
 public:
  /// One element: a step of a path, or an element that is open in the document and matches its
  /// step.
  struct nodeType {
    std::string name;         ///< of the element; for a step, of the elements that it matches
    std::string text;         ///< open element: its own text, without that of elements inside it,
                              ///< if it lies at the path
    attributes attrs;         ///< open element: its attributes
    std::int32_t index = 0;   ///< open element: see `startElement`; step: the wanted position
    std::string filterName;   ///< step: no filter if empty, `IndexFilter`, `NoMatchFilter`, or an
                              ///< attribute's name
    std::string filterValue;  ///< step: the wanted value of that attribute, or the position's text
  };

  /// Filter names that are no attribute's name: by position, and one that nothing passes.
  static constexpr std::string_view IndexFilter = "<INDEX>";
  static constexpr std::string_view NoMatchFilter = "<UNDEFINED>";

  /// Copies the document, which ends at its first zero byte.
  explicit simpleXPath(const std::string& xml);

  /// Returns the text of the first element to close that lies at `path`. The text is empty when
  /// there is no such element, when it has no text, when the path has no step and when the document
  /// is malformed before it; then the parser has written its error line.
  std::string query(const std::string& path);
  std::string query(const char* path);

  /// Returns the texts at the positions 1, 2... 9 of `path`, as queries with "[1]", "[2]"... behind
  /// it would one after the other, up to the first empty one; in a single parse.
  std::vector<std::string> queryList(const std::string& path);

  // --- The parser's callbacks ---------------------------------------------------------------

  void start() override;
  /// Opens an element. Its position is one more than that of the element that closed last, at any
  /// depth, if that has the same name; otherwise 1.
  void startElement(const char* name, attributes& attrs) override;
  /// Closes the innermost element; if it lies at the path, it is the answer.
  void endElement(const char* name) override;
  void characters(const char* text, unsigned int len) override;
  void end() override;

  // --- The steps of a query -----------------------------------------------------------------

  /// Sets every text to empty, the index to 0 and removes the attributes.
  static void resetNode(nodeType& node);

  /// Reads the steps that "/" separates; empty ones, and what stands before the first "/", do not
  /// count.
  static std::vector<nodeType> parsePath(std::string_view path);

  /// Reads one step, "name" or "name[filter]". A filter that does not end is none.
  static nodeType parseNode(std::string_view step);

  /// Reads a filter that is no position into `node`: "@name='value'". Without "@" it lets nothing
  /// pass; with another part missing it is none.
  static void parseFilterAttr(std::string_view filter, nodeType& node);

  /// Returns `text` without the spaces at both ends; other white space stays.
  static std::string_view removeSpaces(std::string_view text);

  /// Tells whether the open elements, outermost first, are as many as the steps of `path` and match
  /// them one by one. If so, sets `result` to the text of the innermost.
  static bool isFindMatch(const std::vector<nodeType>& path, const std::vector<nodeType>& stack,
                          std::string& result);

 private:
  static constexpr std::int32_t LargestPosition = 9;

  static bool isStepMatch(const nodeType& step, const nodeType& element);
  static bool passes(const nodeType& step, std::string_view name, std::int32_t index,
                     const attributes& attrs);

  /// Parses the document with the steps of a path.
  void run(std::string_view path);
  /// Whether the innermost open element lies at the path.
  bool isAtPath() const {
    return !m_Path.empty() && m_Stack.size() == m_Path.size() && m_Open.size() == m_Path.size();
  }
  /// Takes the text of a list's entry; stops when no later entry can change the list.
  void takeEntry(const nodeType& entry);

  std::string m_Xml;
  std::vector<nodeType> m_Path;
  /// The positions of the open elements, outermost first; and those elements themselves, as far as
  /// they match their steps without a gap. No other can be, or have in it, what is looked for.
  std::vector<std::int32_t> m_Open;
  std::vector<nodeType> m_Stack;
  std::string m_Result;
  nodeType m_LastClosed;  ///< name and index of the element that closed last, at any depth
  /// Whether a list is asked for, the last step then matching at any position; and its entries.
  bool m_IsListing = false;
  std::array<std::optional<std::string>, LargestPosition> m_Entries;
};
