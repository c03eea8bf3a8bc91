#pragma once

#include "emulator/adapter/personality.h"

namespace emulator {

/// The personality with the content of the files that its object answers name. Throws an exception
/// of the standard library when one cannot be read or does not fit in a packet.
Personality withReplyFiles(Personality personality);

}  // namespace emulator
