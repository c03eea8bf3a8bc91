#pragma once

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "faults/failure_rig.h"

namespace faults {

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
    device.onWrite = [this](const support::Bytes& request) {
      if (support::Bytes reply = replyTo(request); !reply.empty()) {
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
    rig.libusb.bulkWrite = [this](support::Bytes request) {
      const int count = accepted(m_Opens, request.size());
      request.resize(static_cast<std::size_t>(std::max(count, 0)));
      const support::Bytes reply = replyTo(request);
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

  support::Bytes replyTo(const support::Bytes& request) {
    support::Bytes reply = rig.printer.ask(request);
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
    support::Bytes& incoming = rig.libusb.incoming;
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
  /// True after the reply that the disconnection interrupts has been shortened.
  bool m_IsReplyCut = false;
  int m_Opens = 0;
};

/// Which positions in a request or reply the tests try: all if it has at most `allUpTo` bytes,
/// otherwise the first, the last and every n-th.
struct PositionSample {
  std::size_t allUpTo;
  std::size_t first;
  std::size_t last;
  std::size_t every;
};
#ifdef ZVK_IS_SANITIZED
/// With a sanitizer a run takes ten times as long.
inline constexpr PositionSample TriedPositions = {.allUpTo = 8, .first = 8, .last = 3, .every = 41};
#else
/// A request with a certificate has so many bytes that a run for each would take too long.
inline constexpr PositionSample TriedPositions = {
    .allUpTo = 64, .first = 24, .last = 9, .every = 41};
#endif

/// Returns the positions at which to disconnect the printer in a request or reply of `size` bytes.
inline std::vector<std::size_t> positions(std::size_t size) {
  const auto& [allUpTo, first, last, every] = TriedPositions;
  std::vector<std::size_t> result;
  for (std::size_t i = 0; i <= size; ++i) {
    if (size <= allUpTo || i < first || i + last > size || i % every == 0) {
      result.push_back(i);
    }
  }
  return result;
}

inline std::string describe(const Moment& moment) {
  return "exchange " + std::to_string(moment.exchange) +
         (moment.inRequest ? ", request, byte " : ", reply, byte ") + std::to_string(moment.bytes) +
         (moment.returns ? ", and connected again" : "");
}

}  // namespace faults
