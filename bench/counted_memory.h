#pragma once

#include <cstddef>

namespace bench {

/// How many blocks operator new has given so far.
std::size_t allocations();

}  // namespace bench
