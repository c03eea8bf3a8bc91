#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The texts of the method calls that upload a certificate. A text contains the certificate's file
/// in Base64 and has less than 16,384 bytes (see `MethodCall::bufferSize`). So the file may have at
/// most about 11,900 bytes.
namespace uploads {

/// Returns the content of a file, or nothing if it is empty, cannot be read or is too large.
[[nodiscard]] std::optional<std::string> readFile(const char* path);

/// Each of these functions returns the text of a method call, or nothing if `content` is empty or
/// too long. The name is inserted into the XML unchanged.
[[nodiscard]] std::optional<std::string> authorityRequest(std::string_view fileName,
                                                          std::string_view content);
[[nodiscard]] std::optional<std::string> signedRequest(std::string_view friendlyName,
                                                       std::string_view content);

}  // namespace uploads
