#pragma once

#include <filesystem>
#include <iterator>

namespace support {

/// Returns the count of the process's open descriptors.
inline long openDescriptors() {
  // The iterator itself opens one descriptor, which is subtracted.
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                       std::filesystem::directory_iterator()) -
         1;
}

}  // namespace support
