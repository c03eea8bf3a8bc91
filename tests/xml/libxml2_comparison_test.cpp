// Compares query results with libxml2's XPath, for paths with the same meaning.

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "xml/random_document.h"
#include "xml/simple_xpath.h"

namespace {

const char* textOf(const xmlChar* text) {
  return reinterpret_cast<const char*>(text);
}

class Libxml2Document {
 public:
  explicit Libxml2Document(const std::string& text)
      : m_Tree(xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, 0)),
        m_Context(xmlXPathNewContext(m_Tree.get())) {}

  bool isParsed() const { return m_Tree != nullptr && m_Context != nullptr; }

  /// Returns the text of the first element at `path`, without its child elements. Each run of text
  /// loses its leading white space.
  std::string query(const std::string& path) const {
    const std::unique_ptr<xmlXPathObject, Free> found(
        xmlXPathEvalExpression(reinterpret_cast<const xmlChar*>(path.c_str()), m_Context.get()));
    if (found == nullptr) {
      ADD_FAILURE() << "not a path: " << path;
      return {};
    }
    if (found->nodesetval == nullptr || found->nodesetval->nodeNr < 1) {
      return {};
    }
    std::string result;
    for (const xmlNode* node = found->nodesetval->nodeTab[0]->children; node != nullptr;
         node = node->next) {
      if (node->type == XML_TEXT_NODE) {
        const std::string run = textOf(node->content);
        result += run.substr(std::min(run.find_first_not_of(" \t\r\n"), run.size()));
      }
    }
    return result;
  }

 private:
  struct Free {
    void operator()(xmlDoc* tree) const { xmlFreeDoc(tree); }
    void operator()(xmlXPathContext* context) const { xmlXPathFreeContext(context); }
    void operator()(xmlXPathObject* object) const { xmlXPathFreeObject(object); }
  };

  std::unique_ptr<xmlDoc, Free> m_Tree;
  std::unique_ptr<xmlXPathContext, Free> m_Context;
};

/// Returns a path from the root to an element, with random filters. Some names in the path do not
/// exist in the document.
std::string randomPath(std::mt19937& random, const RandomDocument& document, bool hasPositions) {
  const auto& elements = document.elements();
  std::string path;
  for (const std::string& name : elements[random() % elements.size()]) {
    path += "/" + (random() % 30 == 0 ? "absent" : name);
    switch (random() % 6) {
      case 0:
        path += "[@n='1']";
        break;
      case 1:
        path += random() % 2 == 0 ? "[@m='2']" : "[ @m = '1' ]";
        break;
      case 2:
        if (hasPositions) {
          path += "[" + std::to_string(1 + random() % 3) + "]";
        }
        break;
      default:
        break;
    }
  }
  return path;
}

/// Compares the results of random paths in random documents. Expects that some paths find a text
/// and some do not.
void compare(RandomDocument::Names names, bool hasPositions) {
  int found = 0;
  int missed = 0;
  for (unsigned int seed = 1; seed <= 400; ++seed) {
    const RandomDocument document(seed, names);
    const Libxml2Document tree(document.text());
    ASSERT_TRUE(tree.isParsed()) << "seed " << seed << ": " << document.text();
    simpleXPath xpath(document.text());
    std::mt19937 random(seed);
    for (int i = 0; i < 6; ++i) {
      const std::string path = randomPath(random, document, hasPositions);
      const std::string result = xpath.query(path);
      ASSERT_EQ(result, tree.query(path))
          << "seed " << seed << ", path " << path << ": " << document.text();
      ++(result.empty() ? missed : found);
    }
  }
  EXPECT_GT(found, 300);
  EXPECT_GT(missed, 300);
}

}  // namespace

TEST(Libxml2Comparison, FindsTheSameTextsByNameAndAttribute) {
  compare(RandomDocument::Names::Few, false);
}

TEST(Libxml2Comparison, FindsTheSameTextsByPosition) {
  compare(RandomDocument::Names::SortedByDepth, true);
}
