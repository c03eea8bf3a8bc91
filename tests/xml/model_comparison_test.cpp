// Compares the parser and the path queries with a simple model, for random documents of which most
// are damaged.

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "testing/xml_model.h"
#include "xml/random_document.h"
#include "xml/recording_handler.h"
#include "xml/simple_xpath.h"

namespace {

using Texts = std::vector<std::string>;

constexpr unsigned int Documents = 2500;

/// A random document, with up to three damages.
class DamagedDocument {
 public:
  explicit DamagedDocument(unsigned int seed)
      : m_Random(seed), m_Document(seed, RandomDocument::Names::Few), text(m_Document.text()) {
    for (std::size_t count = below(4); count > 0; --count) {
      damage();
    }
  }

  /// Returns a path to a random element, perhaps with filters.
  std::string path() {
    const auto& elements = m_Document.elements();
    std::string path;
    for (const std::string& name : elements[below(elements.size())]) {
      path += "/" + name + pick({"", "", "", "[1]", "[2]", "[@n='1']", "[@m='']", "[@n]", "[x]"});
    }
    return path;
  }

  std::size_t below(std::size_t limit) { return m_Random() % limit; }

 private:
  std::string pick(const Texts& texts) { return texts[below(texts.size())]; }

  void damage() {
    const std::size_t place = below(text.size() + 1);
    switch (below(4)) {
      case 0:
        text.insert(place, pick({"<", ">", "/", "\"", "&", ";", "=", "<a>", "</a>", "<a/>", "<?",
                                 "<!", "-->", "?>", " ", "x", "<xml/>", "&amp;", " n=\"1\""}));
        break;
      case 1:
        text.erase(place, 1 + below(3));
        break;
      case 2:
        text.insert(place, text.substr(below(text.size() + 1), below(20)));
        break;
      default:
        text.resize(text.size() - below(text.size() / 4 + 1));
        break;
    }
  }

  std::mt19937 m_Random;
  RandomDocument m_Document;

 public:
  std::string text;
};

/// The parser calls the callbacks of a derived class, though this one overrides none.
class QueryByCallbacks : public simpleXPath {
 public:
  using simpleXPath::simpleXPath;
};

/// Returns what the model does with a document, in the form of `parse`.
Parsed modelParse(const std::string& document, const std::string& stopAt) {
  Parsed parsed;
  const auto onEvent = [&](const xml_model::Event& event) {
    const std::string line = lineOf(event);
    if (line != "start" && line != "end") {
      parsed.events.push_back(line);
    }
    return line == stopAt;
  };
  parsed.result = xml_model::parse(document, onEvent, parsed.output);
  return parsed;
}

/// Expects that the parser does the same as the model. Returns the events.
Texts compareParse(const std::string& document, const std::string& stopAt) {
  const Parsed expected = modelParse(document, stopAt);
  const Parsed parsed = parse(document, stopAt);
  EXPECT_EQ(parsed.events, expected.events);
  EXPECT_EQ(parsed.result, expected.result);
  EXPECT_EQ(parsed.output, expected.output);
  return parsed.events;
}

}  // namespace

TEST(ModelComparison, FindsTheSameEventsAndErrorsInDamagedDocuments) {
  for (unsigned int seed = 1; seed <= Documents; ++seed) {
    DamagedDocument document(seed);
    SCOPED_TRACE("seed " + std::to_string(seed) + ": " + document.text);
    const Texts events = compareParse(document.text, "");
    if (!events.empty()) {
      compareParse(document.text, events[document.below(events.size())]);
    }
    ASSERT_FALSE(HasFailure());
  }
}

TEST(ModelComparison, FindsTheSameTextsInDamagedDocuments) {
  std::size_t found = 0;
  for (unsigned int seed = 1; seed <= Documents; ++seed) {
    DamagedDocument document(seed);
    const std::string path = document.path();
    SCOPED_TRACE("seed " + std::to_string(seed) + ": " + path + " " + document.text);
    simpleXPath xpath(document.text);
    std::string text;
    std::string expected;
    const std::string output = outputOf([&] { text = xpath.query(path); });
    EXPECT_EQ(text, xml_model::query(document.text, path, expected));
    EXPECT_EQ(output, expected);
    QueryByCallbacks byCallbacks(document.text);
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(byCallbacks.query(path), text); }), output);
    EXPECT_EQ(byCallbacks.m_Stop, xpath.m_Stop);
    found += text.empty() ? 0U : 1U;
    if (path.find('[') == std::string::npos) {
      Texts texts;
      expected.clear();
      const std::string lines = outputOf([&] { texts = xpath.queryList(path); });
      EXPECT_EQ(texts, xml_model::queryList(document.text, path, expected));
      EXPECT_EQ(lines, expected);
    }
    ASSERT_FALSE(HasFailure());
  }
  EXPECT_GT(found, Documents / 20);
}
