#pragma once

#include <string>
#include <string_view>

#include "util/unique_fd.h"

namespace fuzz {

/// A file in memory that is in no folder. The destructor removes the file. A target uses a memory
/// file for code that opens a file by its path:
///
///     const fuzz::MemoryFile file(content);
///     settings.parseFile(file.path(), "/dev/usb/lp0");
class MemoryFile {
 public:
  /// Ends the program if the file cannot be created.
  explicit MemoryFile(std::string_view content);

  /// Returns a path that only this process can open.
  std::string path() const { return "/proc/self/fd/" + std::to_string(m_Descriptor.get()); }

  /// Returns the present content.
  std::string content() const;

 private:
  util::UniqueFd m_Descriptor;
};

}  // namespace fuzz
