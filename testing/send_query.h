#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <vector>

#include "npa/send_config.h"
#include "testing/packets.h"
#include "testing/rows.h"
#include "testing/usblp_printer.h"

namespace support {

/// A fixture for tests of `sendQuery`, with a scripted printer.
class SendQuery : public UsblpPrinter {
 protected:
  /// Sends `request` and returns the collected reply. Sets `untouched` to true if `sendQuery` left
  /// the pointer to the reply unchanged.
  Bytes query(Bytes request, int timeout) {
    unsigned char marker = 0;
    unsigned char* reply = &marker;
    const auto send = [&] {
      sendConfig exchange("/dev/usb/lp0");
      return exchange.sendQuery(request.data(), static_cast<int>(request.size()), reply, timeout);
    };
    const int count = resultOf(send, output);
    untouched = reply == &marker;
    if (untouched) {
      EXPECT_EQ(count, 0);
      return {};
    }
    const std::unique_ptr<unsigned char[]> owned(reply);
    EXPECT_GT(count, 0);
    return {reply, reply + count};
  }

  Bytes query(int timeout = 3) { return query(packets::QueryCommonName, timeout); }

  /// Makes `reply` arrive `delay` after the pause of 2 s that follows the request.
  void replyAfterPause(const Bytes& reply, virtual_system::Microseconds delay) {
    device.onWrite = [=, this](const Bytes& /*request*/) {
      device.reply(reply, 2 * virtual_system::Second + delay);
    };
  }

  Output output;
  bool untouched = false;
};

/// A row of a table: the bytes that the printer sends, and the collected reply, both in hex.
struct ReplyRow : Row {
  const char* reply;
  const char* collected;
};

/// What `sendQuery` prints if it can open the device.
inline const Output Quiet = {"", TransportReleased};

}  // namespace support
