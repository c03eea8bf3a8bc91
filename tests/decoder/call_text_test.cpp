#include "decoder/call_text.h"

#include <gtest/gtest.h>

#include "cert/method_call.h"

namespace {

using decoder::CallText;
using decoder::readCallText;

TEST(CallText, HasMethodAndIdOfACall) {
  const auto xml = method_calls::requestText(method_calls::DeleteIndividualCA, {"Root"});
  const auto call = readCallText(xml.value());
  ASSERT_TRUE(call.has_value());
  EXPECT_EQ(call->method, "deleteIndividualCA");
  EXPECT_EQ(call->requestId, "410");
  EXPECT_EQ(call->status, "");
  EXPECT_EQ(call->indented,
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<method name=\"callMethod\" requestID=\"410\">\n"
            "  <arg name=\"objName\">applications.certMgr</arg>\n"
            "  <arg name=\"method\">deleteIndividualCA</arg>\n"
            "  <arg name=\"params\">\n"
            "    <ListElem>\n"
            "      <ListElem>\n"
            "        <MapElem>\n"
            "          <child name=\"ca_common_name\">\n"
            "            <StringElem>Root</StringElem>\n"
            "          </child>\n"
            "        </MapElem>\n"
            "      </ListElem>\n"
            "    </ListElem>\n"
            "  </arg>\n"
            "</method>\n");
}

TEST(CallText, HasTheStatusOfAReply) {
  const auto reply = readCallText(
      "<response><MapElem><child name=\"status_code\"><IntegerElem>14</IntegerElem></child>"
      "<child name=\"status_mesg\"><StringElem>no &amp; such</StringElem></child></MapElem>"
      "</response>");
  ASSERT_TRUE(reply.has_value());
  EXPECT_EQ(reply->method, "");
  EXPECT_EQ(reply->status, "14");
  EXPECT_EQ(reply->message, "no & such");
  EXPECT_NE(reply->indented.find("<StringElem>no &amp; such</StringElem>"), std::string::npos);
}

TEST(CallText, KeepsEveryPartOfTheXml) {
  const auto text = readCallText("<!-- c --><?p i?><!DOCTYPE a><a b=\"c\"><![CDATA[d]]></a>");
  ASSERT_TRUE(text.has_value());
  for (const char* piece : {"<!-- c -->", "<?p i?>", "<!DOCTYPE a>", "b=\"c\"", "<![CDATA[d]]>"}) {
    EXPECT_NE(text->indented.find(piece), std::string::npos) << piece;
  }
}

TEST(CallText, IsAbsentIfTheXmlIsNotWellFormed) {
  EXPECT_FALSE(readCallText("").has_value());
  EXPECT_FALSE(readCallText("<a>").has_value());
  EXPECT_FALSE(readCallText("<a></b>").has_value());
  EXPECT_FALSE(readCallText(std::string_view("<a/>\0<b/>", 9)).has_value());
}

std::string nested(int depth) {
  std::string text;
  for (int i = 0; i < depth; ++i) {
    text.append("<a>");
  }
  for (int i = 0; i < depth; ++i) {
    text.append("</a>");
  }
  return text;
}

TEST(CallText, IsAbsentIfTheIndentationIsLargerThanTheText) {
  EXPECT_TRUE(readCallText(nested(33)).has_value());
  EXPECT_FALSE(readCallText(nested(34)).has_value());
  EXPECT_FALSE(readCallText(nested(20000)).has_value());
}

}  // namespace
