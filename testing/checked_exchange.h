#pragma once

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "npa/send_config.h"
#include "testing/usblp_printer.h"

namespace support {

/// A fixture for tests of the `sendConfig` operations that check one reply for each attempt. The
/// operations talk to a scripted printer.
class CheckedExchange : public UsblpPrinter {
 protected:
  using Operation = int (sendConfig::*)(unsigned char*, int);

  /// Runs `operation` with a request of three bytes and returns the operation's result. Stores the
  /// standard output in `printed`. Expects that standard error contains only the line
  /// `TransportReleased`.
  int run(Operation operation) {
    Bytes request = bytes("A5 00 06");
    const auto exchangeOnce = [&] {
      sendConfig exchange("/dev/usb/lp0");
      return (exchange.*operation)(request.data(), static_cast<int>(request.size()));
    };
    Output output;
    const int result = resultOf(exchangeOnce, output);
    printed = output.out;
    EXPECT_EQ(output.err, TransportReleased);
    return result;
  }

  std::string printed;
};

}  // namespace support
