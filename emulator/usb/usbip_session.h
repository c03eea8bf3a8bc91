#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "catalogue/packet_reader.h"
#include "emulator/usb/usb_device.h"
#include "emulator/usb/usbip_messages.h"

namespace emulator {

/// The device's side of a USB/IP connection. It takes the bytes that a client sends and returns the
/// bytes for the client:
///
///     session.receive(bytesFromSocket);
///     write(session.takeOutput());
class UsbipSession {
 public:
  enum class Phase {
    Requests,   ///< the client lists the devices or imports one
    Transfers,  ///< the client has imported the device
  };

  /// The limits for waiting transfers: the count of transfers, and the count of bytes in OUT
  /// transfers. A client that exceeds a limit breaks the protocol.
  static constexpr std::size_t MostTransfers = 256;
  static constexpr std::size_t MostBytes = 4 * LargestUsbipTransfer;

  /// The device must outlive the session.
  UsbipSession(UsbDevice& device, Phase phase) : m_Device(device), m_Phase(phase) {}

  /// Sets the status that the session returns for an import from now on.
  void offer(UsbipStatus status) { m_Offer = status; }

  /// Handles the next bytes. Messages may arrive in pieces. Throws `UsbipError` if the bytes break
  /// the protocol; the session has then ended.
  void receive(std::span<const npa::Byte> bytes);

  /// Advances the device. Returns the bytes to send that have been added since the last call.
  npa::Bytes takeOutput();

  /// Returns true if the client has imported the device.
  bool hasDevice() const { return m_Phase == Phase::Transfers; }

 private:
  /// Handles the message at the start of `bytes`. Returns its size, or 0 if it is not complete.
  std::size_t handleRequest(std::span<const npa::Byte> bytes);
  std::size_t handleCommand(std::span<const npa::Byte> bytes);
  void carryOut(UsbipCommand command, std::span<const npa::Byte> data);
  void send(const npa::Bytes& bytes);
  void sendCompletions();

  UsbDevice& m_Device;
  Phase m_Phase;
  UsbipStatus m_Offer = UsbipStatus::Ok;
  npa::Bytes m_Input;
  npa::Bytes m_Output;
};

}  // namespace emulator
