#pragma once

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "npa/send_config.h"
#include "testing/usblp_printer.h"

namespace support {

/// Tests of the operations of `sendConfig` that judge one reply for each attempt, against a
/// scripted printer.
class JudgedExchange : public UsblpPrinter {
 protected:
  using Operation = int (sendConfig::*)(unsigned char*, int);

  /// Runs `operation` with a request of three bytes; keeps what it wrote to standard output, and
  /// expects nothing on standard error but the transport's farewell.
  int run(Operation operation) {
    Bytes request = bytes("A5 00 06");
    const auto judge = [&] {
      sendConfig exchange("/dev/usb/lp0");
      return (exchange.*operation)(request.data(), static_cast<int>(request.size()));
    };
    Output output;
    const int result = resultOf(judge, output);
    printed = output.out;
    EXPECT_EQ(output.err, TransportGone);
    return result;
  }

  std::string printed;
};

}  // namespace support
