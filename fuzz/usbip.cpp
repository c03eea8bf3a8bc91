// The input, in hex, is a byte of options, then the bytes that a host sends to the USB transport.
// If bit 0 of the first byte is set, the session starts with transfers instead of requests. Bits 1
// and 2 select properties and faults of the device. The other bits are the size of the pieces in
// which the bytes arrive (0: 1 byte). The size of the pieces must not change the output before an
// error.

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <string_view>
#include <vector>

#include "emulator/adapter/adapter.h"
#include "emulator/usb/usb_device.h"
#include "emulator/usb/usbip_session.h"
#include "fuzz_target.h"
#include "hex_input.h"

namespace {

using emulator::Adapter;
using emulator::UsbipError;
using emulator::UsbipSession;
using emulator::UsbTraits;
using npa::Bytes;

/// Returns the properties of the device that the bits of `mode` select.
UsbTraits traits(unsigned mode) {
  using Kind = emulator::UsbFault::Kind;
  using emulator::UsbDirection;
  UsbTraits result;
  if ((mode & 2U) != 0) {
    result.speed = emulator::UsbSpeed::Full;
    result.faults = {{Kind::Stall, UsbDirection::Out, 40}, {Kind::Stall, UsbDirection::In, 5}};
  }
  if ((mode & 4U) != 0) {
    result.outBytesPerSecond = 64;
    result.faults.push_back({Kind::Unplug, UsbDirection::In, 20});
  }
  return result;
}

/// Returns the output of a session for the input, up to an error. After the input the function lets
/// 10 s of virtual time pass.
Bytes talk(const Bytes& input, unsigned mode, std::size_t pieceSize) {
  emulator::MessageLog log([](std::string_view) {}, false);
  Adapter::Clock::time_point now;
  const auto clock = [&now] {
    return now;
  };
  Adapter adapter({}, log, clock);
  emulator::UsbDevice device(adapter, traits(mode), log, clock);
  const auto phase =
      (mode & 1U) != 0 ? UsbipSession::Phase::Transfers : UsbipSession::Phase::Requests;
  UsbipSession session(device, phase);
  Bytes output;
  const auto take = [&] {
    const Bytes more = session.takeOutput();
    output.insert(output.end(), more.begin(), more.end());
  };
  try {
    for (std::size_t start = 0; start < input.size(); start += pieceSize) {
      session.receive(std::span(input).subspan(start, std::min(pieceSize, input.size() - start)));
      take();
    }
  } catch (const UsbipError&) {
    return output;
  }
  for (int second = 0; second < 10; ++second) {
    now += std::chrono::seconds(1);
    take();
  }
  fuzz::require(device.waiting() <= UsbipSession::MostTransfers);
  device.unplug();
  fuzz::require(device.waiting() == 0 && device.waitingBytes() == 0);
  return output;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes input = fuzz::readHex(fuzz::textOf(data, size));
  const unsigned mode = fuzz::takeByte(input);
  const std::size_t pieceSize = mode >> 3U;
  const Bytes whole = talk(input, mode, input.size() + 1);
  const Bytes inPieces = talk(input, mode, std::max<std::size_t>(pieceSize, 1));
  // An error in a later command ends the session. A host that sends pieces has already received the
  // replies to the earlier commands by then. A host that sends everything at once has not received
  // them.
  fuzz::require(inPieces.size() >= whole.size() &&
                std::equal(whole.begin(), whole.end(), inPieces.begin()));
  return 0;
}
