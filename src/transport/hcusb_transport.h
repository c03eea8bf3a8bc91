#pragma once

#include <functional>
#include <memory>
#include <span>
#include <utility>

#include "transport/comm_transport.h"
#include "transport/hcio_connector.h"

/// The only transport of the process. It counts its users and is not thread-safe. Each user calls
/// `GetInstance` first and `DestroyInstance` at the end:
///
///     HCUSBTransport* transport = HCUSBTransport::GetInstance();
///     if (transport->CT_Open("/dev/usb/lp0") == 0) { ... }
///     HCUSBTransport::DestroyInstance();
class HCUSBTransport : public CommTransport {
 public:
  HCUSBTransport(const HCUSBTransport&) = delete;
  HCUSBTransport& operator=(const HCUSBTransport&) = delete;
  virtual ~HCUSBTransport() = default;

  /// Returns the instance and adds one to the count of users. The first call creates the instance.
  /// The caller releases the instance with `DestroyInstance` and must not delete it.
  static HCUSBTransport* GetInstance();

  /// Subtracts one from the count of users. The call of the last user deletes the instance and logs
  /// a line to standard error.
  static void DestroyInstance();

  /// Closes the previous connector, then selects and opens a connector for `path`. Returns 0, or -1
  /// on failure.
  ///
  /// A path that contains "/dev/usb" selects usblp. The number after "usblp" or "/lp" names the
  /// device, which is always opened as "/dev/usb/lpNUMBER". Any other path is "BUS:DEVICE" and
  /// selects libusb. A connector that fails to open stays selected, and its operations fail.
  int CT_Open(const char* path) override;

  /// Closes the connector and keeps it selected. Returns 0. Returns -1 if there is no connector,
  /// the connector was not open, or the close failed.
  int CT_Close() override;

  /// Reads until `len` bytes have arrived, no byte arrives for a time, or a probe fails. This time
  /// is about 5 s over usblp, and about 15 s over libusb, because `LibUsbConnector::read` also
  /// waits. Returns the count of bytes read, or 0 if there is no connector.
  long CT_Read(unsigned char* buf, unsigned long len) override;

  /// Writes once. Returns the connector's count, or -1 if there is no connector.
  long CT_Write(unsigned char* buf, unsigned long len, unsigned long timeout) override;

  /// Does nothing.
  void CT_RegisterReadCallback(int (*callback)(unsigned char*, int)) override;

  /// How the transport waits for bytes over usblp.
  enum class Waiting {
    Polling,  ///< asks the device every millisecond, as the exchanges of zvkconfig do
    /// Sleeps in one call until bytes arrive or the time is up. A signal ends the wait. After a
    /// part of a request has been written, a signal does not stop the writing of the rest.
    Blocking,
  };
  void setWaiting(Waiting waiting) { m_Waiting = waiting; }

  enum class Direction { ToPrinter, FromPrinter };
  using Observer = std::function<void(Direction direction, std::span<const unsigned char> bytes)>;

  /// Sets the function that the transport calls after each read or write with the bytes that it
  /// transferred. An empty function removes the observer.
  void observeTransfers(Observer observer) { m_Observer = std::move(observer); }

  /// Writes a request with `CT_Write`. usblp accepts only a few kilobytes at a time. A printer must
  /// not be left with half a packet, so over usblp this operation continues to write the rest of
  /// the request, for at most 5 s. Over libusb it writes once, because `LibUsbConnector::write` has
  /// its own loop. Returns the count written, or -1.
  long writeRequest(std::span<unsigned char> request);

 private:
  HCUSBTransport() = default;

  /// Selects the usblp connector and opens "/dev/usb/lpNUMBER". Returns 0, or -1 on failure.
  int openUsblp(int number);
  /// Selects the libusb connector and opens the printer at this address. Returns 0, or -1 on
  /// failure.
  int openLibUsb(int bus, int device);

  static std::unique_ptr<HCUSBTransport> m_Instance;
  static int m_RefCount;  ///< the count of users

  /// Reads more bytes after the first `got` until `wanted` bytes have arrived or the printer stops
  /// sending. Returns the count of all bytes, including the first `got`.
  int readRest(unsigned char* buf, int got, int wanted);
  /// Returns the probe's timeout in the unit of the connector.
  unsigned int probeTimeout() const;
  void observe(Direction direction, const unsigned char* bytes, long count) const;

  std::unique_ptr<HCIOConnector> m_Connector;  ///< null until the first `CT_Open`
  Waiting m_Waiting = Waiting::Polling;
  Observer m_Observer;
};
