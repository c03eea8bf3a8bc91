#pragma once

#include <cstddef>
#include <cstdint>
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
  /// One element: a step of a path, or an element that is open in the document.
  struct nodeType {
    std::string name;         ///< of the element; for a step, of the elements that it matches
    std::string text;         ///< open element: its own text, without that of elements inside it
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
  static bool isStepMatch(const nodeType& step, const nodeType& element);

  std::string m_Xml;
  std::vector<nodeType> m_Path;
  std::vector<nodeType> m_Stack;
  std::string m_Result;
  nodeType m_Current;     ///< the element being opened
  nodeType m_LastClosed;  ///< the element that closed last, at any depth
  /// How many of the outermost open elements match their steps without a gap. Kept as elements open
  /// and close, it spares comparing the whole path at every end tag.
  std::size_t m_MatchedSteps = 0;
};
