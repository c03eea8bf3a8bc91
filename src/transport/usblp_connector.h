#pragma once

#include <array>

#include "transport/hcio_connector.h"
#include "transport/posix_mutex.h"

/// A printer reached through `usblp`, the kernel's driver for the USB printer class. The connector
/// opens the character device in non-blocking mode, so only the probes wait. The timeouts of the
/// probes are in microseconds.
///
///     USBLPConnector printer("/dev/usb/lp", 0);
///     if (printer.open() == 0 && printer.isReadReady(1000) == IO_READ_READY) {
///       printer.read(buffer, size);
///     }
class USBLPConnector : public HCIOConnector {
 public:
  /// Sets the path of the device file: `prefix`, then `number` in decimal. The path stays empty,
  /// and `open()` fails, if `prefix` is null or has 63 characters or more, if `number` is not 0 to
  /// 16, or if the path has 64 characters or more.
  USBLPConnector(const char* prefix, int number);
  USBLPConnector(const USBLPConnector&) = delete;
  USBLPConnector& operator=(const USBLPConnector&) = delete;
  ~USBLPConnector() override;

  /// Opens the device file for reading and writing. Returns 0, or 1 on failure. If the device file
  /// gets descriptor 0, because standard input was closed, this is also a failure.
  int open() override;

  /// Closes the device file. Returns 0, or 1 if it was not open or the close failed. After a failed
  /// close the connector keeps the descriptor.
  int close() override;

  /// Returns the result of the system call `read`. If the result is -1, sets the status to
  /// `IO_TRY_AGAIN` for EAGAIN, `IO_BAD_DEVICE` for EBADF, or `IO_INTERRUPTED` for EINTR. After
  /// success and after any other error the status stays unchanged.
  int read(unsigned char* buf, int len) override;

  /// Not supported by usblp: fills `buf` with zeros, sets `IO_BAD_DEVICE` and returns 0.
  int peek(unsigned char* buf, int len) override;

  /// Returns the result of the system call `write`. Sets the status to `IO_OK` after a complete
  /// write, `IO_SHORT_WRITE` after a short one and `IO_NOTHING_WRITTEN` after 0 bytes. If the
  /// result is -1, sets the status as the operation `read` does.
  int write(unsigned char* buf, int len) override;

  /// Returns `IO_READ_READY`, `IO_TIMEOUT` after `timeout` microseconds, or `IO_FAILED`.
  HCIOStatus isReadReady(unsigned int timeout) override;

  /// Returns `IO_WRITE_READY`, `IO_TIMEOUT` after `timeout` microseconds, or `IO_FAILED`.
  HCIOStatus isWriteReady(unsigned int timeout) override;

 private:
  enum class Direction { Read, Write };

  /// Waits at most `timeout` microseconds with `select`. Does not set the status.
  HCIOStatus probe(Direction direction, unsigned int timeout) const;
  /// Sets the status if errno is EAGAIN, EBADF or EINTR. Otherwise leaves the status unchanged.
  void setStatusFromErrno();

  std::array<char, 64> m_DevicePath{};  ///< a C string, empty if the arguments are invalid
  int m_Fd = -1;                        ///< -1 if closed
  PosixMutex m_WriteMutex ZVK_ACQUIRED_BEFORE(m_ReadMutex);
  PosixMutex m_ReadMutex;
};
