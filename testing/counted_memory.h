#pragma once

#include <cstddef>

namespace support {

/// Returns how many blocks the program has allocated with `malloc` so far. This count includes the
/// blocks of operator new and the storage of ring buffers.
std::size_t allocations();

}  // namespace support
