// USBLPConnector: the system calls on the device file of usblp.

#include "transport/usblp_connector.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/select.h>
#include <unistd.h>

#include "util/clock.h"

namespace {

/// A prefix with this many characters is too long.
constexpr std::size_t PrefixLimit = 63;
/// The largest accepted number of a device file.
constexpr int LargestNumber = 16;

}  // namespace

USBLPConnector::USBLPConnector(const char* prefix, int number) {
  setType(HC_LOC_USBLP);
  if (prefix == nullptr || std::strlen(prefix) >= PrefixLimit || number < 0 ||
      number > LargestNumber) {
    return;
  }
  const int length =
      std::snprintf(m_DevicePath.data(), m_DevicePath.size(), "%s%d", prefix, number);
  if (length < 0 || static_cast<std::size_t>(length) >= m_DevicePath.size()) {
    m_DevicePath.fill('\0');
  }
}

USBLPConnector::~USBLPConnector() {
  if (m_Fd > -1) {
    USBLPConnector::close();
  }
}

int USBLPConnector::open() {
  if (m_Fd > -1) {
    close();
  }
  m_Fd = ::open(m_DevicePath.data(), O_RDWR | O_EXCL | O_NOCTTY | O_NONBLOCK);
  // The result is 0 if standard input was closed before. This counts as a failure.
  if (m_Fd == 0) {
    ::close(m_Fd);
    m_Fd = -1;
  }
  return setStatus(m_Fd < 1 ? IO_FAILED : IO_OK);
}

int USBLPConnector::close() {
  const PosixMutex::Lock writeLock(m_WriteMutex);
  const PosixMutex::Lock readLock(m_ReadMutex);
  if (m_Fd > -1 && ::close(m_Fd) == 0) {
    m_Fd = -1;
    return setStatus(IO_OK);
  }
  return setStatus(IO_FAILED);
}

int USBLPConnector::read(unsigned char* buf, int len) {
  const PosixMutex::Lock lock(m_ReadMutex);
  const ssize_t count = ::read(m_Fd, buf, static_cast<std::size_t>(std::max(len, 0)));
  if (count == -1) {
    setStatusFromErrno();
  }
  return static_cast<int>(count);
}

int USBLPConnector::peek(unsigned char* buf, int len) {
  std::fill_n(buf, std::max(len, 0), static_cast<unsigned char>(0));
  setStatus(IO_BAD_DEVICE);
  return 0;
}

int USBLPConnector::write(unsigned char* buf, int len) {
  const PosixMutex::Lock lock(m_WriteMutex);
  const ssize_t count = ::write(m_Fd, buf, static_cast<std::size_t>(std::max(len, 0)));
  if (count == -1) {
    setStatusFromErrno();
  } else if (count == 0) {
    setStatus(IO_NOTHING_WRITTEN);
  } else {
    setStatus(count == len ? IO_OK : IO_SHORT_WRITE);
  }
  return static_cast<int>(count);
}

HCIOStatus USBLPConnector::isReadReady(unsigned int timeout) {
  return setStatus(probe(Direction::Read, timeout));
}

HCIOStatus USBLPConnector::isWriteReady(unsigned int timeout) {
  return setStatus(probe(Direction::Write, timeout));
}

HCIOStatus USBLPConnector::probe(Direction direction, unsigned int timeout) const {
  // An `fd_set` has room for the descriptors 0 to FD_SETSIZE - 1. For a larger descriptor FD_SET
  // would write past the end of the set.
  if (m_Fd < 0 || m_Fd >= FD_SETSIZE) {
    return IO_FAILED;
  }
  fd_set set;
  FD_ZERO(&set);
  FD_SET(m_Fd, &set);
  timeval limit{.tv_sec = 0, .tv_usec = static_cast<suseconds_t>(timeout)};
  const bool reading = direction == Direction::Read;
  const int ready =
      ::select(m_Fd + 1, reading ? &set : nullptr, reading ? nullptr : &set, nullptr, &limit);
  if (ready > 0) {
    return reading ? IO_READ_READY : IO_WRITE_READY;
  }
  if (ready == 0) {
    return IO_TIMEOUT;
  }
  // Every further probe may fail immediately too, and the caller may read again until its deadline.
  // The pause keeps the loop of the caller from using the whole processor.
  util::pauseBriefly();
  return IO_FAILED;
}

void USBLPConnector::setStatusFromErrno() {
  switch (errno) {
    case EAGAIN:
      setStatus(IO_TRY_AGAIN);
      break;
    case EBADF:
      setStatus(IO_BAD_DEVICE);
      break;
    case EINTR:
      setStatus(IO_INTERRUPTED);
      break;
    default:
      break;
  }
}
