#pragma once

#include <functional>
#include <string>

namespace support {

/// Runs `action` in a thread with a new stack and returns the bytes of that stack afterwards, with
/// what the action has left there.
std::string stackAfter(const std::function<void()>& action);

}  // namespace support
