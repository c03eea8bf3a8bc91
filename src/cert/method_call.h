#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// The table of method calls of the printer's certificate manager, and the XML text of a call:
///
///     const auto request = requestText(DeleteIndividualCA, {"RootCA_Jan__5_2020_To_Dec_25_2030"});
namespace method_calls {

/// One parameter of a call: its name, and the XML element around its value.
struct Parameter {
  std::string_view name;
  std::string_view element;
};

/// The content of a request's parameter list.
enum class Shape {
  Map,   ///< a map with a child for each parameter; without parameters an empty map
  Bare,  ///< nothing, not even a map
};

/// One row of the table.
struct MethodCall {
  /// The value of `requestID` in the XML. Each method has its own number.
  int requestId = 0;
  std::string_view method{};
  Shape shape = Shape::Map;
  /// The parameters in the order in which they are sent.
  std::span<const Parameter> parameters{};
  /// The XML declaration.
  std::string_view prolog{};
  /// The largest size in bytes of the text of the request, including a terminating zero byte.
  std::size_t bufferSize = 0;
  /// After this many seconds `sendConfig::query` reads no further packet of the reply.
  int timeoutSeconds = 0;
  /// The start of the diagnostic line about a status other than 1.
  const char* failure = "";
  /// True if a blank line follows that diagnostic line, and another blank line follows the
  /// printer's message.
  bool doubleSpaced = false;
};

extern const MethodCall ReadCertDefaults;
extern const MethodCall GenerateNewCert;
extern const MethodCall ExportPubKey;
extern const MethodCall UploadNewCAFile;
extern const MethodCall DeleteIndividualCA;
extern const MethodCall QueryCAList;
extern const MethodCall QueryCAInfo;
extern const MethodCall UploadSignedCertFile;
extern const MethodCall DeleteIndividualCert;
extern const MethodCall QueryCertList;

/// Returns the XML text of the request with these values, one for each parameter. The values are
/// inserted unchanged, so the caller escapes the values that may contain special characters of XML.
/// Returns nothing if the text does not fit into `bufferSize` bytes.
[[nodiscard]] std::optional<std::string> requestText(
    const MethodCall& call, std::initializer_list<std::string_view> values);

}  // namespace method_calls
