#pragma once

/// The channel to the printer, as the messaging code sees it: named by a text path, opened for one
/// exchange and closed again.
class CommTransport {
 public:
  /// Opens the channel that `path` names; returns 0, or -1 on failure.
  virtual int CT_Open(const char* path) = 0;

  /// Closes the channel; returns 0, or -1 when it was not open.
  virtual int CT_Close() = 0;

  /// Reads up to `len` bytes into `buf`, waiting a bounded time; returns the count, which is short
  /// (0 included) when the printer fell silent.
  virtual long CT_Read(unsigned char* buf, unsigned long len) = 0;

  /// Writes `len` bytes from `buf`; returns the count taken, which may be short, or -1. `timeout`
  /// is accepted and not used.
  virtual long CT_Write(unsigned char* buf, unsigned long len, unsigned long timeout) = 0;

  /// Accepts a callback and never calls it.
  virtual void CT_RegisterReadCallback(int (*callback)(unsigned char*, int)) = 0;

 protected:
  // Not for deletion through this interface.
  ~CommTransport() = default;
};
