#pragma once

#include <cstddef>

namespace bench {

/// Returns how many blocks operator new has allocated since the start of the program.
std::size_t allocations();

}  // namespace bench
