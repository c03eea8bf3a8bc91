// The program's operator new and operator delete. The linker's --wrap redirects the C library's
// allocator to this file.

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <gtest/gtest.h>
#include <new>

#include "testing/rows.h"

// clang++ declares these only with -fsized-deallocation.
void operator delete(void* block, std::size_t size) noexcept;
void operator delete[](void* block, std::size_t size) noexcept;
void operator delete(void* block, std::size_t size, std::align_val_t alignment) noexcept;
void operator delete[](void* block, std::size_t size, std::align_val_t alignment) noexcept;

namespace {

/// The block to examine when it is freed, and the result.
void* watched = nullptr;
std::size_t watchedSize = 0;
bool wasFreed = false;
bool wasClear = false;

bool memoryRunsOut = false;

}  // namespace

// The linker's --wrap requires these names.
extern "C" {

void* __real_malloc(std::size_t size);
int __real_posix_memalign(void** block, std::size_t alignment, std::size_t size);
void __real_free(void* block);

void* __wrap_malloc(std::size_t size) {
  return memoryRunsOut ? nullptr : __real_malloc(size);
}

int __wrap_posix_memalign(void** block, std::size_t alignment, std::size_t size) {
  return memoryRunsOut ? ENOMEM : __real_posix_memalign(block, alignment, size);
}

void __wrap_free(void* block) {
  if (block != nullptr && block == watched) {
    const auto* const bytes = static_cast<const unsigned char*>(block);
    wasFreed = true;
    wasClear =
        std::all_of(bytes, bytes + watchedSize, [](unsigned char byte) { return byte == 0; });
    watched = nullptr;
  }
  __real_free(block);
}

}  // extern "C"

namespace {

constexpr std::size_t Size = 100;
constexpr std::align_val_t Wide{64};
constexpr std::align_val_t Narrow{2};

/// A row of a table: a form of operator new, and a form of operator delete that may release its
/// block.
struct FormRow : support::Row {
  void* (*take)(std::size_t size);
  void (*release)(void* block);
  bool throws = true;
};

class OperatorNew : public testing::TestWithParam<FormRow> {
 protected:
  ~OperatorNew() override { memoryRunsOut = false; }
};

TEST_P(OperatorNew, HasAReleaseThatClearsTheBlock) {
  void* const block = GetParam().take(Size);
  ASSERT_NE(block, nullptr);
  std::fill_n(static_cast<unsigned char*>(block), Size, static_cast<unsigned char>(0x5A));
  watched = block;
  watchedSize = Size;
  wasFreed = false;
  GetParam().release(block);
  EXPECT_TRUE(wasFreed);
  EXPECT_TRUE(wasClear);
}

TEST_P(OperatorNew, ReturnsDifferentAddressesForEmptyBlocks) {
  void* const first = GetParam().take(0);
  void* const second = GetParam().take(0);
  EXPECT_NE(first, nullptr);
  EXPECT_NE(second, nullptr);
  EXPECT_NE(first, second);
  GetParam().release(first);
  GetParam().release(second);
}

TEST_P(OperatorNew, FailsIfMemoryRunsOut) {
  void* block = nullptr;
  bool hasThrown = false;
  memoryRunsOut = true;
  try {
    block = GetParam().take(Size);
  } catch (const std::bad_alloc&) {
    hasThrown = true;
  }
  memoryRunsOut = false;
  EXPECT_EQ(block, nullptr);
  EXPECT_EQ(hasThrown, GetParam().throws);
}

TEST_P(OperatorNew, HasAReleaseThatAcceptsANullPointer) {
  GetParam().release(nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, OperatorNew,
    testing::Values(FormRow{{"Plain"},
                            [](std::size_t n) { return ::operator new(n); },
                            [](void* p) {
                              ::operator delete(p);
                            }},
                    FormRow{{"Sized"},
                            [](std::size_t n) { return ::operator new(n); },
                            [](void* p) {
                              ::operator delete(p, Size);
                            }},
                    FormRow{{"Array"},
                            [](std::size_t n) { return ::operator new[](n); },
                            [](void* p) {
                              ::operator delete[](p);
                            }},
                    FormRow{{"SizedArray"},
                            [](std::size_t n) { return ::operator new[](n); },
                            [](void* p) {
                              ::operator delete[](p, Size);
                            }},
                    FormRow{{"Nothrow"},
                            [](std::size_t n) { return ::operator new(n, std::nothrow); },
                            [](void* p) { ::operator delete(p, std::nothrow); },
                            false},
                    // The standard library uses this pair for the buffer of a stable sort.
                    FormRow{{"NothrowAndPlain"},
                            [](std::size_t n) { return ::operator new(n, std::nothrow); },
                            [](void* p) { ::operator delete(p); },
                            false},
                    FormRow{{"NothrowArray"},
                            [](std::size_t n) { return ::operator new[](n, std::nothrow); },
                            [](void* p) { ::operator delete[](p, std::nothrow); },
                            false},
                    FormRow{{"Aligned"},
                            [](std::size_t n) { return ::operator new(n, Wide); },
                            [](void* p) {
                              ::operator delete(p, Wide);
                            }},
                    FormRow{{"AlignedLessThanUsual"},
                            [](std::size_t n) { return ::operator new(n, Narrow); },
                            [](void* p) {
                              ::operator delete(p, Narrow);
                            }},
                    FormRow{{"SizedAligned"},
                            [](std::size_t n) { return ::operator new(n, Wide); },
                            [](void* p) {
                              ::operator delete(p, Size, Wide);
                            }},
                    FormRow{{"AlignedArray"},
                            [](std::size_t n) { return ::operator new[](n, Wide); },
                            [](void* p) {
                              ::operator delete[](p, Wide);
                            }},
                    FormRow{{"SizedAlignedArray"},
                            [](std::size_t n) { return ::operator new[](n, Wide); },
                            [](void* p) {
                              ::operator delete[](p, Size, Wide);
                            }},
                    FormRow{{"AlignedNothrow"},
                            [](std::size_t n) { return ::operator new(n, Wide, std::nothrow); },
                            [](void* p) { ::operator delete(p, Wide, std::nothrow); },
                            false},
                    FormRow{{"AlignedNothrowArray"},
                            [](std::size_t n) { return ::operator new[](n, Wide, std::nothrow); },
                            [](void* p) { ::operator delete[](p, Wide, std::nothrow); },
                            false}),
    support::rowName);

TEST(AlignedMemory, IsAligned) {
  for (const std::size_t alignment : {32U, 64U, 4096U}) {
    const std::align_val_t value{alignment};
    void* const block = ::operator new(1, value);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignment, 0U);
    ::operator delete(block, value);
  }
}

}  // namespace
