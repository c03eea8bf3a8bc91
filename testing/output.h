#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <string>

namespace support {

/// What a part of the program wrote to standard output and to standard error.
struct Output {
  std::string out;
  std::string err;

  bool operator==(const Output&) const = default;
};

inline void PrintTo(const Output& output, std::ostream* stream) {
  *stream << "standard output " << testing::PrintToString(output.out) << ", standard error "
          << testing::PrintToString(output.err);
}

/// Runs `action` and returns the text that it wrote.
inline Output outputOf(const std::function<void()>& action) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  action();
  std::string out = testing::internal::GetCapturedStdout();
  return {std::move(out), testing::internal::GetCapturedStderr()};
}

/// Runs `action` and returns its result. Sets `output` to what `action` printed.
template <typename Action>
auto resultOf(Action action, Output& output) {
  decltype(action()) result{};
  output = outputOf([&] { result = action(); });
  return result;
}

/// The line that the transport logs when its last user releases it.
inline const std::string TransportReleased = "D [ZVK] Destroying last instance of usb transport.\n";

}  // namespace support
