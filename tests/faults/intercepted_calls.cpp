// Test doubles of calls that can fail: tcgetattr, tcsetattr, fopen, malloc and operator new. The
// doubles of all other calls are in testing/virtual_system.cpp and testing/fake_libusb.cpp, because
// other test programs use them, too.

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <termios.h>

#include "faults/virtual_terminal.h"
#include "testing/fault_injection.h"
#include "testing/wrapped_names.h"

namespace faults {

namespace {
VirtualTerminal* currentTerminal = nullptr;
}

VirtualTerminal::VirtualTerminal(const std::string& input) : m_Input(input) {
  attributes.c_lflag = ECHO;
  currentTerminal = this;
}

VirtualTerminal::~VirtualTerminal() {
  currentTerminal = nullptr;
}

VirtualTerminal* VirtualTerminal::current() {
  return currentTerminal;
}

}  // namespace faults

using faults::VirtualTerminal;
using support::InterceptedCall;

// The linker's --wrap requires these names.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c)
extern "C" {

int __real_tcgetattr(int descriptor, termios* attributes);
int __real_tcsetattr(int descriptor, int when, const termios* attributes);
ZVK_CALL_WITH_FILE_OFFSET(std::FILE*, fopen, (const char* path, const char* mode))
void* __real_malloc(std::size_t size);

int __wrap_tcgetattr(int descriptor, termios* attributes) {
  const InterceptedCall call("tcgetattr");
  if (call.fails()) {
    return -1;
  }
  if (VirtualTerminal::current() == nullptr) {
    return __real_tcgetattr(descriptor, attributes);
  }
  *attributes = VirtualTerminal::current()->attributes;
  return 0;
}

int __wrap_tcsetattr(int descriptor, int when, const termios* attributes) {
  const InterceptedCall call("tcsetattr");
  if (call.fails()) {
    return -1;
  }
  VirtualTerminal* const terminal = VirtualTerminal::current();
  if (terminal == nullptr) {
    return __real_tcsetattr(descriptor, when, attributes);
  }
  terminal->attributes = *attributes;

  return 0;
}

std::FILE* __wrap_fopen(const char* path, const char* mode) {
  const InterceptedCall call("fopen");
  return call.fails() ? nullptr : __real_fopen(path, mode);
}

void* __wrap_malloc(std::size_t size) {
  const InterceptedCall call("malloc");
  return call.fails() ? nullptr : __real_malloc(size);
}

}  // extern "C"

namespace {

void* allocate(std::size_t size) {
  const InterceptedCall call("new");
  void* const memory = call.fails() ? nullptr : __real_malloc(size == 0 ? 1 : size);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}

void* allocateOrNull(std::size_t size) noexcept {
  try {
    return allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c)

void* operator new(std::size_t size) {
  return allocate(size);
}

void* operator new[](std::size_t size) {
  return allocate(size);
}

void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return allocateOrNull(size);
}

void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return allocateOrNull(size);
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}

void operator delete[](void* memory) noexcept {
  std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}

void operator delete[](void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}
