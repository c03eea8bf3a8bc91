#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// The method calls of the printer's certificate manager, as data.
namespace method_calls {

/// One parameter of a call: its name, and the element that its value stands in.
struct Parameter {
  std::string_view name;
  std::string_view element;
};

/// What a request's parameter list holds.
enum class Shape {
  Map,   ///< a map with a child for each parameter, also when there are none
  Bare,  ///< nothing, not even a map
};

struct MethodCall {
  int requestId = 0;
  std::string_view method{};
  Shape shape = Shape::Map;
  std::span<const Parameter> parameters{};
  std::string_view prolog{};
  /// The largest request, with the zero byte that ends it.
  std::size_t bufferSize = 0;
  int timeoutSeconds = 0;
  /// What the diagnostic line about a status other than 1 begins with.
  const char* failure = "";
  /// Whether that line, and the printer's message after it, have a blank line behind them.
  bool spacedOut = false;
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

/// Returns the XML text of the request with these values, one for each parameter and as they stand:
/// whoever passes one that may hold XML's special characters escapes it first. Nothing when the
/// text does not fit the call's buffer.
[[nodiscard]] std::optional<std::string> requestText(
    const MethodCall& call, std::initializer_list<std::string_view> values);

}  // namespace method_calls
