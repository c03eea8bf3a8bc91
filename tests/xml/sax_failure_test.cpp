// Failed parses: the result, the error line and the callbacks before the failure.

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "xml/recording_handler.h"

namespace {

using Events = std::vector<std::string>;

struct Failure {
  std::string document;
  int position;  ///< -1 for the end of the document
  char character;
};

std::string errorLine(const Failure& failure) {
  if (failure.position < 0) {
    return "<<end of string>>\n";
  }
  return "Parsing error at character " + std::to_string(failure.position) + ", '" +
         failure.character + "'\n";
}

}  // namespace

TEST(SaxFailure, PrintsTheCharacterWhereAConstructFails) {
  const std::vector<Failure> failures = {
      // End tags
      {"<a></b>", 6, '>'},
      {"<a></b x>", 6, ' '},
      {"<a></ab>", 7, '>'},
      {"<a></ a>", 5, ' '},
      {"<a></>", 5, '>'},
      {"<a></1>", 5, '1'},
      {"<a></xml>", 5, 'x'},
      {"<a></a x>", 7, 'x'},
      {"<a></a/>", 6, '/'},
      {"<a></", -1, 0},
      {"<a></a", -1, 0},
      {"<a></a ", -1, 0},
      {"<a></b", -1, 0},
      {"<a/></a>", 7, '>'},
      {"<a></a></a>", 10, '>'},
      // Names
      {"<xmlfoo/>", 1, 'x'},
      {"<a><xml/></a>", 4, 'x'},
      {"<a\xC3\xA9/>", 2, '\xC3'},
      // Attributes
      {"<a b='1'/>", 5, '\''},
      {"<a b=1/>", 5, '1'},
      {"<a b/>", 4, '/'},
      {"<a b>", 4, '>'},
      {"<a b c=\"1\">", 5, 'c'},
      {"<a b= />", 6, '/'},
      {"<a 1=\"1\">", 3, '1'},
      {"<a =\"1\">", 3, '='},
      {"<a b=\"1\" c='2'>", 11, '\''},
      {R"(<a b="1"">)", 8, '"'},
      {"<a /b>", 3, '/'},
      {"<a / >", 3, '/'},
      {"<a/", 2, '/'},
      {"<a b=\"1\" /", 9, '/'},
      {"<a<b>", 2, '<'},
      {"<a b=\"1", -1, 0},
      {"<a b=\"", -1, 0},
      {"<a b=", -1, 0},
      {"<a b= ", -1, 0},
      {"<a b", -1, 0},
      {"<a b ", -1, 0},
      // Comments and instructions
      {"<a><?p", -1, 0},
      {"<a><?p>", -1, 0},
      {"<a><!-- c", -1, 0},
      {"<a><!-- c --", -1, 0},
      {"<a><![CDATA[x]]></a>", -1, 0},
      {"<a/><?", -1, 0},
  };
  for (const Failure& failure : failures) {
    const Parsed parsed = parse(failure.document);
    EXPECT_EQ(parsed.result, -1) << failure.document;
    EXPECT_EQ(parsed.output, errorLine(failure)) << failure.document;
  }
}

TEST(SaxFailure, FollowsTheCallbacksBeforeIt) {
  EXPECT_EQ(parse("<a b=\"1\">x<c></d>").events, (Events{"<a b=\"1\"", "\"x\" 1", "<c"}));
  EXPECT_EQ(parse("<a><b c=\"1\" d='2'></b></a>").events, (Events{"<a"}));
  EXPECT_EQ(parse("<a></a></a>").events, (Events{"<a", ">a"}));
}

TEST(SaxShowError, WritesForErrorsAndTheEndOnly) {
  RecordingHandler handler;
  const SimpleSAXParser parser(handler);
  using Parser = SimpleSAXParser;
  EXPECT_EQ(outputOf([&] { parser.showError(Parser::PARSE_ERROR, "abc", 1); }),
            "Parsing error at character 1, 'b'\n");
  EXPECT_EQ(outputOf([&] { parser.showError(Parser::PARSE_ERROR, "abc", 3); }),
            "<<end of string>>\n");
  EXPECT_EQ(outputOf([&] { parser.showError(Parser::PARSE_OK, "abc", 3); }), "<<end of string>>\n");
  EXPECT_EQ(outputOf([&] { parser.showError(Parser::PARSE_OK, "abc", 1); }), "");
  EXPECT_EQ(outputOf([&] { parser.showError(Parser::PARSE_WHITESPACE, "abc", 1); }), "");
}
