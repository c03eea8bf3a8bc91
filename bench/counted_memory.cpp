// Replaces the memory functions with those of the program, which clear what they free, and counts
// the allocations.

#include "counted_memory.h"

#include <atomic>
#include <cstdlib>
#include <malloc.h>
#include <new>
#include <string.h>

namespace {

std::atomic<std::size_t> Count = 0;

}  // namespace

namespace bench {

std::size_t allocations() {
  return Count.load(std::memory_order_relaxed);
}

}  // namespace bench

void* operator new(std::size_t size) {
  Count.fetch_add(1, std::memory_order_relaxed);
  if (void* const block = std::malloc(size == 0 ? 1 : size)) {
    return block;
  }
  throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
  if (block == nullptr) {
    return;
  }
  ::explicit_bzero(block, ::malloc_usable_size(block));
  std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
  operator delete(block);
}
