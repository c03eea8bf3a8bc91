#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace decoder {

/// The XML text of a method call or of the reply to one, taken apart.
struct CallText {
  /// The text with each element on a line of its own, indented.
  std::string indented;
  std::string method;     ///< of a call; empty when there is none
  std::string requestId;  ///< of a call
  std::string status;     ///< of a reply
  std::string message;    ///< of a reply
};

/// Reads the text as XML 1.0 in UTF-8. Nothing when it is not well-formed, or nested so deeply that
/// indentation would cost more than the text.
std::optional<CallText> readCallText(std::string_view xml);

}  // namespace decoder
