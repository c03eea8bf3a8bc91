#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "wifi/explanation.h"
#include "wifi/json_report.h"

namespace wifi {

/// What a command did with one printer, ready to be printed.
struct Outcome {
  int status = 0;                         ///< an `ExitStatus`
  Json entry = {};                        ///< of the JSON document, if one is wanted
  std::string text = {};                  ///< the result of a success, if no document is wanted
  std::optional<Explanation> error = {};  ///< why it did not succeed
};

/// Returns the outcome as bytes (CBOR, RFC 8949), for a pipe between processes.
[[nodiscard]] std::string bytesOf(const Outcome& outcome);

/// Returns the outcome in such bytes, or nothing if they are not whole.
[[nodiscard]] std::optional<Outcome> outcomeFrom(std::string_view bytes);

}  // namespace wifi
