// Converts a log of the emulated printer to a USB capture:
//
//     log_to_capture BYTES <LOG >CAPTURE
//
// Each message becomes transfers of at most BYTES bytes.

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <span>
#include <string>

#include "decoder/hex_line.h"
#include "testing/usb_capture.h"

namespace {

using Direction = decoder::Stream::Direction;

void addTransfers(support::UsbCapture& capture, const decoder::HexLine& message,
                  std::size_t largest) {
  std::span<const npa::Byte> rest(message.bytes);
  while (!rest.empty()) {
    const auto part = rest.first(std::min(largest, rest.size()));
    const support::Bytes data(part.begin(), part.end());
    message.direction == Direction::ToPrinter ? capture.out(data) : capture.in(data);
    rest = rest.subspan(part.size());
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::size_t largest = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 0;
  if (largest == 0) {
    std::fputs("usage: log_to_capture BYTES <LOG >CAPTURE\n", stderr);
    return 2;
  }
  support::UsbCapture capture;
  for (std::string line; std::getline(std::cin, line);) {
    const auto message = decoder::readHexLine(line);
    if (message && message->direction != Direction::Unknown) {
      addTransfers(capture, *message, largest);
    }
  }
  std::cout << capture.content();
  return 0;
}
