#pragma once

#include <memory>

#include "transport/circular_buffer.h"
#include "transport/hcio_connector.h"
#include "transport/posix_mutex.h"

struct usb_dev_handle;
struct usb_device;
struct usb_interface_descriptor;

/// A printer reached through libusb 0.1: finds the device, claims its first interface of one class
/// and moves bytes over that interface's bulk endpoints (USB Device Class Definition for Printing
/// Devices). Bytes that arrived and were not asked for yet wait in a ring.
class LibUsbConnector : public HCIOConnector {
 public:
  /// `interfaceClass` is the USB class code of the interface to claim; 7 is a printer.
  explicit LibUsbConnector(unsigned char interfaceClass);
  LibUsbConnector(const LibUsbConnector&) = delete;
  LibUsbConnector& operator=(const LibUsbConnector&) = delete;
  ~LibUsbConnector() override;

  /// A libusb device cannot be opened without its address: sets `IO_FAILED`, returns 1.
  int open() override;

  /// Opens device `device` on bus `bus` (the numbers of lsusb) and claims its interface. Returns 0
  /// and sets `IO_OK`, or returns 1 and sets `IO_FAILED` when it is not there or cannot be claimed.
  int open(int bus, int device);

  /// Opens `dev`, selects its configuration number `configIndex` of the descriptor array and claims
  /// the interface of `alt`. Returns whether the interface is claimed; if not, nothing stays open.
  bool claim(struct usb_device* dev, int configIndex, struct usb_interface_descriptor* alt);

  /// Releases the interface and closes the device; returns 0, or 1 when it was not open.
  int close() override;

  /// Takes `len` bytes from the ring, polling the printer for what is missing; returns the count,
  /// which is short (0 included) when the printer stops sending.
  int read(unsigned char* buf, int len) override;

  /// Does nothing and returns 0.
  int peek(unsigned char* buf, int len) override;

  /// Writes in chunks of the IN endpoint's packet size, 5 seconds each. Returns the count taken,
  /// which is short after a stall (`IO_BAD_DEVICE`), another failure (`IO_FAILED`), or after 24
  /// retries of chunks that were not taken (`IO_TRY_AGAIN`); 0 and no status when closed.
  int write(unsigned char* buf, int len) override;

  /// Reads one packet into the ring, waiting at most `timeout` milliseconds. `IO_READ_READY`,
  /// `IO_TIMEOUT` when nothing came, or `IO_FAILED`, also when the packet did not fit the ring.
  HCIOStatus isReadReady(unsigned int timeout) override;

  /// Answers `IO_WRITE_READY` at once, also when closed: the bulk write does its own waiting.
  HCIOStatus isWriteReady(unsigned int timeout) override;

 private:
  struct CloseHandle {
    void operator()(usb_dev_handle* handle) const;
  };

  /// The first claimable interface of `dev`: its alternate setting, or null.
  struct usb_interface_descriptor* claimFirstInterface(struct usb_device* dev);
  void findEndpoints(const struct usb_interface_descriptor& alt);
  int waitLimit(unsigned int timeout) const;

  bool m_TimeoutInSeconds;
  CircularBuffer m_RxBuffer;
  unsigned int m_InterfaceClass;
  int m_Interface = 0;
  int m_InEndpoint = 0;
  int m_OutEndpoint = 0;
  int m_InMaxPacket = 32;
  std::unique_ptr<usb_dev_handle, CloseHandle> m_Handle;
  PosixMutex m_WriteMutex ZVK_ACQUIRED_BEFORE(m_ReadMutex);
  PosixMutex m_ReadMutex;
};
