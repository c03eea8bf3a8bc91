#include "xml/copies_in_place.h"

#include <cstddef>

namespace {

int copies = 0;

void countInPlace(const void* to, const void* from, std::size_t size) {
  copies += to == from && size > 0 ? 1 : 0;
}

}  // namespace

int copiesInPlace() {
  return copies;
}

// The linker's --wrap requires these names. AddressSanitizer has its own memmove, which is wrapped
// too.
extern "C" {

void* __real_memmove(void* to, const void* from, std::size_t size);
void* __real___asan_memmove(void* to, const void* from, std::size_t size);

void* __wrap_memmove(void* to, const void* from, std::size_t size) {
  countInPlace(to, from, size);
  return __real_memmove(to, from, size);
}

#ifdef ADDRESS_SANITIZER
void* __wrap___asan_memmove(void* to, const void* from, std::size_t size) {
  countInPlace(to, from, size);
  return __real___asan_memmove(to, from, size);
}
#endif

}  // extern "C"
