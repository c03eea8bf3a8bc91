#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

/// What each target defines: runs the code under test on `size` bytes and ends the program when a
/// promise does not hold. Called by libFuzzer, and by the replay of the seeds.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

inline void require(bool promise) {
  if (!promise) {
    std::abort();
  }
}

/// The input as it stands.
inline std::string textOf(const std::uint8_t* data, std::size_t size) {
  return {data, data + size};
}

}  // namespace fuzz
