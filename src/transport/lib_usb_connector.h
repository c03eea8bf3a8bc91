#pragma once

#include <memory>

#include "transport/circular_buffer.h"
#include "transport/hcio_connector.h"
#include "transport/posix_mutex.h"

struct usb_dev_handle;
struct usb_device;
struct usb_interface_descriptor;

/// A printer reached through libusb 0.1. The connector finds the device, claims its first interface
/// of one class and transfers bytes over the bulk endpoints of that interface (USB Device Class
/// Definition for Printing Devices). The bytes of a USB packet wait in a ring buffer of 64 KiB
/// until the caller reads them.
///
///     LibUsbConnector printer(7);      // interfaces of the printer class
///     if (printer.open(1, 4) == 0) {   // bus 1, device 4
///       printer.write(request, size);
///     }
class LibUsbConnector : public HCIOConnector {
 public:
  /// `interfaceClass` is the USB class code of the interface to claim; 7 is a printer.
  explicit LibUsbConnector(unsigned char interfaceClass);
  LibUsbConnector(const LibUsbConnector&) = delete;
  LibUsbConnector& operator=(const LibUsbConnector&) = delete;
  ~LibUsbConnector() override;

  /// Fails, because libusb needs the device's address: sets `IO_FAILED` and returns 1.
  int open() override;

  /// Opens device `device` on bus `bus` (the numbers that lsusb prints) and claims its interface.
  /// Returns 0 and sets `IO_OK`. Returns 1 and sets `IO_FAILED` if there is no such device or its
  /// interface cannot be claimed.
  int open(int bus, int device);

  /// Opens `dev`, selects the configuration at `configIndex` in the device's descriptor array and
  /// claims the interface of `alt`. Returns true if the interface is claimed. Otherwise closes the
  /// device and returns false.
  bool claim(struct usb_device* dev, int configIndex, struct usb_interface_descriptor* alt);

  /// Releases the interface and closes the device. Returns 0, or 1 if it was not open.
  int close() override;

  /// Moves `len` bytes from the ring to `buf`. If the ring has fewer bytes, first polls the printer
  /// for more. Returns the count of bytes, which is less than `len`, and possibly 0, if the printer
  /// stops sending.
  int read(unsigned char* buf, int len) override;

  /// Does nothing and returns 0.
  int peek(unsigned char* buf, int len) override;

  /// Writes in chunks of the IN endpoint's USB packet size, with a timeout of 5 s for each chunk.
  /// Returns the count written. The count is less than `len` after a stall (`IO_BAD_DEVICE`),
  /// another failure (`IO_FAILED`), or 24 retries of chunks that the printer did not accept
  /// (`IO_TRY_AGAIN`). A closed connector returns 0 and sets no status.
  int write(unsigned char* buf, int len) override;

  /// Reads one USB packet into the ring and waits for the packet at most `timeout` milliseconds.
  /// Returns `IO_READ_READY`, `IO_TIMEOUT` if no byte arrived, or `IO_FAILED` if the read failed or
  /// the packet does not fit into the ring.
  HCIOStatus isReadReady(unsigned int timeout) override;

  /// Always returns `IO_WRITE_READY` at once, even if the connector is closed, because the bulk
  /// write waits.
  HCIOStatus isWriteReady(unsigned int timeout) override;

 private:
  struct CloseHandle {
    void operator()(usb_dev_handle* handle) const;
  };

  /// Claims the first interface of `dev` that has the wanted class. Returns the first alternate
  /// setting of the interface, or null if no interface can be claimed.
  struct usb_interface_descriptor* claimFirstInterface(struct usb_device* dev);
  /// Stores the bulk endpoints of the claimed interface and the USB packet size of the IN endpoint.
  void findEndpoints(const struct usb_interface_descriptor& alt);
  /// Returns the timeout to pass to the bulk read. `timeout` is in milliseconds. If bulk reads
  /// count in seconds, `timeout` is taken as microseconds and converted to at least 1 s.
  int waitLimit(unsigned int timeout) const;

  bool m_TimeoutInSeconds;  ///< true if bulk reads count their timeout in seconds
  CircularBuffer m_RxBuffer;
  unsigned int m_InterfaceClass;
  int m_Interface = 0;
  int m_InEndpoint = 0;
  int m_OutEndpoint = 0;
  int m_InMaxPacket = 32;  ///< bytes; also the chunk size of a write
  std::unique_ptr<usb_dev_handle, CloseHandle> m_Handle;
  PosixMutex m_WriteMutex ZVK_ACQUIRED_BEFORE(m_ReadMutex);
  PosixMutex m_ReadMutex;
};
