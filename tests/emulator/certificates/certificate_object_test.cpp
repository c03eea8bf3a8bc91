#include "emulator/certificates/certificate_object.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

#include "testing/certificate_printer.h"
#include "testing/rows.h"

namespace {

using emulator::CallStatus;
using support::callText;
using support::CertificatePrinter;
using support::text;
using Names = std::vector<std::string>;

TEST(CertificateObject, RepliesInXml) {
  CertificatePrinter printer({.factoryCertificate = false});
  printer.call(callText("queryCAList", 420));
  EXPECT_EQ(printer.lastXml,
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?><response><MapElem>"
            "<child name=\"status_code\"><IntegerElem>1</IntegerElem></child>"
            "<child name=\"status_mesg\"><StringElem>success</StringElem></child>"
            "<child name=\"cert_list\"><ListElem/></child></MapElem></response>");
  printer.call(callText("nothing", 420));
  EXPECT_EQ(printer.lastXml,
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?><response><MapElem>"
            "<child name=\"status_code\"><IntegerElem>5</IntegerElem></child>"
            "<child name=\"status_mesg\"><StringElem>no such method: \"nothing\""
            "</StringElem></child></MapElem></response>");
}

TEST(CertificateObject, ReturnsItsDefaults) {
  CertificatePrinter printer({.defaults = {"Org & Co", "Unit", "DE", "State", "City", "name", ""}});
  const support::ReplyText reply = printer.call(callText("readCertDefaults", 100));
  EXPECT_EQ(reply.status(), 1);
  EXPECT_EQ(reply.value("x509_O"), "Org & Co");
  EXPECT_EQ(reply.value("x509_OU"), "Unit");
  EXPECT_EQ(reply.value("x509_C"), "DE");
  EXPECT_EQ(reply.value("x509_ST"), "State");
  EXPECT_EQ(reply.value("x509_L"), "City");
  EXPECT_EQ(reply.value("x509_CN"), "name");
  EXPECT_EQ(reply.value("x509_AN"), "");
}

TEST(CertificateObject, HasDefaultsThatAreValidForARequest) {
  CertificatePrinter printer;
  const support::ReplyText defaults = printer.call(callText("readCertDefaults", 100));
  std::vector<support::CallParameter> texts = {text("cert_friendly_name", "n")};
  for (const char* name :
       {"x509_O", "x509_OU", "x509_C", "x509_ST", "x509_L", "x509_CN", "x509_AN"}) {
    EXPECT_NE(defaults.value(name), "") << name;
    texts.push_back(text(name, defaults.value(name)));
  }
  EXPECT_EQ(printer.status(callText("generateNewCert", 200, texts)), 1);
}

struct CallRow : support::Row {
  std::string xml;
  CallStatus status;
  const char* message;
};

class WrongCall : public testing::TestWithParam<CallRow> {};

TEST_P(WrongCall, GetsAnError) {
  CertificatePrinter printer;
  const support::ReplyText reply = printer.call(GetParam().xml);
  EXPECT_EQ(reply.status(), static_cast<int>(GetParam().status));
  EXPECT_EQ(reply.message(), GetParam().message);
  EXPECT_TRUE(printer.object.store().devices().empty());
  EXPECT_TRUE(printer.object.store().authorities().empty());
  EXPECT_EQ(printer.object.store().revision(), 0U);
}

std::string withObject(const std::string& object) {
  std::string xml = callText("queryCAList", 420);
  return xml.replace(xml.find("applications.certMgr"), 20, object);
}

INSTANTIATE_TEST_SUITE_P(
    Calls, WrongCall,
    testing::Values(
        CallRow{{"NoXml"},
                "",
                CallStatus::NotWellFormed,
                "the request is not well-formed XML: No document element found"},
        CallRow{{"NoCall"},
                "<a/>",
                CallStatus::NotACall,
                "the request is not a method call: the document is not a callMethod"},
        CallRow{{"OtherObject"},
                withObject("applications.certmgr"),
                CallStatus::UnknownObject,
                "no such object: \"applications.certmgr\""},
        CallRow{{"OtherMethod"},
                callText("QueryCAList", 420),
                CallStatus::UnknownMethod,
                "no such method: \"QueryCAList\""},
        CallRow{{"IdOfAnotherMethod"},
                callText("queryCAList", 520),
                CallStatus::WrongId,
                "the request's id does not belong to the method: \"520\""},
        CallRow{{"MissingParameter"},
                callText("deleteIndividualCA", 410),
                CallStatus::MissingParameter,
                "a parameter is missing: ca_common_name"},
        CallRow{{"UnknownParameter"},
                callText("queryCAList", 420, {text("\xC3\xA4", "")}),
                CallStatus::UnknownParameter,
                "the method has no such parameter: \"\\xC3\\xA4\""},
        CallRow{{"ParameterOfAnotherMethod"},
                callText("deleteIndividualCert", 510,
                         {text("cert_friendly_name", "a"), text("ca_common_name", "a")}),
                CallStatus::UnknownParameter,
                "the method has no such parameter: \"ca_common_name\""},
        CallRow{{"RepeatedParameter"},
                callText("deleteIndividualCert", 510,
                         {text("cert_friendly_name", "a"), text("cert_friendly_name", "a")}),
                CallStatus::RepeatedParameter,
                "a parameter is given twice: cert_friendly_name"},
        CallRow{{"BinaryForText"},
                callText("deleteIndividualCert", 510, {support::binary("cert_friendly_name", "a")}),
                CallStatus::WrongType,
                "a parameter has the wrong type: cert_friendly_name"},
        CallRow{{"NoElement"},
                callText("deleteIndividualCert", 510, {{"cert_friendly_name", "Elem", "a"}}),
                CallStatus::WrongType,
                "a parameter has the wrong type: \"cert_friendly_name\""},
        CallRow{{"NoNumber"},
                callText("uploadNewCAFile", 400,
                         {text("ca_file_name", "a"),
                          {"ca_dot_pem_size", "IntegerElem", "1x"},
                          support::binary("ca_dot_pem_file", "a")}),
                CallStatus::WrongType,
                "a parameter has the wrong type: ca_dot_pem_size"},
        CallRow{{"EmptyNumber"},
                callText("uploadNewCAFile", 400,
                         {text("ca_file_name", "a"),
                          {"ca_dot_pem_size", "IntegerElem", ""},
                          support::binary("ca_dot_pem_file", "a")}),
                CallStatus::WrongType,
                "a parameter has the wrong type: ca_dot_pem_size"}),
    support::rowName);

/// A row of a table: a method, the id of its requests, and its parameters.
struct MethodRow : support::Row {
  int requestId;
  Names texts;
  const char* size = nullptr;
  const char* file = nullptr;
};

class Method : public testing::TestWithParam<MethodRow> {
 protected:
  /// Returns the parameters of the row's method, in another order than that of zvkconfig.
  static std::vector<support::CallParameter> parameters() {
    std::vector<support::CallParameter> all;
    if (GetParam().file != nullptr) {
      all.push_back(support::binary(GetParam().file, "x"));
      all.push_back(support::number(GetParam().size, 1));
    }
    for (const std::string& name : GetParam().texts) {
      all.push_back(text(name, "x"));
    }
    return all;
  }

  static CallStatus statusOf(const std::vector<support::CallParameter>& parameters, int id) {
    return static_cast<CallStatus>(
        CertificatePrinter().status(callText(GetParam().name, id, parameters)));
  }
};

TEST_P(Method, AcceptsItsParametersInAnyOrder) {
  const CallStatus status = statusOf(parameters(), GetParam().requestId);
  for (const CallStatus refusal :
       {CallStatus::UnknownMethod, CallStatus::WrongId, CallStatus::MissingParameter,
        CallStatus::UnknownParameter, CallStatus::WrongType}) {
    EXPECT_NE(status, refusal);
  }
}

TEST_P(Method, NeedsItsOwnId) {
  for (const int id : {0, 100, 200, 210, 400, 410, 420, 430, 500, 510, 520}) {
    EXPECT_EQ(statusOf(parameters(), id) == CallStatus::WrongId, id != GetParam().requestId) << id;
  }
}

TEST_P(Method, NeedsEachParameter) {
  for (std::size_t i = 0; i < parameters().size(); ++i) {
    auto some = parameters();
    some.erase(some.begin() + static_cast<std::ptrdiff_t>(i));
    EXPECT_EQ(statusOf(some, GetParam().requestId), CallStatus::MissingParameter) << i;
  }
}

TEST_P(Method, NeedsTheTypeOfEachParameter) {
  for (std::size_t i = 0; i < parameters().size(); ++i) {
    auto some = parameters();
    some[i].element = some[i].element == "StringElem" ? "IntegerElem" : "StringElem";
    EXPECT_EQ(statusOf(some, GetParam().requestId), CallStatus::WrongType) << i;
  }
}

TEST_P(Method, RejectsOtherParameters) {
  auto more = parameters();
  more.push_back(text("x509_X", ""));
  EXPECT_EQ(statusOf(more, GetParam().requestId), CallStatus::UnknownParameter);
}

INSTANTIATE_TEST_SUITE_P(
    All, Method,
    testing::Values(
        MethodRow{{"readCertDefaults"}, 100, {}},
        MethodRow{{"generateNewCert"},
                  200,
                  {"x509_ST", "x509_OU", "x509_L", "x509_CN", "x509_C", "x509_AN", "x509_O",
                   "cert_friendly_name"}},
        MethodRow{{"exportPubKey"}, 210, {"cert_friendly_name"}},
        MethodRow{{"uploadNewCAFile"}, 400, {"ca_file_name"}, "ca_dot_pem_size", "ca_dot_pem_file"},
        MethodRow{{"deleteIndividualCA"}, 410, {"ca_common_name"}},
        MethodRow{{"queryCAList"}, 420, {}}, MethodRow{{"queryCAInfo"}, 430, {"ca_common_name"}},
        MethodRow{{"uploadSignedCertFile"},
                  500,
                  {"cert_friendly_name"},
                  "cert_syst_dot_pem_size",
                  "cert_syst_dot_pem_file"},
        MethodRow{{"deleteIndividualCert"}, 510, {"cert_friendly_name"}},
        MethodRow{{"queryCertList"}, 520, {}}),
    support::rowName);

TEST(CallStatus, HasADifferentTextForEachNumber) {
  std::set<std::string_view> texts;
  constexpr int last = static_cast<int>(CallStatus::KeyMismatch);
  for (int status = 1; status <= last; ++status) {
    EXPECT_FALSE(emulator::statusText(status).empty()) << status;
    EXPECT_TRUE(texts.insert(emulator::statusText(status)).second) << status;
  }
  EXPECT_EQ(emulator::statusText(0), "");
  EXPECT_EQ(emulator::statusText(last + 1), "");
}

}  // namespace
