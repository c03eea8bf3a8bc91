#include "testing/counted_memory.h"

#include <atomic>

namespace {

std::atomic<std::size_t> count = 0;

}  // namespace

std::size_t support::allocations() {
  return count.load(std::memory_order_relaxed);
}

// The linker's --wrap requires these names.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c)
extern "C" {

void* __real_malloc(std::size_t size);

void* __wrap_malloc(std::size_t size) {
  count.fetch_add(1, std::memory_order_relaxed);
  return __real_malloc(size);
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c)
