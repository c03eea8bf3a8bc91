#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "wifi/explanation.h"
#include "wifi/json_report.h"

namespace wifi {

/// What a command did with one printer, ready to be printed.
struct Outcome {
  int status = 0;         ///< an `ExitStatus`
  JsonEntry entry = {};   ///< the printer's entry in the JSON document; null without --json
  std::string text = {};  ///< the result of a success; empty with --json
  std::optional<Explanation> error = {};  ///< why the command did not succeed
};

/// Returns the outcome as bytes (CBOR, RFC 8949), for a pipe between processes.
[[nodiscard]] std::string bytesOf(const Outcome& outcome);

/// Returns the outcome in the bytes of `bytesOf`, or nothing if a part of the bytes is missing.
[[nodiscard]] std::optional<Outcome> outcomeFrom(std::string_view bytes);

}  // namespace wifi
