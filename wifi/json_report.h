#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "session/certificates.h"
#include "session/session.h"
#include "wifi/explanation.h"

/// The JSON documents of the program (RFC 8259). zvkwifi.schema.json describes them. Keys and fixed
/// values such as "confirmed" are never translated. Bytes that are not UTF-8 become U+FFFD.
namespace wifi {

using Json = nlohmann::ordered_json;

/// The entry of one printer, or null if there is none. Most sources only pass entries on, and need
/// no header but this one. Sources that read or make the content include <nlohmann/json.hpp>, which
/// takes seconds to compile.
using JsonEntry = std::shared_ptr<const Json>;

/// Which keys a printer's entry has besides the printer's own keys, `result`, `seconds` and
/// `error`.
enum class Fields { Status, Set, ResultOnly };

/// Returns an entry with the printer's own keys (device, address, serial, make, model, state) and
/// the result "ok".
[[nodiscard]] JsonEntry listEntry(const session::Printer& printer);

/// Returns the entry of one printer. `addKeys` may add keys to it.
[[nodiscard]] JsonEntry reportEntry(const session::Report& report, Fields fields, double seconds,
                                    const std::optional<Explanation>& error,
                                    const std::function<void(Json&)>& addKeys = {});

/// Adds the names of the printer's certificates and authorities to its entry, if the printer
/// reported them.
void addCertificates(const session::CertificateReport& report, Json& entry);

/// Returns the document with these entries, followed by a line end.
[[nodiscard]] std::string documentText(const std::vector<JsonEntry>& printers);

/// How many printers `station` has set up.
struct Summary {
  std::size_t done = 0;
  std::size_t failed = 0;   ///< at the last attempt
  std::size_t skipped = 0;  ///< how often a printer was plugged in that was done before
};

/// Does the same with a summary.
[[nodiscard]] std::string documentText(const std::vector<JsonEntry>& printers,
                                       const Summary& summary);

/// Returns the document of a command that failed before it had a printer.
[[nodiscard]] std::string errorText(const Explanation& error);

}  // namespace wifi
