#pragma once

#include <algorithm>
#include <cstddef>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

#include "testing/bytes.h"
#include "testing/output.h"
#include "testing/virtual_system.h"

namespace support {

/// A fixture with a printer at /dev/usb/lp0 that sends scripted replies.
class UsblpPrinter : public testing::Test {
 protected:
  /// Sets the replies: the n-th write gets the n-th reply, and all later writes get the last one.
  /// The printer sends nothing for an empty reply.
  void answer(std::vector<Bytes> replies) {
    device.onWrite = [this, replies = std::move(replies),
                      next = std::size_t{0}](const Bytes& /*request*/) mutable {
      if (!replies[next].empty()) {
        device.reply(replies[next]);
      }
      next = std::min(next + 1, replies.size() - 1);
    };
  }

  virtual_system::System system;
  virtual_system::Device& device = system.device("/dev/usb/lp0");
};

}  // namespace support
