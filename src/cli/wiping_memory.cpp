// The program's memory: all forms of operator new and operator delete. Memory is cleared before it
// is freed.
//
// Keys, passwords and packets are stored in many strings and vectors. These free their memory here,
// so no block that they have freed still contains a secret.
//
// This file replaces all forms together. Otherwise a form of the C++ library or of a sanitizer
// could allocate a block that a form of this file frees, or free a block that a form of this file
// has allocated.

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <malloc.h>
#include <new>

namespace {

constexpr std::align_val_t OrdinaryAlignment{__STDCPP_DEFAULT_NEW_ALIGNMENT__};

/// Returns a new block of at least `size` bytes, or nullptr if memory runs out.
void* allocateOrNull(std::size_t size, std::align_val_t alignment = OrdinaryAlignment) noexcept {
  // A block of 0 bytes must also have an address that no other block has, but malloc(0) may return
  // nullptr.
  const std::size_t wanted = size == 0 ? 1 : size;
  if (alignment <= OrdinaryAlignment) {
    return std::malloc(wanted);
  }
  void* block = nullptr;
  return ::posix_memalign(&block, static_cast<std::size_t>(alignment), wanted) == 0 ? block
                                                                                    : nullptr;
}

/// Returns a new block, or throws `std::bad_alloc` if memory runs out.
void* allocate(std::size_t size, std::align_val_t alignment = OrdinaryAlignment) {
  if (void* const block = allocateOrNull(size, alignment)) {
    return block;
  }
  throw std::bad_alloc();
}

/// Clears and frees a block that any form of operator new has allocated. Does nothing for nullptr.
void release(void* block) noexcept {
  if (block == nullptr) {
    return;
  }
  // The compiler may remove a memset here, because nothing reads the memory later. It does not
  // remove explicit_bzero. The usable size may exceed the requested size. All usable bytes are
  // cleared, because any of them may hold a part of a secret.
  ::explicit_bzero(block, ::malloc_usable_size(block));
  std::free(block);
}

}  // namespace

// These forms throw `std::bad_alloc` if memory runs out.

void* operator new(std::size_t size) {
  return allocate(size);
}

void* operator new[](std::size_t size) {
  return allocate(size);
}

void* operator new(std::size_t size, std::align_val_t alignment) {
  return allocate(size, alignment);
}

void* operator new[](std::size_t size, std::align_val_t alignment) {
  return allocate(size, alignment);
}

// These forms return nullptr if memory runs out.

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return allocateOrNull(size);
}

void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return allocateOrNull(size);
}

void* operator new(std::size_t size, std::align_val_t alignment,
                   const std::nothrow_t& /*tag*/) noexcept {
  return allocateOrNull(size, alignment);
}

void* operator new[](std::size_t size, std::align_val_t alignment,
                     const std::nothrow_t& /*tag*/) noexcept {
  return allocateOrNull(size, alignment);
}

// These forms ignore size and alignment: free() needs neither.

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
