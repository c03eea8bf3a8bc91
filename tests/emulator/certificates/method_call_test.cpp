#include "emulator/certificates/method_call.h"

#include <gtest/gtest.h>
#include <string>

#include "testing/object_store.h"
#include "testing/rows.h"

namespace {

using emulator::CallError;
using emulator::CallStatus;
using emulator::MethodCall;
using emulator::parseMethodCall;
using support::callText;
using support::repeated;
using Type = MethodCall::Type;

MethodCall parsed(const std::string& xml) {
  return std::get<MethodCall>(parseMethodCall(xml));
}

CallStatus statusOf(const std::string& xml) {
  const emulator::ParsedCall call = parseMethodCall(xml);
  const auto* const error = std::get_if<CallError>(&call);
  return error == nullptr ? CallStatus::Success : error->status();
}

std::string replaced(std::string text, std::string_view what, std::string_view by) {
  const std::size_t at = text.find(what);
  EXPECT_NE(at, std::string::npos) << what;
  return text.replace(at, what.size(), by);
}

const std::string List = callText("queryCAList", 420);

TEST(ParseMethodCall, ReadsEveryPartOfTheCall) {
  const MethodCall call = parsed(callText("m", 7,
                                          {support::text("a", "x &amp; &#xE4;"),
                                           support::number("b", 12), support::binary("c", "ABC")}));
  EXPECT_EQ(call.object, "applications.certMgr");
  EXPECT_EQ(call.method, "m");
  EXPECT_EQ(call.requestId, "7");
  ASSERT_EQ(call.parameters.size(), 3U);
  EXPECT_EQ(call.parameters[0].name, "a");
  EXPECT_EQ(call.parameters[0].type, Type::Text);
  EXPECT_EQ(call.parameters[0].value, "x & \xC3\xA4");
  EXPECT_EQ(call.parameters[1].type, Type::Number);
  EXPECT_EQ(call.parameters[1].value, "12");
  EXPECT_EQ(call.parameters[2].type, Type::Binary);
  EXPECT_EQ(call.parameters[2].value, "QUJD");
}

TEST(ParseMethodCall, AcceptsACallWithAndWithoutAnEmptyMap) {
  EXPECT_TRUE(parsed(List).parameters.empty());
  const std::string withMap =
      replaced(List, "<ListElem></ListElem>", "<ListElem><MapElem></MapElem></ListElem>");
  EXPECT_TRUE(parsed(withMap).parameters.empty());
}

TEST(ParseMethodCall, KeepsATextOfSpaces) {
  EXPECT_EQ(parsed(callText("m", 1, {support::text("a", "  ")})).parameters[0].value, "  ");
  EXPECT_EQ(parsed(callText("m", 1, {support::text("a", "")})).parameters[0].value, "");
}

struct BadRow : support::Row {
  std::string xml;
  CallStatus status;
};

class BadCall : public testing::TestWithParam<BadRow> {};

TEST_P(BadCall, IsRejectedWithItsStatus) {
  EXPECT_EQ(statusOf(GetParam().xml), GetParam().status);
}

const auto Param = [](std::string_view child) {
  return replaced(callText("m", 1, {support::text("a", "b")}),
                  "<child name=\"a\"><StringElem>b</StringElem></child>", child);
};

INSTANTIATE_TEST_SUITE_P(
    NotWellFormed, BadCall,
    testing::Values(
        BadRow{{"Empty"}, "", CallStatus::NotWellFormed},
        BadRow{{"Junk"}, std::string(65529, '\x99'), CallStatus::NotWellFormed},
        BadRow{{"JunkOfOpeningBrackets"}, std::string(65529, '<'), CallStatus::NotWellFormed},
        BadRow{{"DeepNesting"}, repeated("<a>", 21843), CallStatus::NotWellFormed},
        BadRow{{"ZeroAfterTheEnd"}, List + '\0', CallStatus::NotWellFormed},
        BadRow{{"ZeroInside"},
               Param(std::string("<child name=\"a\"><StringElem>b\0c</StringElem></child>", 52)),
               CallStatus::NotWellFormed},
        BadRow{{"ReferenceToZero"},
               Param("<child name=\"a\"><StringElem>&#0;</StringElem></child>"),
               CallStatus::NotWellFormed},
        BadRow{{"ReferenceToNoCharacter"},
               Param("<child name=\"a\"><StringElem>&#x110000;</StringElem></child>"),
               CallStatus::NotWellFormed},
        BadRow{{"ReferenceWithoutNumber"},
               Param("<child name=\"a\"><StringElem>&#;</StringElem></child>"),
               CallStatus::NotWellFormed},
        BadRow{{"UnknownEntity"},
               Param("<child name=\"a\"><StringElem>&auml;</StringElem></child>"),
               CallStatus::NotWellFormed},
        BadRow{{"BareAmpersand"},
               Param("<child name=\"a\"><StringElem>a & b</StringElem></child>"),
               CallStatus::NotWellFormed},
        BadRow{{"AmpersandAtTheEnd"}, List + "&", CallStatus::NotWellFormed}),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(
    NotACall, BadCall,
    testing::Values(
        BadRow{{"DeepNestingThatEnds"},
               repeated("<a>", 9000) + repeated("</a>", 9000),
               CallStatus::NotACall},
        BadRow{{"DocumentType"},
               replaced(List, "<method",
                        "<!DOCTYPE method [<!ENTITY a \"b\"><!ENTITY c \"&#97;\">]><method"),
               CallStatus::NotACall},
        BadRow{{"TwoRoots"}, List + "<more/>", CallStatus::NotACall},
        BadRow{{"OtherRoot"}, "<methods name=\"callMethod\"/>", CallStatus::NotACall},
        BadRow{{"OtherRootName"}, replaced(List, "callMethod", "call"), CallStatus::NotACall},
        BadRow{{"NoObject"},
               replaced(List, "<arg name=\"objName\">applications.certMgr</arg>", ""),
               CallStatus::NotACall},
        BadRow{{"NoMethod"},
               replaced(List, "<arg name=\"method\">queryCAList</arg>", ""),
               CallStatus::NotACall},
        BadRow{{"NoParams"},
               "<method name=\"callMethod\" requestID=\"420\"><arg name=\"objName\">a</arg>"
               "<arg name=\"method\">queryCAList</arg></method>",
               CallStatus::NotACall},
        BadRow{{"MethodTwice"},
               replaced(List, "<arg name=\"params\">",
                        "<arg name=\"method\">queryCAList</arg><arg name=\"params\">"),
               CallStatus::NotACall},
        BadRow{{"OtherArgument"},
               replaced(List, "<arg name=\"params\">", "<arg name=\"x\"/><arg name=\"params\">"),
               CallStatus::NotACall},
        BadRow{{"NoArgument"},
               replaced(List, "<arg name=\"params\">", "<x/><arg name=\"params\">"),
               CallStatus::NotACall},
        BadRow{{"OneList"},
               replaced(List, "<ListElem></ListElem>", "<MapElem></MapElem>"),
               CallStatus::NotACall},
        BadRow{{"TwoLists"},
               replaced(List, "<ListElem></ListElem>", "<ListElem/><ListElem/>"),
               CallStatus::NotACall},
        BadRow{{"OtherMap"},
               replaced(List, "<ListElem></ListElem>", "<ListElem><Map/></ListElem>"),
               CallStatus::NotACall},
        BadRow{{"OtherChild"}, Param("<kid name=\"a\"/>"), CallStatus::NotACall},
        BadRow{{"ElementInText"},
               Param("<child name=\"a\"><StringElem>b<c/></StringElem></child>"),
               CallStatus::NotACall},
        BadRow{{"NoElement"}, Param("<child name=\"a\"/>"), CallStatus::WrongType},
        BadRow{{"UnknownElement"},
               Param("<child name=\"a\"><FloatElem>1</FloatElem></child>"),
               CallStatus::WrongType},
        BadRow{{"TwoElements"},
               Param("<child name=\"a\"><StringElem/><StringElem/></child>"),
               CallStatus::WrongType}),
    support::rowName);

TEST(ParseMethodCall, RejectsEveryCallThatIsCut) {
  const std::string whole = support::generateText("name");
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_EQ(statusOf(whole.substr(0, size)), CallStatus::NotWellFormed) << size;
  }
  EXPECT_EQ(statusOf(whole), CallStatus::Success);
}

TEST(DescribeMethodCall, HasTheParametersAndTheSizeOfBinaryValues) {
  EXPECT_EQ(describe(parsed(support::uploadCaText("a\xC3\xA4.pem", "12345"))),
            "uploadNewCAFile ca_file_name=\"a\\xC3\\xA4.pem\" ca_dot_pem_size=5 "
            "ca_dot_pem_file=(5 bytes)");
  EXPECT_EQ(describe(parsed(callText("m", 1, {{"file", "BinaryElem", "QUJ"}}))),
            "m file=(3 characters, not Base64)");
  EXPECT_EQ(describe(parsed(callText("m\n", 1, {support::text("a&#10;", "")}))),
            "m\\x0A a\\x0A=\"\"");
}

}  // namespace
