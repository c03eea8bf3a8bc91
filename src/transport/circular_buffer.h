#pragma once

#include <cstdlib>
#include <memory>

#include "transport/posix_mutex.h"

/// A first-in, first-out byte queue of fixed capacity. A write or a read transfers all requested
/// bytes or none. Every operation locks the queue, so one thread may write while another thread
/// reads.
///
///     CircularBuffer queue(65536);
///     queue.writeBytes(packet, 64);  // false, with nothing stored, if 64 bytes do not fit
///     queue.readBytes(header, 3);    // the oldest 3 bytes; false if fewer are stored
///
/// The storage has one slot more than the capacity, and at least one slot is always unused. So the
/// read position and the write position are equal only if the queue is empty.
class CircularBuffer {
 public:
  /// Creates an empty queue for `capacity` bytes. If memory runs out, the queue has no space and
  /// every write of at least one byte fails.
  explicit CircularBuffer(unsigned long capacity);
  ~CircularBuffer() = default;
  CircularBuffer(const CircularBuffer&) = delete;
  CircularBuffer& operator=(const CircularBuffer&) = delete;

  /// Discards all stored bytes.
  void flush();

  /// Returns true if `capacity` bytes are stored.
  bool isFull();

  /// Returns true if nothing is stored.
  bool isEmpty();

  /// Returns how many more bytes fit.
  unsigned long getAvailableSpace();

  /// Returns how many bytes are stored.
  unsigned long getAvailableBytes();

  /// Stores `src[0..count-1]` and returns true. Stores nothing and returns false if the free space
  /// is less than `count` bytes.
  bool writeBytes(const unsigned char* src, unsigned long count);

  /// Moves the oldest `count` bytes to `dst` and returns true. Moves nothing and returns false if
  /// fewer than `count` bytes are stored.
  bool readBytes(unsigned char* dst, unsigned long count);

 private:
  struct Free {
    void operator()(unsigned char* storage) const { std::free(storage); }
  };

  /// Returns the count of slots from `position` to the end of the storage.
  unsigned long slotsToEnd(unsigned long position) const { return m_Capacity - position + 1; }
  /// Returns the position `count` slots after `position`. `count` is at most
  /// `slotsToEnd(position)`. If `count` is equal to `slotsToEnd(position)`, the result is 0.
  unsigned long advanced(unsigned long position, unsigned long count) const;

  std::unique_ptr<unsigned char, Free> m_Buffer;
  unsigned long m_Capacity;
  /// Error-checking, because the operations call each other while they hold the lock (see
  /// `PosixMutex::Lock`).
  PosixMutex m_Mutex{PosixMutex::Kind::ErrorChecking};
  unsigned long m_ReadPos ZVK_GUARDED_BY(m_Mutex) = 0;
  unsigned long m_WritePos ZVK_GUARDED_BY(m_Mutex) = 0;
};
