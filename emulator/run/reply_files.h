#pragma once

#include "emulator/adapter/personality.h"

namespace emulator {

/// Returns the personality with the content of the files that its object replies name. Throws
/// `std::system_error` if a file cannot be read, `std::runtime_error` if it does not fit in a
/// packet.
Personality withReplyFiles(Personality personality);

}  // namespace emulator
