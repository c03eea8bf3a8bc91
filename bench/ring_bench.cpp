// Compares the program's byte queue with Boost's ring buffer under a mutex, and with the lock calls
// of the byte queue alone.

#include <algorithm>
#include <boost/circular_buffer.hpp>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <vector>

#include "contest.h"
#include "documents.h"
#include "growth.h"
#include "transport/circular_buffer.h"
#include "transport/posix_mutex.h"

namespace {

using Bytes = std::vector<unsigned char>;

/// The program's capacity.
constexpr unsigned long Capacity = 65536;
/// A capacity for measuring growth.
constexpr unsigned long LargeCapacity = 1 << 20;

/// Boost's ring buffer with the interface of the program's byte queue: an operation transfers all
/// bytes or none.
class BoostQueue {
 public:
  explicit BoostQueue(unsigned long capacity) : m_Bytes(capacity) {}

  bool writeBytes(const unsigned char* source, unsigned long count) {
    const std::lock_guard lock(m_Mutex);
    if (m_Bytes.reserve() < count) {
      return false;
    }
    m_Bytes.insert(m_Bytes.end(), source, source + count);
    return true;
  }

  bool readBytes(unsigned char* destination, unsigned long count) {
    const std::lock_guard lock(m_Mutex);
    if (m_Bytes.size() < count) {
      return false;
    }
    const auto [first, firstSize] = m_Bytes.array_one();
    const unsigned long fromFirst = std::min(count, firstSize);
    std::copy_n(first, fromFirst, destination);
    std::copy_n(m_Bytes.array_two().first, count - fromFirst, destination + fromFirst);
    m_Bytes.erase_begin(count);
    return true;
  }

 private:
  boost::circular_buffer<unsigned char> m_Bytes;
  std::mutex m_Mutex;
};

/// Makes the same lock calls as the program's byte queue and does nothing else. In the byte queue,
/// a write calls getAvailableSpace, which calls isEmpty. A read calls getAvailableBytes, which
/// calls getAvailableSpace and so isEmpty. Each of these operations locks the mutex.
class LocksAlone {
 public:
  explicit LocksAlone(unsigned long /*capacity*/) {}

  bool writeBytes(const unsigned char* /*source*/, unsigned long /*count*/) {
    const PosixMutex::Lock write(m_Mutex);
    const PosixMutex::Lock space(m_Mutex);
    const PosixMutex::Lock empty(m_Mutex);
    return true;
  }

  bool readBytes(unsigned char* /*destination*/, unsigned long /*count*/) {
    const PosixMutex::Lock read(m_Mutex);
    const PosixMutex::Lock bytes(m_Mutex);
    const PosixMutex::Lock space(m_Mutex);
    const PosixMutex::Lock empty(m_Mutex);
    return true;
  }

 private:
  PosixMutex m_Mutex{PosixMutex::Kind::ErrorChecking};
};

/// Returns the task of writing and reading `count` bytes.
template <typename Queue, unsigned long Size = Capacity>
auto transferOf(std::size_t count) {
  return [queue = std::make_unique<Queue>(Size), source = bench::randomBytes(count),
          destination = Bytes(count)]() mutable {
    if (!queue->writeBytes(source.data(), source.size()) ||
        !queue->readBytes(destination.data(), destination.size())) {
      std::abort();
    }
  };
}

[[maybe_unused]] const bool AreAdded = [] {
  const bench::Sizes sizes = {1, 64, 512, 4096};
  bench::contest("ring buffer", bench::Ours, sizes, transferOf<CircularBuffer>);
  bench::contest("ring buffer", "Boost and a mutex", sizes, transferOf<BoostQueue>);
  bench::contest("ring buffer", "lock calls alone", sizes, transferOf<LocksAlone>);
  // The smallest size is so large that the C library copies all sizes in the same way.
  bench::growth("ring buffer, bytes at a time", 16 << 10,
                transferOf<CircularBuffer, LargeCapacity>);
  return true;
}();

}  // namespace
