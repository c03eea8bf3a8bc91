#pragma once

/// The interface through which the code in src/npa uses the connection to the printer. The caller
/// names the printer by a path. It opens the connection for each attempt and closes it afterwards:
///
///     transport.CT_Open("/dev/usb/lp0");
///     transport.CT_Write(request, requestSize, 0);
///     const long count = transport.CT_Read(reply, replySize);
///     transport.CT_Close();
class CommTransport {
 public:
  /// Opens the connection to the printer at `path`. Returns 0, or -1 on failure.
  virtual int CT_Open(const char* path) = 0;

  /// Closes the connection. Returns 0, or -1 if it was not open.
  virtual int CT_Close() = 0;

  /// Reads up to `len` bytes into `buf` and waits for the bytes for a limited time. Returns the
  /// count of bytes read, which is less than `len`, and possibly 0, if the printer stops sending.
  virtual long CT_Read(unsigned char* buf, unsigned long len) = 0;

  /// Writes `len` bytes from `buf`. Returns the count written, which may be less than `len`, or -1.
  /// `timeout` is ignored.
  virtual long CT_Write(unsigned char* buf, unsigned long len, unsigned long timeout) = 0;

  /// Ignores `callback`: no transport reads in the background.
  virtual void CT_RegisterReadCallback(int (*callback)(unsigned char*, int)) = 0;

 protected:
  // Protected, because no code deletes a transport through this interface.
  ~CommTransport() = default;
};
