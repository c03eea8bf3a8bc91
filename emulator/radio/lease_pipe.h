#pragma once

#include <array>
#include <optional>
#include <string>

#include "emulator/radio/private_folder.h"
#include "npa/setting_keys.h"
#include "util/unique_fd.h"

namespace emulator {

/// An event that udhcpc reports.
struct LeaseEvent {
  enum class Kind { Bound, Lost, Failed };

  Kind kind;
  std::array<npa::Byte, 4> address{};  ///< Bound: the address
};

/// Parses a line of the script, such as "bound 10.0.0.5". Returns nothing for any other line.
std::optional<LeaseEvent> parseLease(const std::string& line);

/// A named pipe, and the script that udhcpc runs at each event. The script writes the event to the
/// pipe and sets the address of the interface, but no route and no name server.
class LeasePipe {
 public:
  /// Creates pipe and script in the folder. Throws `std::system_error` on failure.
  explicit LeasePipe(const PrivateFolder& folder);

  const std::string& script() const { return m_Script; }
  int descriptor() const { return m_Pipe.get(); }

  /// Returns the next event, or nothing if none has arrived.
  std::optional<LeaseEvent> next();

 private:
  std::string m_Script;
  util::UniqueFd m_Pipe;
  std::string m_Pending;  ///< the text that has been read, but not returned yet
};

}  // namespace emulator
