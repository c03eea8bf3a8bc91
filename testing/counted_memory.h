#pragma once

#include <cstddef>

namespace support {

/// Returns how many blocks the program's own memory has taken from the C library so far, which are
/// those of operator new and the memory of ring buffers.
std::size_t allocations();

}  // namespace support
