#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "xml/copies_in_place.h"
#include "xml/simple_sax_parser.h"

namespace {

class SaxEntities : public testing::Test {
 protected:
  std::string replaced(std::string text) const {
    parser.replaceEntities(text);
    return text;
  }

  SimpleSAXHandler handler;
  SimpleSAXParser parser{handler};
};

/// Replaces entities in the simplest way: finds one, replaces it, and continues one character
/// later.
std::string replacedOneByOne(const SimpleSAXParser& parser, std::string text) {
  std::size_t ampersand = text.find('&');
  while (ampersand != std::string::npos) {
    const std::size_t semicolon = text.find(';', ampersand);
    if (semicolon != std::string::npos) {
      const std::size_t length = semicolon - ampersand + 1;
      text.replace(ampersand, length, parser.translateEntityRef(text.substr(ampersand, length)));
    }
    ampersand = text.find('&', ampersand + 1);
  }
  return text;
}

}  // namespace

TEST_F(SaxEntities, AreFive) {
  EXPECT_EQ(parser.translateEntityRef("&amp;"), "&");
  EXPECT_EQ(parser.translateEntityRef("&quot;"), "\"");
  EXPECT_EQ(parser.translateEntityRef("&apos;"), "'");
  EXPECT_EQ(parser.translateEntityRef("&lt;"), "<");
  EXPECT_EQ(parser.translateEntityRef("&gt;"), ">");
}

TEST_F(SaxEntities, AreRemovedIfTheyHaveOtherNames) {
  for (const std::string_view entity :
       {"&#65;", "&#x41;", "&nbsp;", "&AMP;", "& amp;", "&;", "&", "", "amp", "&amp", "&ampx;"}) {
    EXPECT_EQ(parser.translateEntityRef(entity), "") << entity;
  }
}

TEST_F(SaxEntities, AreReplacedInText) {
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"", ""},
      {"plain", "plain"},
      {"&lt;&gt;&quot;&apos;&amp;", "<>\"'&"},
      {"a&amp;b&amp;", "a&b&"},
      {"a & b; c", "a  c"},
      {"&", "&"},
      {"&&&", "&&&"},
      {"&amp", "&amp"},
      {";&", ";&"},
      {"&;", ""},
      {"&no;;", ";"},
      {"&&amp;", ""},
      {"&lt;&amp", "<&amp"},
      // Replaced text is not searched again.
      {"&amp;lt;", "&lt;"},
      {"&amp;amp;lt;", "&amp;lt;"},
      // The character after a removed entity is not examined.
      {"&no;&amp;", "&amp;"},
      {"&no;x&amp;", "x&"},
      {"&no;&no;&no;", "&no;"},
      {"&no;&&lt;", "&<"},
      {"x&no;", "x"},
  };
  for (const auto& [text, result] : cases) {
    EXPECT_EQ(replaced(text), result) << text;
    EXPECT_EQ(replacedOneByOne(parser, text), result) << text;
  }
}

TEST_F(SaxEntities, DoNotMoveTextToItsOwnPosition) {
  for (const std::string& text :
       {std::string("&"), std::string("a & b, and no semicolon"), std::string(";&amp"),
        "&" + std::string(1000, 'x'), std::string("&lt;x"), std::string("x &no; & y")}) {
    const int before = copiesInPlace();
    replaced(text);
    EXPECT_EQ(copiesInPlace(), before) << text;
  }
  // Such a move does increase the count.
  std::string text = "moved";
  const int before = copiesInPlace();
  std::memmove(text.data(), text.data(), text.size());
  EXPECT_EQ(copiesInPlace(), before + 1);
}

TEST_F(SaxEntities, AreReplacedLikeInASimpleImplementation) {
  const std::vector<std::string> pieces = {"&", ";", "&amp;", "&lt;", "&no;", "amp;", "x", " "};
  for (unsigned int seed = 1; seed <= 5000; ++seed) {
    std::mt19937 random(seed);
    std::string text;
    for (std::size_t count = random() % 20; count > 0; --count) {
      text += pieces[random() % pieces.size()];
    }
    ASSERT_EQ(replaced(text), replacedOneByOne(parser, text)) << "seed " << seed << ": " << text;
  }
}
