#pragma once

#include <filesystem>
#include <iterator>

namespace support {

/// How many descriptors the process has open.
inline long openDescriptors() {
  // The iterator's own descriptor is open whenever it counts.
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                       std::filesystem::directory_iterator()) -
         1;
}

}  // namespace support
