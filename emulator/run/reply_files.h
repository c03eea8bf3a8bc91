#pragma once

#include "emulator/adapter/personality.h"

namespace emulator {

/// Returns the personality with the content of the files that its object replies name. Throws
/// `std::system_error` if a file cannot be read, and `std::runtime_error` if a file does not fit
/// into a packet.
Personality withReplyFiles(Personality personality);

}  // namespace emulator
