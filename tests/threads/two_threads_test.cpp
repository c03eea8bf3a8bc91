// One thread writes while another reads. The ring buffer and both connectors permit this. One of
// the builds runs these tests under ThreadSanitizer.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <pty.h>
#include <random>
#include <span>
#include <string>
#include <sys/stat.h>
#include <termios.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include "testing/files.h"
#include "threads/loopback_libusb.h"
#include "transport/circular_buffer.h"
#include "transport/lib_usb_connector.h"
#include "transport/usblp_connector.h"
#include "util/unique_fd.h"

namespace {

using Bytes = std::vector<unsigned char>;

/// Returns pseudo-random bytes. They are the same in each run.
Bytes randomBytes(std::size_t count) {
  std::minstd_rand numbers(7);
  Bytes result(count);
  std::ranges::generate(result, [&] { return static_cast<unsigned char>(numbers() >> 8U); });
  return result;
}

/// Counts from 1 to `largest`, over and over. The readers and writers use the numbers as sizes.
class Sizes {
 public:
  explicit Sizes(std::size_t largest) : m_Largest(largest) {}
  std::size_t next() { return m_Next = m_Next % m_Largest + 1; }

 private:
  std::size_t m_Largest;
  std::size_t m_Next = 0;
};

/// Writes `data` in pieces. `write` returns how many bytes it accepted.
void writeAll(std::span<unsigned char> data, std::size_t largest,
              const std::function<long(std::span<unsigned char>)>& write) {
  Sizes sizes(largest);
  while (!data.empty()) {
    const long count = write(data.first(std::min(sizes.next(), data.size())));
    if (count > 0) {
      data = data.subspan(static_cast<std::size_t>(count));
    } else {
      std::this_thread::yield();
    }
  }
}

/// Reads and returns `count` bytes. `read` returns how many bytes it stored.
Bytes readAll(std::size_t count, std::size_t largest,
              const std::function<long(std::span<unsigned char>)>& read) {
  Sizes sizes(largest);
  Bytes result;
  Bytes piece(largest);
  while (result.size() < count) {
    const std::size_t wanted = std::min(sizes.next(), count - result.size());
    const long stored = read(std::span(piece).first(wanted));
    if (stored > 0) {
      result.insert(result.end(), piece.begin(), piece.begin() + stored);
    } else {
      std::this_thread::yield();
    }
  }
  return result;
}

TEST(RingBuffer, IsWrittenByOneThreadAndReadByAnother) {
  constexpr std::size_t total = 200'000;
  CircularBuffer ring(100);
  Bytes sent = randomBytes(total);
  std::jthread writer([&] {
    writeAll(sent, 100, [&](std::span<unsigned char> piece) {
      return ring.writeBytes(piece.data(), piece.size()) ? std::ssize(piece) : 0;
    });
  });
  const Bytes received = readAll(total, 73, [&](std::span<unsigned char> piece) {
    return ring.readBytes(piece.data(), piece.size()) ? std::ssize(piece) : 0;
  });
  EXPECT_EQ(received, sent);
  EXPECT_TRUE(ring.isEmpty());
}

TEST(RingBuffer, CountsItsBytesWhileOtherThreadsChangeIt) {
  CircularBuffer ring(100);
  Bytes sent = randomBytes(50'000);
  const std::jthread counter([&](const std::stop_token& stop) {
    while (!stop.stop_requested()) {
      EXPECT_LE(ring.getAvailableSpace(), 100U);
      EXPECT_LE(ring.getAvailableBytes(), 100U);
      ring.isFull();
      ring.isEmpty();
    }
  });
  std::jthread writer([&] {
    writeAll(sent, 40, [&](std::span<unsigned char> piece) {
      return ring.writeBytes(piece.data(), piece.size()) ? std::ssize(piece) : 0;
    });
  });
  const Bytes received = readAll(sent.size(), 40, [&](std::span<unsigned char> piece) {
    return ring.readBytes(piece.data(), piece.size()) ? std::ssize(piece) : 0;
  });
  EXPECT_EQ(received, sent);
}

/// Writes to the connector in one thread and reads in another. Expects that every byte comes back.
void expectEchoOfAllBytes(HCIOConnector& connector, std::size_t total, std::size_t largest) {
  Bytes sent = randomBytes(total);
  std::jthread writer([&] {
    writeAll(sent, largest, [&](std::span<unsigned char> piece) {
      return connector.write(piece.data(), static_cast<int>(piece.size()));
    });
  });
  const Bytes received = readAll(total, largest, [&](std::span<unsigned char> piece) {
    return connector.read(piece.data(), static_cast<int>(piece.size()));
  });
  writer.join();
  EXPECT_EQ(received, sent);
  EXPECT_NE(connector.getLastError(), IO_BAD_DEVICE);
}

/// A device file whose other end sends back every byte that it receives.
class LoopbackDevice {
 public:
  LoopbackDevice() {
    int master = -1;
    int slave = -1;
    termios raw{};
    ::cfmakeraw(&raw);
    std::array<char, 64> name{};
    EXPECT_EQ(::openpty(&master, &slave, name.data(), &raw, nullptr), 0);
    m_Master = util::UniqueFd(master);
    m_Slave = util::UniqueFd(slave);
    EXPECT_EQ(::symlink(name.data(), m_Folder.path("lp3").c_str()), 0);
    m_Echo = std::jthread([this] { sendBack(); });
  }
  ~LoopbackDevice() {
    // The read on the master fails when no descriptor of the slave is open. The thread then ends.
    m_Slave.reset();
    m_Echo.join();
  }
  LoopbackDevice(const LoopbackDevice&) = delete;
  LoopbackDevice& operator=(const LoopbackDevice&) = delete;

  /// Returns the path of the device without its number, which is 3.
  std::string prefix() const { return m_Folder.path("lp"); }

 private:
  void sendBack() const {
    std::array<char, 512> buffer{};
    for (ssize_t count = 0; (count = ::read(m_Master.get(), buffer.data(), buffer.size())) > 0;) {
      EXPECT_EQ(::write(m_Master.get(), buffer.data(), static_cast<std::size_t>(count)), count);
    }
  }

  support::TemporaryFolder m_Folder;
  util::UniqueFd m_Master;
  util::UniqueFd m_Slave;
  std::jthread m_Echo;
};

TEST(UsblpConnector, ReadsInOneThreadAndWritesInAnother) {
  const LoopbackDevice device;
  USBLPConnector connector(device.prefix().c_str(), 3);
  ASSERT_EQ(connector.open(), 0);
  expectEchoOfAllBytes(connector, 100'000, 300);
  EXPECT_EQ(connector.close(), 0);
}

TEST(LibUsbConnector, ReadsInOneThreadAndWritesInAnother) {
  LibUsbConnector connector(7);
  ASSERT_EQ(connector.open(loopback_libusb::Bus, loopback_libusb::Device), 0);
  expectEchoOfAllBytes(connector, 100'000, 200);
  EXPECT_EQ(loopback_libusb::waiting(), 0U);
  EXPECT_EQ(connector.close(), 0);
}

}  // namespace
