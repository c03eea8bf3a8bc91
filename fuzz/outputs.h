#pragma once

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

namespace fuzz {

/// What was written to both outputs.
struct Output {
  std::string out;
  std::string err;

  bool operator==(const Output&) const = default;
};

/// Runs `action` and returns what it wrote. Standard input is empty meanwhile. The C library's
/// streams are exchanged and no descriptor is touched, which costs next to nothing.
Output outputOf(const std::function<void()>& action);

}  // namespace fuzz
