#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "session/session.h"
#include "wifi/explanation.h"

/// The JSON documents of the program (RFC 8259). zvkwifi.schema.json describes them. Keys and fixed
/// values such as "confirmed" are never translated. Bytes that are not UTF-8 become U+FFFD.
namespace wifi {

using Json = nlohmann::ordered_json;

/// Which keys a printer's entry has besides the printer's own keys, `result`, `seconds` and
/// `error`.
enum class Fields { Status, Set, ResultOnly };

/// Returns the printer's own keys: device, address, serial, make, model, state.
[[nodiscard]] Json printerJson(const session::Printer& printer);

/// Returns the entry of one printer.
[[nodiscard]] Json reportJson(const session::Report& report, Fields fields, double seconds,
                              const std::optional<Explanation>& error);

/// Returns the document with these entries, followed by a line end.
[[nodiscard]] std::string documentText(std::vector<Json> printers);

/// How many printers `station` has set up.
struct Summary {
  std::size_t done = 0;
  std::size_t failed = 0;   ///< at the last attempt
  std::size_t skipped = 0;  ///< how often a printer was plugged in that was done before
};

/// Does the same with a summary.
[[nodiscard]] std::string documentText(std::vector<Json> printers, const Summary& summary);

/// Returns the document of a command that failed before it had a printer.
[[nodiscard]] std::string errorText(const Explanation& error);

}  // namespace wifi
