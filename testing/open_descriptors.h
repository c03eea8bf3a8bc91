#pragma once

#include <filesystem>
#include <iterator>

namespace support {

/// Returns the count of the process's open descriptors.
inline long openDescriptors() {
  // One of these descriptors is that of the iterator, which does not count.
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                       std::filesystem::directory_iterator()) -
         1;
}

}  // namespace support
