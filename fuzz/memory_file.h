#pragma once

#include <string>
#include <string_view>

#include "util/unique_fd.h"

namespace fuzz {

/// A file that no folder has: it goes with the object.
class MemoryFile {
 public:
  explicit MemoryFile(std::string_view content);

  /// A path under which this process can open it.
  std::string path() const { return "/proc/self/fd/" + std::to_string(m_Descriptor.get()); }

  std::string content() const;

 private:
  util::UniqueFd m_Descriptor;
};

}  // namespace fuzz
