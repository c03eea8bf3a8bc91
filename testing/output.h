#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <string>

namespace support {

/// What a piece of the program wrote, standard output and standard error apart.
struct Output {
  std::string out;
  std::string err;

  bool operator==(const Output&) const = default;
};

inline void PrintTo(const Output& output, std::ostream* stream) {
  *stream << "standard output " << testing::PrintToString(output.out) << ", standard error "
          << testing::PrintToString(output.err);
}

/// Runs `action` and returns what it wrote.
inline Output outputOf(const std::function<void()>& action) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  action();
  std::string out = testing::internal::GetCapturedStdout();
  return {std::move(out), testing::internal::GetCapturedStderr()};
}

/// Runs `action`, stores what it wrote in `output` and returns its result.
template <typename Action>
auto resultOf(Action action, Output& output) {
  decltype(action()) result{};
  output = outputOf([&] { result = action(); });
  return result;
}

/// The line that the last user of the transport logs when it releases it.
inline const std::string TransportGone = "D [ZVK] Destroying last instance of usb transport.\n";

}  // namespace support
