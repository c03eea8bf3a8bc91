#include <algorithm>
#include <cerrno>
#include <gtest/gtest.h>
#include <string>
#include <tuple>
#include <vector>

#include "faults/bench.h"

// The printer goes away in every message of every conversation, for good or until it is opened
// again: at each byte of a message of at most 64 bytes, at a sample of bytes of a longer one.

namespace faults {
namespace {

using support::Bytes;

/// When the printer goes: behind so many bytes of a request, or of the reply to it.
struct Moment {
  int exchange = 0;  ///< 1 for the first
  bool inRequest = false;
  std::size_t bytes = 0;
  bool comesBack = false;
};

/// How much was said in an exchange when nothing went wrong.
struct Size {
  std::size_t request = 0;
  std::size_t reply = 0;
};

/// A printer that goes away. Whoever holds it open then gets ENODEV from every read and write, and
/// is told that there is something to read, as by the kernel's driver.
class VanishingPrinter {
 public:
  VanishingPrinter(Wiring wiring, Moment moment) : bench(wiring), m_Moment(moment) {
    auto& device = bench.device;
    device.onWrite = [this](const Bytes& request) {
      if (Bytes reply = replyTo(request); !reply.empty()) {
        bench.device.reply(std::move(reply));
      }
    };
    device.writeResult = [this](std::size_t size) {
      return taken(bench.device.opens, size);
    };
    device.readResult = [this] {
      return readUsblp();
    };
    bench.libusb.onOpen = [this](const struct usb_device* /*device*/) {
      ++m_Opens;
    };
    bench.libusb.bulkWrite = [this](Bytes request) {
      const int count = taken(m_Opens, request.size());
      request.resize(static_cast<std::size_t>(std::max(count, 0)));
      const Bytes reply = replyTo(request);
      bench.libusb.incoming.insert(bench.libusb.incoming.end(), reply.begin(), reply.end());
      return count;
    };
    bench.libusb.bulkRead = [this](char* buffer, int size) {
      return readLibUsb(buffer, size);
    };
  }

  int opens() const { return std::max(m_Opens, bench.device.opens); }

  std::vector<Size> sizes;
  Bench bench;

 private:
  bool isIt(int exchange) const { return exchange == m_Moment.exchange; }

  void vanish() {
    m_Gone = true;
    if (!m_Moment.comesBack) {
      bench.device.openErrno = ENODEV;
      bench.libusb.opens = false;
    }
    bench.device.readyForEver = true;
  }

  /// What the printer takes of a request.
  int taken(int exchange, std::size_t size) {
    if (m_Gone && m_Moment.comesBack && !isIt(exchange)) {
      m_Gone = false;
      bench.device.readyForEver = false;
      bench.device.arrivals.clear();
      bench.libusb.incoming.clear();
      bench.printer.adapter.forgetPartialPacket();
    }
    sizes.resize(std::max(sizes.size(), static_cast<std::size_t>(exchange)));
    Size& current = sizes[static_cast<std::size_t>(exchange) - 1];
    if (isIt(exchange) && m_Moment.inRequest) {
      size = std::min(size, m_Moment.bytes - current.request);
      if (size == 0) {
        vanish();
      }
    }
    if (m_Gone) {
      return -ENODEV;
    }
    current.request += size;
    return static_cast<int>(size);
  }

  Bytes replyTo(const Bytes& request) {
    Bytes reply = bench.printer.ask(request);
    if (!reply.empty()) {
      sizes.back().reply += reply.size();
      if (isIt(opens()) && !m_Moment.inRequest) {
        reply.resize(std::min(reply.size(), m_Moment.bytes));
        m_IsLast = true;
      }
    }
    if (m_IsLast && isIt(opens()) && reply.empty()) {
      vanish();
    }
    return reply;
  }

  int readUsblp() {
    const auto& device = bench.device;
    if (m_Gone && device.arrivals.empty()) {
      return -ENODEV;
    }
    if (m_IsLast && !m_Gone && isIt(device.opens) && !device.arrivals.empty() &&
        device.readSizes.back() >= device.arrivals.front().bytes.size()) {
      vanish();
    }
    return 0;
  }

  int readLibUsb(char* buffer, int size) {
    Bytes& incoming = bench.libusb.incoming;
    if (incoming.empty()) {
      if (m_IsLast && isIt(m_Opens)) {
        vanish();
      }
      if (m_Gone) {
        return -ENODEV;
      }
      bench.system.advance(bench.libusb.readTimeouts.back() * 1000LL);
      return -ETIMEDOUT;
    }
    const auto count = std::min<std::size_t>(incoming.size(), static_cast<std::size_t>(size));
    std::copy_n(incoming.begin(), count, reinterpret_cast<std::uint8_t*>(buffer));
    incoming.erase(incoming.begin(), incoming.begin() + static_cast<std::ptrdiff_t>(count));
    return static_cast<int>(count);
  }

  Moment m_Moment;
  bool m_Gone = false;
  /// Whether the reply that the printer goes in is on its way.
  bool m_IsLast = false;
  int m_Opens = 0;
};

/// All positions in a message of at most 64 bytes; of a longer one the first 24, the last 9 and
/// each 41st, to keep the runs with certificates short.
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
         (moment.comesBack ? ", and back" : "");
}

class Vanishing : public testing::TestWithParam<std::tuple<Command, Wiring>> {
 protected:
  ~Vanishing() override { RecordProperty("runs", m_Runs); }

  const Command& command() const { return std::get<0>(GetParam()); }
  Wiring wiring() const { return std::get<1>(GetParam()); }

  /// Runs the command with the printer going away at each of these positions.
  template <typename Expect>
  void vanishAtEach(bool comesBack, Expect expect) {
    VanishingPrinter undisturbed(wiring(), {});
    undisturbed.bench.run(command(), m_Files);
    for (std::size_t i = 0; i < undisturbed.sizes.size(); ++i) {
      const Size& size = undisturbed.sizes[i];
      for (const bool inRequest : {true, false}) {
        for (const std::size_t bytes : positions(inRequest ? size.request - 1 : size.reply)) {
          const Moment moment{static_cast<int>(i) + 1, inRequest, bytes, comesBack};
          SCOPED_TRACE(describe(moment));
          VanishingPrinter printer(wiring(), moment);
          const Outcome outcome = printer.bench.run(command(), m_Files);
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

TEST_P(Vanishing, ForGoodEndsTheRunInOrder) {
  vanishAtEach(false, [](const Moment& /*moment*/, const Outcome& /*outcome*/, int /*opens*/) {});
}

/// What comes of a printer that says nothing in an exchange, but is there at the next.
struct Course {
  const char* command;
  struct Result {
    int status;
    int opens;
  };
  std::vector<Result> results;  ///< by the exchange in which it was away
};

const std::vector<Course>& courses() {
  static const std::vector<Course> all = {
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
      // That there is no earlier request to delete is no matter.
      {"Request", {{0, 3}, {1, 2}, {1, 3}}},
      // Nor that the authorities are not listed.
      {"InstallAuthority", {{0, 2}, {1, 2}}},
      {"InstallSigned", {{1, 1}}},
      {"DefaultRun", {{0, 4}, {0, 4}, {0, 4}}},
  };
  return all;
}

TEST_P(Vanishing, UntilItIsOpenedAgainCostsOneAttempt) {
  const auto course = std::ranges::find(courses(), std::string(command().name), &Course::command);
  vanishAtEach(true, [&](const Moment& moment, const Outcome& outcome, int opens) {
    const bool wasSilent = moment.inRequest || moment.bytes == 0;
    if (wasSilent && course != courses().end()) {
      const auto& expected = course->results.at(static_cast<std::size_t>(moment.exchange) - 1);
      EXPECT_EQ(outcome.status, expected.status);
      EXPECT_EQ(opens, expected.opens);
    }
  });
}

constexpr auto commandName = [](const auto& test) {
  return std::string(std::get<0>(test.param).name);
};

INSTANTIATE_TEST_SUITE_P(Usblp, Vanishing,
                         testing::Combine(testing::ValuesIn(talkingCommands()),
                                          testing::Values(Wiring::Usblp)),
                         commandName);

INSTANTIATE_TEST_SUITE_P(LibUsb, Vanishing,
                         testing::Combine(testing::ValuesIn(talkingCommands()),
                                          testing::Values(Wiring::LibUsb)),
                         commandName);

}  // namespace
}  // namespace faults
