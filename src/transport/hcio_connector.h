#pragma once

#include <atomic>

/// The outcome of a connector's last operation. A probe is a call of `isReadReady` or
/// `isWriteReady`.
enum HCIOStatus : int {
  IO_OK = 0,                ///< open, close or a complete write succeeded
  IO_FAILED = 1,            ///< open, close, a probe or a bulk transfer failed
  IO_BAD_DEVICE = 16,       ///< not open (EBADF), a stalled endpoint, or peeking at usblp
  IO_INTERRUPTED = 17,      ///< EINTR
  IO_READ_READY = 18,       ///< a probe found input
  IO_WRITE_READY = 19,      ///< a probe found the device writable
  IO_TIMEOUT = 33,          ///< a probe found nothing within its time limit
  IO_TRY_AGAIN = 34,        ///< EAGAIN, or a bulk write that timed out
  IO_SHORT_WRITE = 35,      ///< some but not all bytes were written
  IO_NOTHING_WRITTEN = 36,  ///< a write returned 0
};

/// The kinds of connector. The value 1 is unused.
enum HCDeviceLocTypes : int {
  HC_LOC_NONE = 0,
  HC_LOC_USBLP = 2,
  HC_LOC_LIBUSB = 3,
};

/// One kind of connection to a printer. A new connector is not open yet. The destructor closes an
/// open connector. A second call of `close()` is allowed and returns a failure. A connector prints
/// nothing. The result of an operation and `getLastError()` report a failure.
class HCIOConnector {
 public:
  HCIOConnector() = default;
  HCIOConnector(const HCIOConnector&) = delete;
  HCIOConnector& operator=(const HCIOConnector&) = delete;
  virtual ~HCIOConnector() = default;

  /// Opens the connection. Returns 0 on success, 1 on failure.
  virtual int open() = 0;

  /// Closes the connection. Returns 0 on success, 1 if it was not open or the close failed.
  virtual int close() = 0;

  /// Reads up to `len` bytes into `buf`. Returns the count of bytes read, or -1 on failure.
  virtual int read(unsigned char* buf, int len) = 0;

  /// Returns 0, because no connector can return input without removing it.
  virtual int peek(unsigned char* buf, int len) = 0;

  /// Writes `len` bytes from `buf`. Returns the count written, which may be less than `len`, or -1
  /// on failure.
  virtual int write(unsigned char* buf, int len) = 0;

  /// Waits at most `timeout` for input. The unit of `timeout` is microseconds for usblp and
  /// milliseconds for libusb.
  virtual HCIOStatus isReadReady(unsigned int timeout) = 0;

  /// Waits at most `timeout` until the device accepts bytes. The unit of `timeout` is that of
  /// `isReadReady`.
  virtual HCIOStatus isWriteReady(unsigned int timeout) = 0;

  /// Returns the `HCIOStatus` of the last operation that set a status, or `IO_OK` if no operation
  /// has set one.
  int getLastError() const { return m_LastError; }

  /// Returns the kind of the connector.
  HCDeviceLocTypes getType() const { return m_Type; }
  /// Sets the kind. The constructor of each connector calls this.
  void setType(HCDeviceLocTypes type) { m_Type = type; }

 protected:
  /// Stores `status` for `getLastError()` and returns it.
  HCIOStatus setStatus(HCIOStatus status) {
    m_LastError = status;
    return status;
  }

 private:
  /// Atomic, because a reading and a writing thread may both set it. The later value replaces the
  /// earlier value.
  std::atomic<int> m_LastError = IO_OK;
  HCDeviceLocTypes m_Type = HC_LOC_NONE;
};
