#pragma once

#include <array>

#include "transport/hcio_connector.h"
#include "transport/posix_mutex.h"

/// A printer behind the kernel's USB printer class driver, `usblp`: a character device that is
/// opened non-blocking, so that waiting is done by the probes alone. Their time limits count in
/// microseconds.
class USBLPConnector : public HCIOConnector {
 public:
  /// Names the device file: `prefix` followed by `number` in decimal. A null prefix, one of 63
  /// characters or more, a number outside 0 to 16, or a name of 64 characters or more leaves the
  /// name empty, and `open()` then fails.
  USBLPConnector(const char* prefix, int number);
  USBLPConnector(const USBLPConnector&) = delete;
  USBLPConnector& operator=(const USBLPConnector&) = delete;
  ~USBLPConnector() override;

  /// Opens the device file for reading and writing. Returns 0, or 1 on failure; a descriptor of 0
  /// (standard input was closed) counts as failure.
  int open() override;

  /// Closes the device file; returns 0, or 1 when it was not open or the close failed, in which
  /// case the descriptor is kept.
  int close() override;

  /// Returns what `read` returns; on -1 the status is `IO_TRY_AGAIN` for EAGAIN, `IO_BAD_DEVICE`
  /// for EBADF and `IO_INTERRUPTED` for EINTR, else the last one.
  int read(unsigned char* buf, int len) override;

  /// Not supported by usblp: zeroes `buf`, sets `IO_BAD_DEVICE`, returns 0.
  int peek(unsigned char* buf, int len) override;

  /// Returns what `write` returns. The status is `IO_OK` for a whole write, `IO_SHORT_WRITE`,
  /// `IO_NOTHING_WRITTEN` for 0, or as for `read` on -1.
  int write(unsigned char* buf, int len) override;

  /// `IO_READ_READY`, `IO_TIMEOUT` after `timeout` microseconds, or `IO_FAILED`.
  HCIOStatus isReadReady(unsigned int timeout) override;

  /// `IO_WRITE_READY`, `IO_TIMEOUT` after `timeout` microseconds, or `IO_FAILED`.
  HCIOStatus isWriteReady(unsigned int timeout) override;

 private:
  enum class Direction { Read, Write };

  HCIOStatus probe(Direction direction, unsigned int timeout);
  void setStatusFromErrno();

  std::array<char, 64> m_DevicePath{};
  int m_Fd = -1;
  PosixMutex m_WriteMutex ZVK_ACQUIRED_BEFORE(m_ReadMutex);
  PosixMutex m_ReadMutex;
};
