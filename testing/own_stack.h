#pragma once

#include <functional>
#include <string>

namespace support {

/// Runs `action` in a thread with a new stack of 1 MiB. Returns the bytes of the stack afterwards,
/// including those that the action left there.
std::string stackAfter(const std::function<void()>& action);

}  // namespace support
