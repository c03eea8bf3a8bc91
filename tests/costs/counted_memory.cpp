#include "costs/counted_memory.h"

#include <cstdlib>
#include <new>

namespace {

std::size_t Count = 0;

}  // namespace

std::size_t allocationsOf(const std::function<void()>& action) {
  const std::size_t before = Count;
  action();
  return Count - before;
}

void* operator new(std::size_t size) {
  ++Count;
  if (void* const block = std::malloc(size == 0 ? 1 : size)) {
    return block;
  }
  throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
  std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
  std::free(block);
}
