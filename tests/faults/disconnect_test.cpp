#include <algorithm>
#include <cerrno>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <vector>

#include "faults/failure_rig.h"

// The printer is disconnected during each request and each reply of each command: for good, or
// until the program opens it again. In a message of at most 64 bytes this happens at each byte, in
// a longer message at a sample of bytes.

namespace faults {
namespace {

using support::Bytes;

/// When the printer is disconnected.
struct Moment {
  int exchange = 0;        ///< the number of the exchange, from 1; 0: never
  bool inRequest = false;  ///< true: during the request; false: during the reply
  std::size_t bytes = 0;   ///< how many bytes of the request or reply are transferred first
  bool returns = false;    ///< true if the printer is connected when the program opens it again
};

/// The sizes of an exchange without a fault, in bytes.
struct Size {
  std::size_t request = 0;
  std::size_t reply = 0;
};

/// A printer that is disconnected at a given moment. After that, reads and writes fail with ENODEV
/// and select reports the device as readable, as usblp does.
class DisconnectingPrinter {
 public:
  DisconnectingPrinter(Wiring wiring, Moment moment) : rig(wiring), m_Moment(moment) {
    auto& device = rig.device;
    device.onWrite = [this](const Bytes& request) {
      if (Bytes reply = replyTo(request); !reply.empty()) {
        rig.device.reply(std::move(reply));
      }
    };
    device.writeResult = [this](std::size_t size) {
      return accepted(rig.device.opens, size);
    };
    device.readResult = [this] {
      return readUsblp();
    };
    rig.libusb.onOpen = [this](const struct usb_device* /*device*/) {
      ++m_Opens;
    };
    rig.libusb.bulkWrite = [this](Bytes request) {
      const int count = accepted(m_Opens, request.size());
      request.resize(static_cast<std::size_t>(std::max(count, 0)));
      const Bytes reply = replyTo(request);
      rig.libusb.incoming.insert(rig.libusb.incoming.end(), reply.begin(), reply.end());
      return count;
    };
    rig.libusb.bulkRead = [this](char* buffer, int size) {
      return readLibUsb(buffer, size);
    };
  }

  int opens() const { return std::max(m_Opens, rig.device.opens); }

  std::vector<Size> sizes;
  FailureRig rig;

 private:
  bool isAffected(int exchange) const { return exchange == m_Moment.exchange; }

  void disconnect() {
    m_IsDisconnected = true;
    if (!m_Moment.returns) {
      rig.device.openErrno = ENODEV;
      rig.libusb.opens = false;
    }
    rig.device.alwaysReadable = true;
  }

  /// Returns how many of `size` bytes of a request the printer accepts, or -ENODEV.
  int accepted(int exchange, std::size_t size) {
    if (m_IsDisconnected && m_Moment.returns && !isAffected(exchange)) {
      m_IsDisconnected = false;
      rig.device.alwaysReadable = false;
      rig.device.arrivals.clear();
      rig.libusb.incoming.clear();
      rig.printer.adapter.forgetPartialPacket();
    }
    sizes.resize(std::max(sizes.size(), static_cast<std::size_t>(exchange)));
    Size& current = sizes[static_cast<std::size_t>(exchange) - 1];
    if (isAffected(exchange) && m_Moment.inRequest) {
      size = std::min(size, m_Moment.bytes - current.request);
      if (size == 0) {
        disconnect();
      }
    }
    if (m_IsDisconnected) {
      return -ENODEV;
    }
    current.request += size;
    return static_cast<int>(size);
  }

  Bytes replyTo(const Bytes& request) {
    Bytes reply = rig.printer.ask(request);
    if (!reply.empty()) {
      sizes.back().reply += reply.size();
      if (isAffected(opens()) && !m_Moment.inRequest) {
        reply.resize(std::min(reply.size(), m_Moment.bytes));
        m_IsReplyCut = true;
      }
    }
    if (m_IsReplyCut && isAffected(opens()) && reply.empty()) {
      disconnect();
    }
    return reply;
  }

  int readUsblp() {
    const auto& device = rig.device;
    if (m_IsDisconnected && device.arrivals.empty()) {
      return -ENODEV;
    }
    if (m_IsReplyCut && !m_IsDisconnected && isAffected(device.opens) && !device.arrivals.empty() &&
        device.readSizes.back() >= device.arrivals.front().bytes.size()) {
      disconnect();
    }
    return 0;
  }

  int readLibUsb(char* buffer, int size) {
    Bytes& incoming = rig.libusb.incoming;
    if (incoming.empty()) {
      if (m_IsReplyCut && isAffected(m_Opens)) {
        disconnect();
      }
      if (m_IsDisconnected) {
        return -ENODEV;
      }
      rig.system.advance(rig.libusb.readTimeouts.back() * 1000LL);
      return -ETIMEDOUT;
    }
    const auto count = std::min<std::size_t>(incoming.size(), static_cast<std::size_t>(size));
    std::copy_n(incoming.begin(), count, reinterpret_cast<std::uint8_t*>(buffer));
    incoming.erase(incoming.begin(), incoming.begin() + static_cast<std::ptrdiff_t>(count));
    return static_cast<int>(count);
  }

  Moment m_Moment;
  bool m_IsDisconnected = false;
  /// True once the reply during which the printer is disconnected has been shortened.
  bool m_IsReplyCut = false;
  int m_Opens = 0;
};

/// Returns the positions at which to disconnect the printer in a message of `size` bytes. If the
/// message has at most 64 bytes, these are all positions. In a longer message they are the first
/// 24, the last 9 and every 41st, because the runs with certificates would otherwise take too long.
std::vector<std::size_t> positions(std::size_t size) {
  std::vector<std::size_t> result;
  for (std::size_t i = 0; i <= size; ++i) {
    if (size <= 64 || i < 24 || i + 8 >= size || i % 41 == 0) {
      result.push_back(i);
    }
  }
  return result;
}

std::string describe(const Moment& moment) {
  return "exchange " + std::to_string(moment.exchange) +
         (moment.inRequest ? ", request, byte " : ", reply, byte ") + std::to_string(moment.bytes) +
         (moment.returns ? ", and connected again" : "");
}

class Disconnect : public testing::TestWithParam<std::tuple<Command, Wiring>> {
 protected:
  ~Disconnect() override { RecordProperty("runs", m_Runs); }

  const Command& command() const { return std::get<0>(GetParam()); }
  Wiring wiring() const { return std::get<1>(GetParam()); }

  /// Runs the command once for each position, with the printer disconnected there.
  template <typename Expect>
  void disconnectAtEach(bool returns, Expect expect) {
    DisconnectingPrinter faultless(wiring(), {});
    faultless.rig.run(command(), m_Files);
    for (std::size_t i = 0; i < faultless.sizes.size(); ++i) {
      const Size& size = faultless.sizes[i];
      for (const bool inRequest : {true, false}) {
        for (const std::size_t bytes : positions(inRequest ? size.request - 1 : size.reply)) {
          const Moment moment{static_cast<int>(i) + 1, inRequest, bytes, returns};
          SCOPED_TRACE(describe(moment));
          DisconnectingPrinter printer(wiring(), moment);
          const Outcome outcome = printer.rig.run(command(), m_Files);
          ++m_Runs;
          expectOrderlyEnd(command(), wiring(), outcome);
          expect(moment, outcome, printer.opens());
          if (HasFailure()) {
            return;
          }
        }
      }
    }
  }

 private:
  CommandFiles m_Files;
  int m_Runs = 0;
};

TEST_P(Disconnect, EndsTheRunInOrder) {
  disconnectAtEach(false,
                   [](const Moment& /*moment*/, const Outcome& /*outcome*/, int /*opens*/) {});
}

/// The results of a command if the printer sends nothing in one exchange and is connected again in
/// the next.
struct Expectation {
  const char* command;
  struct Result {
    int status;
    int opens;
  };
  std::vector<Result> results;  ///< one for each exchange in which the printer is disconnected
};

const std::vector<Expectation>& expectations() {
  static const std::vector<Expectation> all = {
      {"Basic", {{0, 2}}},
      {"WpaPersonal", {{0, 2}}},
      {"Ssid", {{0, 2}}},
      {"Ip", {{0, 2}}},
      {"TroubleCode", {{0, 2}}},
      {"Descriptor", {{0, 2}}},
      {"Reset", {{0, 2}}},
      {"AuthStatus", {{3, 2}}},
      {"Certificate", {{0, 2}, {0, 2}}},
      {"RawPacket", {{0, 1}}},
      {"RequestDefaults", {{1, 1}}},
      // The first exchange deletes an earlier certificate; its failure is ignored.
      {"Request", {{0, 3}, {1, 2}, {1, 3}}},
      // The first exchange lists the CA certificates; its failure is ignored.
      {"InstallAuthority", {{0, 2}, {1, 2}}},
      {"InstallSigned", {{1, 1}}},
      {"DefaultRun", {{0, 4}, {0, 4}, {0, 4}}},
  };
  return all;
}

TEST_P(Disconnect, CostsOneAttemptIfThePrinterReturns) {
  const auto row =
      std::ranges::find(expectations(), std::string(command().name), &Expectation::command);
  disconnectAtEach(true, [&](const Moment& moment, const Outcome& outcome, int opens) {
    const bool wasSilent = moment.inRequest || moment.bytes == 0;
    if (wasSilent && row != expectations().end()) {
      const auto& expected = row->results.at(static_cast<std::size_t>(moment.exchange) - 1);
      EXPECT_EQ(outcome.status, expected.status);
      EXPECT_EQ(opens, expected.opens);
    }
  });
}

constexpr auto commandName = [](const auto& test) {
  return std::string(std::get<0>(test.param).name);
};

INSTANTIATE_TEST_SUITE_P(Usblp, Disconnect,
                         testing::Combine(testing::ValuesIn(exchangingCommands()),
                                          testing::Values(Wiring::Usblp)),
                         commandName);

INSTANTIATE_TEST_SUITE_P(LibUsb, Disconnect,
                         testing::Combine(testing::ValuesIn(exchangingCommands()),
                                          testing::Values(Wiring::LibUsb)),
                         commandName);

}  // namespace
}  // namespace faults
