// Path queries: the steps of a path, and the callbacks that compare elements with the steps during
// a parse.

#include "xml/simple_xpath.h"

#include <algorithm>
#include <utility>

#include "util/c_text.h"
#include "util/decimal.h"
#include "xml/simple_sax_parser.h"

namespace {

constexpr std::size_t None = std::string_view::npos;
/// The depth for which memory is reserved. The elements of the printer's replies are less deep.
constexpr std::size_t UsualDepth = 16;

}  // namespace

simpleXPath::simpleXPath(const std::string& xml) : m_Xml(xml) {}

std::string simpleXPath::query(const char* path) {
  return query(std::string(util::textOf(path)));
}

std::string simpleXPath::query(const std::string& path) {
  m_IsListing = false;
  run(path);
  return m_Result;
}

std::vector<std::string> simpleXPath::queryList(const std::string& path) {
  m_IsListing = true;
  m_Entries.fill(std::nullopt);
  run(path + "[1]");
  std::vector<std::string> texts;
  for (std::optional<std::string>& entry : m_Entries) {
    if (!entry || entry->empty()) {
      break;
    }
    texts.push_back(std::move(*entry));
  }
  return texts;
}

void simpleXPath::run(std::string_view path) {
  SimpleSAXParser parser(*this);
  m_Path = parsePath(path);
  m_Stack.reserve(m_Path.size());
  m_Open.reserve(UsualDepth);
  m_Stop = false;
  parser.parseXMLString(m_Xml.c_str());
  m_Path.clear();
}

void simpleXPath::start() {
  m_Result.clear();
  resetNode(m_LastClosed);
  m_Open.clear();
  m_Stack.clear();
}

void simpleXPath::startElement(const char* name, attributes& attrs) {
  const std::string_view text = util::textOf(name);
  // The element that closed last need not be a sibling. In the printer's lists it is a sibling,
  // because the entries contain no elements.
  const std::int32_t index = m_LastClosed.name == text ? m_LastClosed.index + 1 : 1;
  const std::size_t depth = m_Open.size();
  m_Open.push_back(index);
  // Inside an element that does not match, nothing can match.
  if (m_Stack.size() != depth || depth >= m_Path.size()) {
    return;
  }
  // A list needs the elements at all positions, so set the position in the last step to the
  // position of this element.
  nodeType& step = m_Path[depth];
  if (m_IsListing && depth + 1 == m_Path.size() && index <= LargestPosition) {
    step.index = index;
  }
  if (passes(step, text, index, attrs)) {
    nodeType& element = m_Stack.emplace_back();
    element.name = text;
    element.attrs = attrs;
    element.index = index;
  }
}

void simpleXPath::characters(const char* text, unsigned int /*len*/) {
  if (isAtPath()) {
    m_Stack.back().text += util::textOf(text);
  }
}

void simpleXPath::endElement(const char* name) {
  if (m_Open.empty()) {
    return;
  }
  if (isAtPath() && isFindMatch(m_Path, m_Stack, m_Result)) {
    if (m_IsListing) {
      storeEntry(m_Stack.back());
    } else {
      m_Stop = true;
    }
  }
  m_LastClosed.name = util::textOf(name);
  m_LastClosed.index = m_Open.back();
  if (m_Stack.size() == m_Open.size()) {
    m_Stack.pop_back();
  }
  m_Open.pop_back();
}

void simpleXPath::storeEntry(const nodeType& entry) {
  std::optional<std::string>& place = m_Entries[static_cast<std::size_t>(entry.index) - 1];
  if (!place) {
    place = entry.text;
  }
  // The list ends at its first empty entry. It is complete when all entries before the empty entry
  // are known.
  for (const std::optional<std::string>& known : m_Entries) {
    if (!known) {
      return;
    }
    if (known->empty()) {
      m_Stop = true;
      return;
    }
  }
}

void simpleXPath::end() {}

void simpleXPath::resetNode(nodeType& node) {
  node.name.clear();
  node.text.clear();
  node.attrs.clear();
  node.index = 0;
  node.filterName.clear();
  node.filterValue.clear();
}

std::vector<simpleXPath::nodeType> simpleXPath::parsePath(std::string_view path) {
  std::vector<nodeType> steps;
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
  const std::size_t equals = filter.find('=', at);
  if (equals == None) {
    return;
  }
  const std::size_t quote = filter.find('\'', equals);
  if (quote == None) {
    return;
  }
  const std::size_t endQuote = filter.find('\'', quote + 1);
  if (endQuote == None) {
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
  if (path.empty() || !std::ranges::equal(path, stack, isStepMatch)) {
    return false;
  }
  result = stack.back().text;
  return true;
}

bool simpleXPath::isStepMatch(const nodeType& step, const nodeType& element) {
  return passes(step, element.name, element.index, element.attrs);
}

bool simpleXPath::passes(const nodeType& step, std::string_view name, std::int32_t index,
                         const attributes& attrs) {
  if (step.name != name) {
    return false;
  }
  if (step.filterName.empty()) {
    return true;
  }
  if (step.filterName == NoMatchFilter) {
    return false;
  }
  if (step.filterName == IndexFilter) {
    return step.index == index;
  }
  return attrs.getAttribute(step.filterName.c_str()) == step.filterValue;
}
