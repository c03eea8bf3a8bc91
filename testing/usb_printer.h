#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "emulator/usb/usb_device.h"
#include "testing/bytes.h"
#include "testing/emulated_printer.h"

namespace support {

/// An emulated printer as a USB device. Its clock is `printer.now`.
class UsbPrinter {
 public:
  using Direction = emulator::UsbDirection;

  explicit UsbPrinter(emulator::UsbTraits traits = {}, emulator::Personality personality = {})
      : printer(std::move(personality)),
        m_Log([this](std::string_view line) { log.emplace_back(line); }, false),
        device(printer.adapter, std::move(traits), m_Log, [this] { return printer.now; }) {}

  /// Submits a control request and returns the data of the reply, or nothing if the device stalls
  /// the request.
  std::optional<Bytes> ask(const emulator::UsbSetup& setup) {
    emulator::UsbTransfer transfer{.id = 9000, .setup = setup, .length = setup.length};
    transfer.direction = setup.type >= 0x80 ? Direction::In : Direction::Out;
    device.submit(std::move(transfer));
    for (emulator::UsbCompletion& end : device.advance()) {
      if (end.id == 9000) {
        return end.status == 0 ? std::optional(std::move(end.data)) : std::nullopt;
      }
    }
    return std::nullopt;
  }

  /// Sets configuration 1.
  void configure() { ask({.type = 0x00, .request = 9, .value = 1}); }

  /// Submits a transfer from the bulk IN endpoint.
  void read(std::uint32_t id, std::size_t length, bool mustBeFull = false) {
    device.submit({.id = id,
                   .endpoint = 2,
                   .direction = Direction::In,
                   .length = length,
                   .mustBeFull = mustBeFull});
  }
  /// Submits a transfer to the bulk OUT endpoint.
  void write(std::uint32_t id, const Bytes& bytes) {
    device.submit({.id = id, .endpoint = 1, .length = bytes.size(), .data = bytes});
  }

  std::vector<std::string> log;
  EmulatedPrinter printer;

 private:
  emulator::MessageLog m_Log;

 public:
  emulator::UsbDevice device;
};

/// A USB printer that is already configured.
class ReadyUsbPrinter : public UsbPrinter {
 public:
  explicit ReadyUsbPrinter(emulator::UsbTraits traits = {}, emulator::Personality personality = {})
      : UsbPrinter(std::move(traits), std::move(personality)) {
    configure();
  }
};

}  // namespace support
