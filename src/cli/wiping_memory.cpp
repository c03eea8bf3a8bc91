// The program's memory: every form of operator new and of operator delete.
//
// Keys and passwords, and the packets made of them, pass through strings and vectors of many kinds,
// all of which release their memory here, where it is cleared first. The forms are replaced
// together: a form that came from elsewhere, such as a sanitizer's runtime, could take memory that
// these release.

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <malloc.h>
#include <new>

namespace {

constexpr std::align_val_t OrdinaryAlignment{__STDCPP_DEFAULT_NEW_ALIGNMENT__};

/// Returns nullptr if memory runs out.
void* takeOrNull(std::size_t size, std::align_val_t alignment = OrdinaryAlignment) noexcept {
  // A block of no bytes has its own address, too.
  const std::size_t wanted = size == 0 ? 1 : size;
  if (alignment <= OrdinaryAlignment) {
    return std::malloc(wanted);
  }
  void* block = nullptr;
  return ::posix_memalign(&block, static_cast<std::size_t>(alignment), wanted) == 0 ? block
                                                                                    : nullptr;
}

void* take(std::size_t size, std::align_val_t alignment = OrdinaryAlignment) {
  if (void* const block = takeOrNull(size, alignment)) {
    return block;
  }
  throw std::bad_alloc();
}

void release(void* block) noexcept {
  if (block == nullptr) {
    return;
  }
  // Unlike memset it is not left out although nobody reads the memory any more.
  ::explicit_bzero(block, ::malloc_usable_size(block));
  std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
  return take(size);
}

void* operator new[](std::size_t size) {
  return take(size);
}

void* operator new(std::size_t size, std::align_val_t alignment) {
  return take(size, alignment);
}

void* operator new[](std::size_t size, std::align_val_t alignment) {
  return take(size, alignment);
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return takeOrNull(size);
}

void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return takeOrNull(size);
}

void* operator new(std::size_t size, std::align_val_t alignment,
                   const std::nothrow_t& /*tag*/) noexcept {
  return takeOrNull(size, alignment);
}

void* operator new[](std::size_t size, std::align_val_t alignment,
                     const std::nothrow_t& /*tag*/) noexcept {
  return takeOrNull(size, alignment);
}

void operator delete(void* block) noexcept {
  release(block);
}

void operator delete[](void* block) noexcept {
  release(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
  release(block);
}

void operator delete[](void* block, std::size_t /*size*/) noexcept {
  release(block);
}

void operator delete(void* block, std::align_val_t /*alignment*/) noexcept {
  release(block);
}

void operator delete[](void* block, std::align_val_t /*alignment*/) noexcept {
  release(block);
}

void operator delete(void* block, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
  release(block);
}

void operator delete[](void* block, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
  release(block);
}

void operator delete(void* block, const std::nothrow_t& /*tag*/) noexcept {
  release(block);
}

void operator delete[](void* block, const std::nothrow_t& /*tag*/) noexcept {
  release(block);
}

void operator delete(void* block, std::align_val_t /*alignment*/,
                     const std::nothrow_t& /*tag*/) noexcept {
  release(block);
}

void operator delete[](void* block, std::align_val_t /*alignment*/,
                       const std::nothrow_t& /*tag*/) noexcept {
  release(block);
}
