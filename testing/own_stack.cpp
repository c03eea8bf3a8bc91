#include "testing/own_stack.h"

#include <cstddef>
#include <memory>
#include <pthread.h>
#include <stdexcept>

namespace support {

namespace {

constexpr std::size_t StackSize = 1U << 20U;
constexpr std::align_val_t PageSize{4096};

struct FreeStack {
  void operator()(char* stack) const { ::operator delete[](stack, PageSize); }
};

void* run(void* action) {
  (*static_cast<const std::function<void()>*>(action))();
  return nullptr;
}

}  // namespace

std::string stackAfter(const std::function<void()>& action) {
  const std::unique_ptr<char[], FreeStack> stack(new (PageSize) char[StackSize]());
  pthread_attr_t attributes;
  ::pthread_attr_init(&attributes);
  ::pthread_attr_setstack(&attributes, stack.get(), StackSize);
  pthread_t thread{};
  std::function<void()> copy = action;
  if (::pthread_create(&thread, &attributes, run, &copy) != 0 ||
      ::pthread_join(thread, nullptr) != 0) {
    throw std::runtime_error("cannot run a thread for the test");
  }
  ::pthread_attr_destroy(&attributes);
  return {stack.get(), StackSize};
}

}  // namespace support
