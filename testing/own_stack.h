#pragma once

#include <functional>
#include <string>

namespace support {

/// Runs `action` in a thread with a new stack of 1 MiB. Returns all bytes of the stack after the
/// end of `action`, so a test can search for data that `action` left there.
std::string stackAfter(const std::function<void()>& action);

}  // namespace support
