// Large, cut, changed and malicious documents.

#include <gtest/gtest.h>
#include <regex>
#include <string>

#include "testing/bytes.h"
#include "testing/checking_handler.h"
#include "xml/attributes.h"
#include "xml/recording_handler.h"

namespace {

using support::repeated;
using Events = std::vector<std::string>;

constexpr std::size_t Mebibyte = 1 << 20;

const std::string Reply =
    "<?xml version=\"1.0\"?><!-- r --><response><MapElem>"
    "<child name=\"status_code\"><IntegerElem>1</IntegerElem></child>"
    "<child name=\"a\" b=\"&lt;\"><StringElem>x &amp; y</StringElem></child><e/>"
    "</MapElem></response>\n";

/// Parses a document. Expects that the parser keeps its guarantees to handlers.
int parseChecked(const std::string& document) {
  CheckingHandler handler;
  const int result = SimpleSAXParser(handler).parseXMLString(document);
  EXPECT_TRUE(handler.isConsistent()) << document;
  EXPECT_TRUE(result == 0 || result == -1) << document;
  return result;
}

class CountingHandler : public SimpleSAXHandler {
 public:
  void startElement(const char* /*name*/, attributes& /*attrs*/) override { ++started; }
  void endElement(const char* /*name*/) override { ++ended; }
  std::size_t started = 0;
  std::size_t ended = 0;
};

/// Stores the last name, value and text.
class LastHandler : public SimpleSAXHandler {
 public:
  void startElement(const char* name, attributes& attrs) override {
    lastName = name;
    value = attrs.getAttribute("b");
    list = attrs;
  }
  void characters(const char* text, unsigned int len) override {
    lastText = text;
    count = len;
  }
  std::string lastName;
  std::string value;
  std::string lastText;
  unsigned int count = 0;
  attributes list;
};

}  // namespace

TEST(SaxBadInput, MayBeNestedAMillionDeep) {
  CountingHandler handler;
  EXPECT_EQ(SimpleSAXParser(handler).parseXMLString(repeated("<a>", 1'000'000)), 0);
  EXPECT_EQ(handler.started, 1'000'000U);
  EXPECT_EQ(handler.ended, 0U);
}

TEST(SaxBadInput, MayHaveOneEndTagTooMany) {
  constexpr std::size_t depth = 100'000;
  CountingHandler handler;
  const std::string document = repeated("<a>", depth) + repeated("</a>", depth + 1);
  const std::string output =
      outputOf([&] { EXPECT_EQ(SimpleSAXParser(handler).parseXMLString(document), -1); });
  EXPECT_EQ(output, "Parsing error at character 700003, '>'\n");
  EXPECT_EQ(handler.started, depth);
  EXPECT_EQ(handler.ended, depth);
}

TEST(SaxBadInput, MayHaveANameOf16MiB) {
  const std::string name(16 * Mebibyte, 'n');
  LastHandler handler;
  EXPECT_EQ(SimpleSAXParser(handler).parseXMLString("<" + name + ">x</" + name + ">"), 0);
  EXPECT_EQ(handler.lastName, name);
  EXPECT_EQ(SimpleSAXParser(handler).parseXMLString("<a " + name + "=\"1\"/>"), 0);
  EXPECT_EQ(handler.list.getAttribute(name.c_str()), "1");
}

TEST(SaxBadInput, MayHaveAValueOf16MiB) {
  const std::string value(16 * Mebibyte, 'v');
  LastHandler handler;
  EXPECT_EQ(SimpleSAXParser(handler).parseXMLString("<a b=\"" + value + "\"/>"), 0);
  EXPECT_EQ(handler.value, value);
}

TEST(SaxBadInput, MayHaveATextOf16MiB) {
  const std::string text(16 * Mebibyte, 't');
  LastHandler handler;
  EXPECT_EQ(SimpleSAXParser(handler).parseXMLString("<a>" + text + "</a>"), 0);
  EXPECT_EQ(handler.lastText, text);
  EXPECT_EQ(handler.count, text.size());
}

TEST(SaxBadInput, MayHaveATextOfEntitiesOnly) {
  LastHandler handler;
  const std::size_t count = Mebibyte;
  EXPECT_EQ(SimpleSAXParser(handler).parseXMLString("<a>" + repeated("&amp;", count) + "</a>"), 0);
  EXPECT_EQ(handler.lastText, std::string(count, '&'));
  EXPECT_EQ(SimpleSAXParser(handler).parseXMLString("<a>" + repeated("&x;y", count) + "</a>"), 0);
  EXPECT_EQ(handler.lastText, std::string(count, 'y'));
  EXPECT_EQ(SimpleSAXParser(handler).parseXMLString("<a>" + std::string(count, '&') + "</a>"), 0);
  EXPECT_EQ(handler.lastText, std::string(count, '&'));
}

TEST(SaxBadInput, MayHaveAHundredThousandAttributes) {
  std::string tag = "<a";
  for (int i = 0; i < 100'000; ++i) {
    tag += " n" + std::to_string(i * 7919 % 100'000) + "=\"" + std::to_string(i) + "\"";
  }
  LastHandler handler;
  EXPECT_EQ(SimpleSAXParser(handler).parseXMLString(tag + "/>"), 0);
  for (int i = 0; i < 100'000; i += 997) {
    const std::string name = "n" + std::to_string(i * 7919 % 100'000);
    EXPECT_EQ(handler.list.getAttribute(name.c_str()), std::to_string(i));
  }
}

TEST(SaxBadInput, MayRepeatAnAttributeAHundredThousandTimes) {
  LastHandler handler;
  const std::string pairs = repeated(R"( b="1" c="2")", 50'000);
  EXPECT_EQ(SimpleSAXParser(handler).parseXMLString("<a" + pairs + " b=\"last\"/>"), 0);
  EXPECT_EQ(handler.value, "last");
  char buffer[8];
  EXPECT_EQ(handler.list.getAttrName(1U, buffer, 8), 1);
  EXPECT_EQ(handler.list.getAttrName(2U, buffer, 8), 0);
}

TEST(SaxBadInput, MayBeAnyPrefixOfAReply) {
  // A cut is an error only inside an end tag, an attribute, "/>", a comment or an instruction.
  const std::regex openTag(R"(<([A-Za-z]+(\s+[a-z]+="[^"]*")*\s*)?)");
  const std::string output = outputOf([&] {
    for (std::size_t size = 0; size <= Reply.size(); ++size) {
      const std::string prefix = Reply.substr(0, size);
      const std::size_t open = prefix.find_last_of("<>");
      const bool isInTag = open != std::string::npos && prefix[open] == '<';
      const bool isWhole = !isInTag || std::regex_match(prefix.substr(open), openTag);
      EXPECT_EQ(parseChecked(prefix), isWhole ? 0 : -1) << prefix;
    }
  });
  EXPECT_EQ(output.find("Parsing error at character 1,"), std::string::npos);
}

TEST(SaxBadInput, MayBeAnyByteChangeOfAReply) {
  outputOf([] {
    std::string changed = Reply;
    for (std::size_t i = 0; i < Reply.size(); ++i) {
      for (int byte = 0; byte < 256; ++byte) {
        changed[i] = static_cast<char>(byte);
        parseChecked(changed);
      }
      changed[i] = Reply[i];
    }
  });
}

TEST(SaxBadInput, IsParsedIfOnlyItsTextIsChanged) {
  const std::size_t text = Reply.find("x &amp; y");
  for (std::size_t i = text; i < text + 9; ++i) {
    for (int byte = 1; byte < 256; ++byte) {
      if (byte != '<') {
        std::string changed = Reply;
        changed[i] = static_cast<char>(byte);
        ASSERT_EQ(parseChecked(changed), 0) << i << " " << byte;
      }
    }
  }
}

TEST(SaxBadInput, MayBeAReplyWithoutAnyOneByte) {
  outputOf([] {
    for (std::size_t i = 0; i < Reply.size(); ++i) {
      parseChecked(std::string(Reply).erase(i, 1));
    }
  });
}

TEST(SaxBadInput, HasNoMarkupWithBytesAbove127) {
  for (int byte = 0x80; byte <= 0xFF; ++byte) {
    const std::string text(1, static_cast<char>(byte));
    EXPECT_EQ(parse(text + "<a/>").result, 0) << byte;
    EXPECT_EQ(parse("<" + text + "/>").events, Events{}) << byte;
    EXPECT_EQ(parse("<a><" + text + "/></a>").events, (Events{"<a", "\"" + text + "/>\" 3", ">a"}))
        << byte;
    EXPECT_EQ(parse("<a" + text + "/>").result, -1) << byte;
    EXPECT_EQ(parse("<a b" + text + "=\"1\"/>").result, -1) << byte;
    EXPECT_EQ(parse("<a></a" + text + ">").result, -1) << byte;
    EXPECT_EQ(parse("<a/>" + text).result, -1) << byte;
  }
}

TEST(SaxBadInput, EndsAtAZeroByteAnywhere) {
  const std::string zero(1, '\0');
  EXPECT_EQ(parse("<a>x" + zero + "</b>").events, (Events{"<a", "\"x\" 1"}));
  EXPECT_EQ(parse("<a" + zero + "b>").events, (Events{"<a"}));
  EXPECT_EQ(parse("<a b=\"" + zero + "\"/>").output, "<<end of string>>\n");
  EXPECT_EQ(parse("<a></" + zero + "a>").output, "<<end of string>>\n");
  EXPECT_EQ(parse(zero + "<a/>").events, Events{});
}

TEST(SaxBadInput, MayRepeatAnyMarkup) {
  outputOf([] {
    for (const std::string piece : {"<", ">", "/", "<?", "?", "<!", "<!-", "-", "</", "/>", "&",
                                    ";", "\"", "=", "<a", "<a ", "<a b=", "<a b=\"", "</a"}) {
      parseChecked(repeated(piece, 20'000));
      parseChecked("<a>" + repeated(piece, 20'000));
      parseChecked("<a b=\"" + repeated(piece, 20'000));
    }
  });
}
