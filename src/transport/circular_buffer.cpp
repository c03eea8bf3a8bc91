// The byte queue of the libusb connector.

#include "transport/circular_buffer.h"

#include <algorithm>
#include <limits>

namespace {

/// Returns an array for `capacity` bytes and the slot that is always unused, or null if memory runs
/// out.
unsigned char* allocateSlots(unsigned long capacity) {
  if (capacity == std::numeric_limits<unsigned long>::max()) {
    return nullptr;
  }
  return static_cast<unsigned char*>(std::malloc(capacity + 1));
}

}  // namespace

CircularBuffer::CircularBuffer(unsigned long capacity)
    : m_Buffer(allocateSlots(capacity)), m_Capacity(capacity) {}

unsigned long CircularBuffer::advanced(unsigned long position, unsigned long count) const {
  return count == slotsToEnd(position) ? 0 : position + count;
}

void CircularBuffer::flush() {
  const PosixMutex::Lock lock(m_Mutex);
  m_ReadPos = 0;
  m_WritePos = 0;
}

bool CircularBuffer::isFull() {
  const PosixMutex::Lock lock(m_Mutex);
  return advanced(m_WritePos, 1) == m_ReadPos;
}

bool CircularBuffer::isEmpty() {
  const PosixMutex::Lock lock(m_Mutex);
  return m_ReadPos == m_WritePos;
}

unsigned long CircularBuffer::getAvailableSpace() {
  const PosixMutex::Lock lock(m_Mutex);
  if (!m_Buffer) {
    return 0;
  }
  if (isEmpty()) {
    return m_Capacity;
  }
  if (m_WritePos < m_ReadPos) {
    return m_ReadPos - m_WritePos - 1;
  }
  return m_Capacity - m_WritePos + m_ReadPos;
}

unsigned long CircularBuffer::getAvailableBytes() {
  const PosixMutex::Lock lock(m_Mutex);
  if (!m_Buffer) {
    return 0;
  }
  return m_Capacity - getAvailableSpace();
}

bool CircularBuffer::writeBytes(const unsigned char* src, unsigned long count) {
  const PosixMutex::Lock lock(m_Mutex);
  if (getAvailableSpace() < count) {
    return false;
  }
  // The bytes are copied in up to two pieces: one up to the end of the storage, and the rest at its
  // start.
  const unsigned long toEnd = std::min(count, slotsToEnd(m_WritePos));
  std::copy_n(src, toEnd, m_Buffer.get() + m_WritePos);
  std::copy_n(src + toEnd, count - toEnd, m_Buffer.get());
  m_WritePos = advanced(m_WritePos, toEnd);
  m_WritePos += count - toEnd;
  return true;
}

bool CircularBuffer::readBytes(unsigned char* dst, unsigned long count) {
  const PosixMutex::Lock lock(m_Mutex);
  if (getAvailableBytes() < count) {
    return false;
  }
  const unsigned long toEnd = std::min(count, slotsToEnd(m_ReadPos));
  std::copy_n(m_Buffer.get() + m_ReadPos, toEnd, dst);
  std::copy_n(m_Buffer.get(), count - toEnd, dst + toEnd);
  m_ReadPos = advanced(m_ReadPos, toEnd);
  m_ReadPos += count - toEnd;
  return true;
}
