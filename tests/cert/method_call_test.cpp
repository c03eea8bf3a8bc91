#include "cert/method_call.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/rows.h"

namespace {

using method_calls::MethodCall;
using method_calls::requestText;

std::string request(const MethodCall& call) {
  switch (call.parameters.size()) {
    case 0:
      return requestText(call, {}).value();
    case 1:
      return requestText(call, {"v1"}).value();
    case 3:
      return requestText(call, {"v1", "v2", "v3"}).value();
    default:
      return requestText(call, {"v1", "v2", "v3", "v4", "v5", "v6", "v7", "v8"}).value();
  }
}

struct CallRow : support::Row {
  const MethodCall* call;
  const char* text;
  std::size_t bufferSize;
  int timeoutSeconds;
};

class MethodCallTable : public testing::TestWithParam<CallRow> {};

TEST_P(MethodCallTable, HasTheExactTextOfTheRequest) {
  EXPECT_EQ(request(*GetParam().call), GetParam().text);
}

TEST_P(MethodCallTable, HasTheTimeoutOfTheCall) {
  EXPECT_EQ(GetParam().call->timeoutSeconds, GetParam().timeoutSeconds);
}

TEST_P(MethodCallTable, HasTheBufferSizeOfTheCall) {
  EXPECT_EQ(GetParam().call->bufferSize, GetParam().bufferSize);
}

// clang-format off
const std::vector<CallRow> Rows = {
    {{"ReadCertDefaults"}, &method_calls::ReadCertDefaults,
     R"(<?xml version="1.0"?><method name="callMethod" requestID="100"><arg name="objName">applications.certMgr</arg><arg name="method">readCertDefaults</arg><arg name="params"><ListElem><ListElem><MapElem></MapElem></ListElem></ListElem></arg></method>)",
     3072, 5},
    {{"GenerateNewCert"}, &method_calls::GenerateNewCert,
     R"(<?xml version="1.0" encoding="UTF-8"?><method name="callMethod" requestID="200"><arg name="objName">applications.certMgr</arg><arg name="method">generateNewCert</arg><arg name="params"><ListElem><ListElem><MapElem><child name="cert_friendly_name"><StringElem>v1</StringElem></child><child name="x509_O"><StringElem>v2</StringElem></child><child name="x509_AN"><StringElem>v3</StringElem></child><child name="x509_C"><StringElem>v4</StringElem></child><child name="x509_CN"><StringElem>v5</StringElem></child><child name="x509_L"><StringElem>v6</StringElem></child><child name="x509_OU"><StringElem>v7</StringElem></child><child name="x509_ST"><StringElem>v8</StringElem></child></MapElem></ListElem></ListElem></arg></method>)",
     3072, 10},
    {{"ExportPubKey"}, &method_calls::ExportPubKey,
     R"(<?xml version="1.0" encoding="UTF-8"?><method name="callMethod" requestID="210"><arg name="objName">applications.certMgr</arg><arg name="method">exportPubKey</arg><arg name="params"><ListElem><ListElem><MapElem><child name="cert_friendly_name"><StringElem>v1</StringElem></child></MapElem></ListElem></ListElem></arg></method>)",
     3072, 10},
    {{"UploadNewCAFile"}, &method_calls::UploadNewCAFile,
     R"(<?xml version="1.0" encoding="UTF-8"?><method name="callMethod" requestID="400"><arg name="objName">applications.certMgr</arg><arg name="method">uploadNewCAFile</arg><arg name="params"><ListElem><ListElem><MapElem><child name="ca_file_name"><StringElem>v1</StringElem></child><child name="ca_dot_pem_size"><IntegerElem>v2</IntegerElem></child><child name="ca_dot_pem_file"><BinaryElem>v3</BinaryElem></child></MapElem></ListElem></ListElem></arg></method>)",
     16384, 5},
    {{"DeleteIndividualCA"}, &method_calls::DeleteIndividualCA,
     R"(<?xml version="1.0" encoding="UTF-8"?><method name="callMethod" requestID="410"><arg name="objName">applications.certMgr</arg><arg name="method">deleteIndividualCA</arg><arg name="params"><ListElem><ListElem><MapElem><child name="ca_common_name"><StringElem>v1</StringElem></child></MapElem></ListElem></ListElem></arg></method>)",
     3072, 5},
    {{"QueryCAList"}, &method_calls::QueryCAList,
     R"(<?xml version="1.0" encoding="UTF-8"?><method name="callMethod" requestID="420"><arg name="objName">applications.certMgr</arg><arg name="method">queryCAList</arg><arg name="params"><ListElem><ListElem></ListElem></ListElem></arg></method>)",
     3072, 5},
    {{"QueryCAInfo"}, &method_calls::QueryCAInfo,
     R"(<?xml version="1.0" encoding="UTF-8"?><method name="callMethod" requestID="430"><arg name="objName">applications.certMgr</arg><arg name="method">queryCAInfo</arg><arg name="params"><ListElem><ListElem><MapElem><child name="ca_common_name"><StringElem>v1</StringElem></child></MapElem></ListElem></ListElem></arg></method>)",
     2048, 5},
    {{"UploadSignedCertFile"}, &method_calls::UploadSignedCertFile,
     R"(<?xml version="1.0" encoding="UTF-8"?><method name="callMethod" requestID="500"><arg name="objName">applications.certMgr</arg><arg name="method">uploadSignedCertFile</arg><arg name="params"><ListElem><ListElem><MapElem><child name="cert_friendly_name"><StringElem>v1</StringElem></child><child name="cert_syst_dot_pem_size"><IntegerElem>v2</IntegerElem></child><child name="cert_syst_dot_pem_file"><BinaryElem>v3</BinaryElem></child></MapElem></ListElem></ListElem></arg></method>)",
     16384, 5},
    {{"DeleteIndividualCert"}, &method_calls::DeleteIndividualCert,
     R"(<?xml version="1.0" encoding="UTF-8"?><method name="callMethod" requestID="510"><arg name="objName">applications.certMgr</arg><arg name="method">deleteIndividualCert</arg><arg name="params"><ListElem><ListElem><MapElem><child name="cert_friendly_name"><StringElem>v1</StringElem></child></MapElem></ListElem></ListElem></arg></method>)",
     3072, 5},
    {{"QueryCertList"}, &method_calls::QueryCertList,
     R"(<?xml version="1.0" encoding="UTF-8"?><method name="callMethod" requestID="520"><arg name="objName">applications.certMgr</arg><arg name="method">queryCertList</arg><arg name="params"><ListElem><ListElem></ListElem></ListElem></arg></method>)",
     3072, 5},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Calls, MethodCallTable, testing::ValuesIn(Rows), support::rowName);

/// Returns a value with which the request of a call with one parameter has `size` bytes.
std::string valueFor(const MethodCall& call, std::size_t size) {
  const std::size_t empty = requestText(call, {""}).value().size();
  return std::string(size - empty, 'x');
}

TEST(RequestText, NeedsRoomForItsZeroByte) {
  for (const MethodCall* call : {&method_calls::DeleteIndividualCA, &method_calls::QueryCAInfo}) {
    const std::string largest = valueFor(*call, call->bufferSize - 1);
    EXPECT_EQ(requestText(*call, {largest}).value().size(), call->bufferSize - 1);
    EXPECT_EQ(requestText(*call, {largest + "x"}), std::nullopt);
  }
}

TEST(RequestText, InsertsValuesUnchanged) {
  const std::string value = "%s%n%d&<\xE0\xFF";
  const std::string text = requestText(method_calls::DeleteIndividualCA, {value}).value();
  EXPECT_NE(text.find("<StringElem>" + value + "</StringElem>"), std::string::npos);
}

}  // namespace
