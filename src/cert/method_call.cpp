// The table of method calls and the XML text of a request.

#include "cert/method_call.h"

#include <array>
#include <cassert>

namespace method_calls {

namespace {

// The XML elements of the values.
constexpr std::string_view Text = "StringElem";
constexpr std::string_view Integer = "IntegerElem";
constexpr std::string_view Base64Text = "BinaryElem";

// The parameters of the calls: name and XML element of each. They are sent in this order.
constexpr std::array FriendlyName = {Parameter{"cert_friendly_name", Text}};
constexpr std::array CaName = {Parameter{"ca_common_name", Text}};
constexpr std::array Subject = {
    Parameter{"cert_friendly_name", Text},
    Parameter{"x509_O", Text},
    Parameter{"x509_AN", Text},
    Parameter{"x509_C", Text},
    Parameter{"x509_CN", Text},
    Parameter{"x509_L", Text},
    Parameter{"x509_OU", Text},
    Parameter{"x509_ST", Text},
};
constexpr std::array CaFile = {
    Parameter{"ca_file_name", Text},
    Parameter{"ca_dot_pem_size", Integer},
    Parameter{"ca_dot_pem_file", Base64Text},
};
constexpr std::array SignedFile = {
    Parameter{"cert_friendly_name", Text},
    Parameter{"cert_syst_dot_pem_size", Integer},
    Parameter{"cert_syst_dot_pem_file", Base64Text},
};

// The XML declarations. Only readCertDefaults has the declaration without an encoding.
constexpr std::string_view PlainProlog = R"(<?xml version="1.0"?>)";
constexpr std::string_view Prolog = R"(<?xml version="1.0" encoding="UTF-8"?>)";

// The values of `bufferSize` in bytes. A text with this many bytes or more is not sent.
constexpr std::size_t Small = 2048;
constexpr std::size_t Usual = 3072;
constexpr std::size_t WithFile = 16384;

/// The values of `timeoutSeconds`. The long timeout is for the calls in which the printer generates
/// or exports keys.
constexpr int LongTimeout = 10;
constexpr int Timeout = 5;

void append(std::string& text, std::initializer_list<std::string_view> pieces) {
  for (const std::string_view piece : pieces) {
    text.append(piece);
  }
}

}  // namespace

// The columns are request ID, method, shape, parameters, prolog, buffer size, timeout in seconds,
// start of the line about a failure, and whether blank lines follow the lines about a failure.
//
// clang-format off
constexpr MethodCall ReadCertDefaults = {
    100, "readCertDefaults", Shape::Map, {}, PlainProlog, Usual, Timeout,
    "Get cert request defaults error"};
constexpr MethodCall GenerateNewCert = {
    200, "generateNewCert", Shape::Map, Subject, Prolog, Usual, LongTimeout,
    "Create Certificate Request error"};
constexpr MethodCall ExportPubKey = {
    210, "exportPubKey", Shape::Map, FriendlyName, Prolog, Usual, LongTimeout,
    "Save Cert Request error", true};
constexpr MethodCall UploadNewCAFile = {
    400, "uploadNewCAFile", Shape::Map, CaFile, Prolog, WithFile, Timeout,
    "Install CA Cert error"};
constexpr MethodCall DeleteIndividualCA = {
    410, "deleteIndividualCA", Shape::Map, CaName, Prolog, Usual, Timeout,
    "Delete CA cert error"};
constexpr MethodCall QueryCAList = {
    420, "queryCAList", Shape::Bare, {}, Prolog, Usual, Timeout,
    "getCACommonNameList error"};
constexpr MethodCall QueryCAInfo = {
    430, "queryCAInfo", Shape::Map, CaName, Prolog, Small, Timeout,
    "getCAInfo error"};
constexpr MethodCall UploadSignedCertFile = {
    500, "uploadSignedCertFile", Shape::Map, SignedFile, Prolog, WithFile, Timeout,
    "Install Signed Cert error"};
constexpr MethodCall DeleteIndividualCert = {
    510, "deleteIndividualCert", Shape::Map, FriendlyName, Prolog, Usual, Timeout,
    "Delete signed cert error"};
constexpr MethodCall QueryCertList = {
    520, "queryCertList", Shape::Bare, {}, Prolog, Usual, Timeout,
    "Error getting list of friendly names"};
// clang-format on

std::optional<std::string> requestText(const MethodCall& call,
                                       std::initializer_list<std::string_view> values) {
  std::string text;
  append(text,
         {call.prolog, R"(<method name="callMethod" requestID=")", std::to_string(call.requestId),
          R"("><arg name="objName">applications.certMgr</arg><arg name="method">)", call.method,
          R"(</arg><arg name="params"><ListElem><ListElem>)"});
  if (call.shape == Shape::Map) {
    text.append("<MapElem>");
    assert(values.size() == call.parameters.size());
    const auto* value = values.begin();
    for (const auto& [name, element] : call.parameters) {
      append(text, {R"(<child name=")", name, R"("><)", element, ">", *value++, "</", element,
                    "></child>"});
    }
    text.append("</MapElem>");
  }
  text.append("</ListElem></ListElem></arg></method>");
  if (text.size() >= call.bufferSize) {
    return std::nullopt;
  }
  return text;
}

}  // namespace method_calls
