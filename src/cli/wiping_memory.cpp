// Memory that the program releases is cleared first, so that keys and passwords, and the packets
// made of them, do not stay behind in it. They pass through strings and vectors of many kinds, all
// of which release their memory here.

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <malloc.h>
#include <new>

void* operator new(std::size_t size) {
  // A block of no bytes has an address of its own, too.
  if (void* const block = std::malloc(size == 0 ? 1 : size)) {
    return block;
  }
  throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
  if (block == nullptr) {
    return;
  }
  // Unlike memset it is not left out where nobody reads the memory any more.
  ::explicit_bzero(block, ::malloc_usable_size(block));
  std::free(block);
}

// The other forms go through these two by default; that of a known size is named for compilers that
// insist on it.
void operator delete(void* block, std::size_t /*size*/) noexcept {
  operator delete(block);
}
