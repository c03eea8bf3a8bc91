#pragma once

#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "testing/bytes.h"
#include "testing/emulated_printer.h"
#include "testing/virtual_system.h"

namespace support {

/// A fixture for tests with an emulated printer at /dev/usb/lp0, in virtual time.
class AnsweringPrinter : public testing::Test {
 protected:
  /// Plugs in a printer with this personality. Removes the previous printer if there is one.
  void plugIn(emulator::Personality personality) {
    printer = std::make_unique<EmulatedPrinter>(std::move(personality));
    device.onWrite = [this](const Bytes& request) {
      printer->now = emulator::Adapter::Clock::time_point(std::chrono::microseconds(system.now()));
      for (const emulator::Adapter::ReplyPiece& piece : printer->adapter.receive(request)) {
        device.reply(piece.bytes, std::chrono::microseconds(piece.delay).count());
      }
    };
  }

  virtual_system::System system;
  virtual_system::Device& device = system.device("/dev/usb/lp0");
  std::unique_ptr<EmulatedPrinter> printer;
};

}  // namespace support
