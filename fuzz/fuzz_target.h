#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

// A fuzz target includes this header and defines `LLVMFuzzerTestOneInput`:
//
//     int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
//       fuzz::require(isValid(codeUnderTest(fuzz::textOf(data, size))));
//       return 0;
//     }

/// Runs the code under test on `size` bytes. Ends the program if a requirement does not hold.
/// libFuzzer calls this function, and so does the replay of the seeds.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzz {

/// Ends the program if `promise` is false, so that the fuzzer reports the input.
inline void require(bool promise) {
  if (!promise) {
    std::abort();
  }
}

/// Returns the input as a text, unchanged.
inline std::string textOf(const std::uint8_t* data, std::size_t size) {
  return {data, data + size};
}

}  // namespace fuzz
