#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace decoder {

/// The parts of the XML text of a method call or of the reply to a method call. A missing part is
/// empty.
struct CallText {
  std::string indented;   ///< the whole text, one element per line
  std::string method;     ///< of a call
  std::string requestId;  ///< of a call
  std::string status;     ///< of a reply
  std::string message;    ///< of a reply
};

/// Parses XML 1.0 in UTF-8. Returns nothing if the text is not well-formed, or if its elements are
/// nested so deeply that the indentation would be longer than the text.
std::optional<CallText> readCallText(std::string_view xml);

}  // namespace decoder
