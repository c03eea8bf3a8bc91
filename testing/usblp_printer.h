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

/// Tests against a printer at /dev/usb/lp0 that answers requests from a script.
class UsblpPrinter : public testing::Test {
 protected:
  /// Answers the n-th write with the n-th reply, the last one for all that follow. An empty reply
  /// stands for silence.
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
