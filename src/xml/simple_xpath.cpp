// Path queries: the steps of a path, and the comparison of elements with the steps.

#include "xml/simple_xpath.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <typeinfo>
#include <utility>

#include "util/c_text.h"
#include "util/decimal.h"
#include "xml/cursor.h"
#include "xml/entities.h"
#include "xml/simple_sax_parser.h"

namespace {

using Node = simpleXPath::nodeType;

constexpr std::size_t None = std::string_view::npos;
constexpr std::int32_t LargestPosition = 9;
/// Memory is reserved for paths of so many steps. The program's paths are shorter.
constexpr std::ptrdiff_t UsualSteps = 16;

/// Returns true if an element with this name and position matches the step. `has` returns true if
/// an attribute of the element has a value.
template <typename Has>
bool passes(const Node& step, std::string_view name, std::int32_t index, Has has) {
  if (step.name != name || step.filterName == simpleXPath::NoMatchFilter) {
    return false;
  }
  if (step.filterName == simpleXPath::IndexFilter) {
    return step.index == index;
  }
  return step.filterName.empty() || has(step.filterName.c_str(), step.filterValue);
}

/// Returns a text of the document with its entities replaced. If it has entities, the result is in
/// `buffer`.
std::string_view replaced(std::string_view text, std::string& buffer) {
  if (text.find('&') == None) {
    return text;
  }
  buffer = text;
  xml::replaceEntities(buffer);
  return buffer;
}

/// Returns true if the last attribute with this name has the value `text`. An absent attribute has
/// an empty value.
bool hasValue(const std::vector<xml::Attribute>& tag, std::string_view name,
              std::string_view text) {
  const auto found = std::ranges::find(tag.rbegin(), tag.rend(), name, &xml::Attribute::name);
  std::string buffer;
  return text == replaced(found == tag.rend() ? std::string_view() : found->value, buffer);
}

}  // namespace

template <typename Name>
template <typename Has>
void simpleXPath::Matcher<Name>::open(std::string_view name, Has has) {
  // The element that closed last need not be a sibling. In the printer's lists it is a sibling,
  // because the entries contain no elements.
  const std::int32_t index = m_ClosedName == name ? m_ClosedIndex + 1 : 1;
  const std::size_t depth = m_Open.size();
  m_Open.push_back(index);
  // Inside an element that does not match, nothing can match.
  if (m_Matching == depth && depth < m_Path.size() && passes(m_Path[depth], name, index, has)) {
    ++m_Matching;
    m_Text.clear();
  }
}

template <typename Name>
bool simpleXPath::Matcher<Name>::close(std::string_view name) {
  const bool isMatch = isAtPath();
  m_ClosedName = name;
  m_ClosedIndex = m_Open.back();
  if (m_Matching == m_Open.size()) {
    --m_Matching;
  }
  m_Open.pop_back();
  return isMatch;
}

class simpleXPath::Matches {
 public:
  Matches(const char* document, std::vector<Node> path)
      : m_Cursor(document), m_Matcher(std::move(path)) {
    // If the prolog does not end, the cursor is at the end of the document.
    m_Cursor.skipProlog();
  }

  /// Moves to the end of the next element at the path, in the order in which the elements close.
  /// Returns false if there is none.
  bool next() {
    for (;;) {
      switch (m_Cursor.next()) {
        case xml::Token::StartTag:
          m_Matcher.open(m_Cursor.name(), [this](const char* name, const std::string& value) {
            return hasValue(m_Cursor.attributes(), name, value);
          });
          break;
        case xml::Token::Text:
          if (m_Matcher.isAtPath()) {
            m_Matcher.addText(replaced(m_Cursor.text(), m_Buffer));
          }
          break;
        case xml::Token::EndTag:
          if (m_Matcher.close(m_Cursor.name())) {
            return true;
          }
          break;
        case xml::Token::End:
        case xml::Token::Error:
          return false;
      }
    }
  }

  const std::string& text() const { return m_Matcher.text(); }
  std::int32_t index() const { return m_Matcher.index(); }

 private:
  xml::Cursor m_Cursor;
  Matcher<std::string_view> m_Matcher;
  std::string m_Buffer;  ///< the last text with entities
};

simpleXPath::simpleXPath(const std::string& xml) : m_Xml(xml) {}

std::string simpleXPath::query(const char* path) {
  return query(std::string(util::textOf(path)));
}

std::string simpleXPath::query(const std::string& path) {
  if (typeid(*this) != typeid(simpleXPath)) {
    m_Matcher = Matcher<std::string>(parsePath(path));
    m_Stop = false;
    SimpleSAXParser(*this).parseXMLString(m_Xml.c_str());
    m_Matcher = {};
    return m_Result;
  }
  Matches matches(m_Xml.c_str(), parsePath(path));
  m_Stop = matches.next();
  return m_Stop ? matches.text() : std::string();
}

void simpleXPath::start() {
  m_Result.clear();
  m_Matcher.restart();
}

void simpleXPath::startElement(const char* name, attributes& attrs) {
  m_Matcher.open(util::textOf(name), [&attrs](const char* attribute, const std::string& value) {
    return attrs.getAttribute(attribute) == value;
  });
}

void simpleXPath::characters(const char* text, unsigned int /*len*/) {
  if (m_Matcher.isAtPath()) {
    m_Matcher.addText(util::textOf(text));
  }
}

void simpleXPath::endElement(const char* name) {
  if (m_Matcher.hasOpen() && m_Matcher.close(util::textOf(name))) {
    m_Result = m_Matcher.text();
    m_Stop = true;
  }
}

void simpleXPath::end() {}

std::vector<std::string> simpleXPath::queryList(const std::string& path) {
  std::vector<nodeType> steps = parsePath(path + "[1]");
  if (!steps.empty()) {
    steps.back().filterName.clear();
  }
  std::array<std::optional<std::string>, LargestPosition> entries;
  Matches matches(m_Xml.c_str(), std::move(steps));
  // The list ends at its first empty entry. It is complete if no entry before this one is missing.
  auto* end = entries.begin();
  while ((end == entries.end() || !*end) && matches.next()) {
    if (matches.index() <= LargestPosition) {
      auto& entry = entries[static_cast<std::size_t>(matches.index()) - 1];
      if (!entry) {
        entry = matches.text();
      }
    }
    end = std::ranges::find_if(entries, [](const auto& each) { return !each || each->empty(); });
  }
  std::vector<std::string> texts;
  std::for_each(entries.begin(), end, [&](auto& entry) { texts.push_back(std::move(*entry)); });
  return texts;
}

void simpleXPath::resetNode(nodeType& node) {
  node = nodeType();
}

std::vector<simpleXPath::nodeType> simpleXPath::parsePath(std::string_view path) {
  std::vector<nodeType> steps;
  steps.reserve(static_cast<std::size_t>(std::min(std::ranges::count(path, '/'), UsualSteps)));
  std::size_t slash = path.find('/');
  while (slash != None) {
    const std::size_t start = slash + 1;
    slash = path.find('/', start);
    const std::string_view step = removeSpaces(path.substr(start, slash - start));
    if (!step.empty()) {
      steps.push_back(parseNode(step));
    }
  }
  return steps;
}

simpleXPath::nodeType simpleXPath::parseNode(std::string_view step) {
  nodeType node;
  const std::size_t open = step.find('[');
  const std::size_t close = step.find(']', std::min(open, step.size()));
  node.name = removeSpaces(step.substr(0, open));
  if (close == None) {
    return node;
  }
  // A filter that is a number from 1 to 9 is a position. Any other filter must be an attribute
  // filter.
  const std::string_view filter = step.substr(open + 1, close - open - 1);
  const int position = util::toInt(removeSpaces(filter));
  if (position >= 1 && position <= LargestPosition) {
    node.filterName = IndexFilter;
    node.filterValue = filter;
    node.index = position;
  } else {
    parseFilterAttr(filter, node);
  }
  return node;
}

void simpleXPath::parseFilterAttr(std::string_view filter, nodeType& node) {
  const std::size_t at = filter.find('@');
  if (at == None) {
    node.filterName = NoMatchFilter;
    node.filterValue.clear();
    return;
  }
  // A search from `None` on finds nothing.
  const std::size_t equals = filter.find('=', at);
  const std::size_t quote = filter.find('\'', equals);
  const std::size_t endQuote = filter.find('\'', quote + 1);
  if (quote == None || endQuote == None) {
    return;
  }
  node.filterName = removeSpaces(filter.substr(at + 1, equals - at - 1));
  node.filterValue = filter.substr(quote + 1, endQuote - quote - 1);
}

std::string_view simpleXPath::removeSpaces(std::string_view text) {
  const std::size_t first = std::min(text.find_first_not_of(' '), text.size());
  text.remove_prefix(first);
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

bool simpleXPath::isFindMatch(const std::vector<nodeType>& path, const std::vector<nodeType>& stack,
                              std::string& result) {
  const auto isMatch = [](const nodeType& step, const nodeType& element) {
    return passes(step, element.name, element.index,
                  [&element](const char* name, const std::string& value) {
                    return element.attrs.getAttribute(name) == value;
                  });
  };
  if (path.empty() || !std::ranges::equal(path, stack, isMatch)) {
    return false;
  }
  result = stack.back().text;
  return true;
}
