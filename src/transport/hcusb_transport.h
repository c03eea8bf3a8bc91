#pragma once

#include <memory>
#include <span>

#include "transport/comm_transport.h"
#include "transport/hcio_connector.h"

/// The one transport of the process, counted by its users: each takes it with `GetInstance` and
/// gives it back with `DestroyInstance`. Not guarded: one thread only.
class HCUSBTransport : public CommTransport {
 public:
  HCUSBTransport(const HCUSBTransport&) = delete;
  HCUSBTransport& operator=(const HCUSBTransport&) = delete;
  virtual ~HCUSBTransport() = default;

  /// Returns the instance, made by the first call, and counts one more user. The caller gives it
  /// back with `DestroyInstance`, never with `delete`.
  static HCUSBTransport* GetInstance();

  /// Counts one user less; the last one deletes the instance and says so on standard error.
  static void DestroyInstance();

  /// Chooses and opens a connector, replacing an earlier one. A path that contains "/dev/usb" is
  /// the usblp device whose number follows "usblp" or "/lp", always opened as "/dev/usb/lp" and the
  /// number; any other is a libusb bus and device number with a colon between. Returns 0, or -1;
  /// a connector whose open failed stays in place and fails what is asked of it.
  int CT_Open(const char* path) override;

  /// Closes the connector and keeps it; -1 when there is none or it was not open.
  int CT_Close() override;

  /// Reads until `len` bytes came, about 5 seconds brought none, or a probe failed; returns the
  /// count, 0 without a connector.
  long CT_Read(unsigned char* buf, unsigned long len) override;

  /// Returns the connector's count, or -1 without a connector.
  long CT_Write(unsigned char* buf, unsigned long len, unsigned long timeout) override;

  void CT_RegisterReadCallback(int (*callback)(unsigned char*, int)) override;

  /// Writes a request with `CT_Write`, and when the kernel's driver took only a part of it, goes on
  /// with the rest for at most 5 seconds: the driver takes no more than a few kilobytes at a time,
  /// and must not leave a printer with half a packet. Over libusb, whose write has its own loop, a
  /// short count is the end. Returns the count taken, or -1.
  long writeRequest(std::span<unsigned char> request);

 private:
  HCUSBTransport() = default;

  int openUsblp(int number);
  int openLibUsb(int bus, int device);

  static std::unique_ptr<HCUSBTransport> m_Instance;
  static int m_RefCount;

  std::unique_ptr<HCIOConnector> m_Connector;
};
