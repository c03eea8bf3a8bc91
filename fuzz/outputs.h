#pragma once

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

namespace fuzz {

/// The text written to standard output and to standard error.
struct Output {
  std::string out;
  std::string err;

  bool operator==(const Output&) const = default;
};

/// Runs `action` and returns the text that it wrote. During the call standard input is empty. The
/// function replaces the C library's streams and not the descriptors, because this is faster.
///
///     const fuzz::Output output = fuzz::outputOf([&] { settings.parseNPAFile(path); });
Output outputOf(const std::function<void()>& action);

}  // namespace fuzz
