#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "catalogue/packet_reader.h"
#include "emulator/usb/usb_device.h"
#include "emulator/usb/usbip_messages.h"

namespace emulator {

/// One side of a USB/IP connection, the one that has the device: bytes in, bytes out.
class UsbipSession {
 public:
  enum class Phase {
    Requests,   ///< lists and the import of the device, as at a server
    Transfers,  ///< the device has been handed over
  };

  /// How many transfers may wait, and the bytes that they may hold.
  static constexpr std::size_t MostTransfers = 256;
  static constexpr std::size_t MostBytes = 4 * LargestUsbipTransfer;

  /// The device must outlive the session.
  UsbipSession(UsbDevice& device, Phase phase) : m_Device(device), m_Phase(phase) {}

  /// How an import would end now.
  void offer(UsbipStatus status) { m_Offer = status; }

  /// Takes the next bytes, in whatever pieces they come. Throws `UsbipError` for what no host
  /// sends; the session is over then.
  void receive(std::span<const npa::Byte> bytes);

  /// Has the device do what is due, and returns what is to be sent since the last call.
  npa::Bytes takeOutput();

  /// Whether the device has been handed over.
  bool hasDevice() const { return m_Phase == Phase::Transfers; }

 private:
  /// Handle what is at the front, and return its size; 0 while it is not complete.
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
