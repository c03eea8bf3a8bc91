#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace decoder {

/// The parts of the XML text of a method call or of the reply to a method call. A missing part is
/// empty.
struct CallText {
  std::string indented;   ///< the whole text, one element per line
  std::string method;     ///< the method that a call names
  std::string requestId;  ///< the id that a call has
  std::string status;     ///< the status code that a reply has
  std::string message;    ///< the status message that a reply has
};

/// Parses XML 1.0 in UTF-8. Returns nothing if the text is not well-formed, or if something in it
/// is nested more than 32 levels below the root element. Without this limit, the indentation could
/// be much longer than the text.
std::optional<CallText> readCallText(std::string_view xml);

}  // namespace decoder
