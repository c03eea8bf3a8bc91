// The first line of the input is a path, the rest is a document. The query must return the same
// text as a simple model that compares the whole path at every end tag.

#include <algorithm>
#include <string>
#include <vector>

#include "fuzz_target.h"
#include "xml/simple_sax_parser.h"
#include "xml/simple_xpath.h"

namespace {

/// The model: compares the whole path at every end tag and never stops early.
class PlainQuery : public SimpleSAXHandler {
 public:
  explicit PlainQuery(const std::string& path) : m_Path(simpleXPath::parsePath(path)) {}

  void startElement(const char* name, attributes& attrs) override {
    simpleXPath::nodeType node;
    node.name = name;
    node.attrs = attrs;
    node.index = m_Closed.name == name ? m_Closed.index + 1 : 1;
    m_Open.push_back(node);
  }
  void characters(const char* text, unsigned int /*len*/) override { m_Open.back().text += text; }
  void endElement(const char* /*name*/) override {
    isFound = isFound || simpleXPath::isFindMatch(m_Path, m_Open, result);
    m_Closed = m_Open.back();
    m_Open.pop_back();
  }

  bool isFound = false;
  std::string result;

 private:
  std::vector<simpleXPath::nodeType> m_Path;
  std::vector<simpleXPath::nodeType> m_Open;
  simpleXPath::nodeType m_Closed;
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = fuzz::textOf(data, size);
  const std::size_t line = std::min(input.find('\n'), input.size());
  const std::string path = input.substr(0, line);
  const std::string document = input.substr(std::min(line + 1, input.size()));

  simpleXPath xpath(document);
  const std::string result = xpath.query(path);
  fuzz::require(xpath.query(path) == result);

  PlainQuery plain(path);
  SimpleSAXParser(plain).parseXMLString(document);
  fuzz::require(result == plain.result);
  return 0;
}
