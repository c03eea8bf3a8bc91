#pragma once

#include <cstdlib>
#include <memory>

#include "transport/posix_mutex.h"

/// First-in first-out byte queue of fixed capacity whose writes and reads are all or nothing. It
/// may be filled by one thread and drained by another: every operation takes the buffer's lock.
///
/// The storage has one slot more than the capacity. That slot stays unused, so that "empty" (equal
/// positions) and "full" (one slot between them) are told apart without a counter.
class CircularBuffer {
 public:
  /// Makes an empty queue for `capacity` bytes. When the storage cannot be had, the queue holds
  /// nothing and has no space.
  explicit CircularBuffer(unsigned long capacity);
  ~CircularBuffer() = default;
  CircularBuffer(const CircularBuffer&) = delete;
  CircularBuffer& operator=(const CircularBuffer&) = delete;

  /// Discards all stored bytes.
  void flush();

  /// True when not one byte more fits.
  bool isFull();

  /// True when nothing is stored.
  bool isEmpty();

  /// Returns how many more bytes fit.
  unsigned long getAvailableSpace();

  /// Returns how many bytes are stored.
  unsigned long getAvailableBytes();

  /// Stores `src[0..count-1]` and returns true, or stores nothing and returns false when they do
  /// not all fit.
  bool writeBytes(const unsigned char* src, unsigned long count);

  /// Takes `count` bytes, oldest first, into `dst` and returns true, or takes nothing and returns
  /// false when fewer are stored.
  bool readBytes(unsigned char* dst, unsigned long count);

 private:
  struct Free {
    void operator()(unsigned char* storage) const { std::free(storage); }
  };

  /// Slots from `position` to the end of the storage.
  unsigned long slotsToEnd(unsigned long position) const { return m_Capacity - position + 1; }
  /// The position `count` slots on, `count` being at most `slotsToEnd(position)`.
  unsigned long advanced(unsigned long position, unsigned long count) const;

  std::unique_ptr<unsigned char, Free> m_Buffer;
  unsigned long m_Capacity;
  PosixMutex m_Mutex{PosixMutex::Kind::ErrorChecking};
  unsigned long m_ReadPos ZVK_GUARDED_BY(m_Mutex) = 0;
  unsigned long m_WritePos ZVK_GUARDED_BY(m_Mutex) = 0;
};
