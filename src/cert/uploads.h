#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The texts of the method calls that upload a certificate. A text contains the certificate's file
/// in Base64 and must fit its buffer, so the file may have at most about 11,900 bytes.
namespace uploads {

/// Returns the content of a file, or nothing if it is empty, cannot be read or is too large.
[[nodiscard]] std::optional<std::string> readFile(const char* path);

/// Each returns the text of a call, or nothing if the content is empty or does not fit. The name is
/// inserted unchanged.
[[nodiscard]] std::optional<std::string> authorityRequest(std::string_view fileName,
                                                          std::string_view content);
[[nodiscard]] std::optional<std::string> signedRequest(std::string_view friendlyName,
                                                       std::string_view content);

}  // namespace uploads
