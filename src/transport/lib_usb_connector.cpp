// LibUsbConnector: finding a printer on the bus, and the transfers of bytes, through libusb 0.1.

#include "transport/lib_usb_connector.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <limits>
#include <span>
#include <vector>

#include "transport/luu.h"
#include "util/clock.h"
#include "util/decimal.h"

namespace {

/// The capacity of the ring buffer in bytes.
constexpr unsigned long RingCapacity = 0x10000;
/// The longest time in milliseconds that a read waits for a USB packet.
constexpr unsigned int ReadPollTimeout = 10000;
/// How long the printer may take to accept one chunk.
constexpr int WriteTimeoutMilliseconds = 5000;
/// The largest count of retries in one write. 24 retries of 5 s take two minutes. Without a limit,
/// a device that never accepts the bytes would block the program for ever.
constexpr int WriteRetryLimit = 24;
constexpr unsigned int MicrosecondsPerSecond = 1000000;

/// Returns a span of one of libusb's descriptor arrays, or an empty span if libusb has no array.
template <typename Descriptor>
std::span<Descriptor> range(Descriptor* first, int count) {
  return first == nullptr || count <= 0
             ? std::span<Descriptor>()
             : std::span<Descriptor>(first, static_cast<std::size_t>(count));
}

}  // namespace

void LibUsbConnector::CloseHandle::operator()(usb_dev_handle* handle) const {
  luu_usb_close(handle);
}

LibUsbConnector::LibUsbConnector(unsigned char interfaceClass)
    : m_TimeoutInSeconds(luu_initialize() != 0),
      m_RxBuffer(RingCapacity),
      m_InterfaceClass(interfaceClass) {
  setType(HC_LOC_LIBUSB);
}

LibUsbConnector::~LibUsbConnector() {
  LibUsbConnector::close();
}

int LibUsbConnector::open() {
  return setStatus(IO_FAILED);
}

int LibUsbConnector::open(int bus, int device) {
  if (m_Handle) {
    close();
  }
  luu_usb_init();
  luu_usb_find_busses();
  luu_usb_find_devices();
  for (struct usb_bus* b = luu_usb_get_busses(); b != nullptr; b = b->next) {
    if (util::toInt(b->dirname) != bus) {
      continue;
    }
    for (struct usb_device* d = b->devices; d != nullptr; d = d->next) {
      if (util::toInt(d->filename) != device || d->config == nullptr) {
        continue;
      }
      if (const struct usb_interface_descriptor* claimed = claimFirstInterface(d)) {
        findEndpoints(*claimed);
        return setStatus(IO_OK);
      }
    }
  }
  return setStatus(IO_FAILED);
}

struct usb_interface_descriptor* LibUsbConnector::claimFirstInterface(struct usb_device* dev) {
  const auto configurations = range(dev->config, dev->descriptor.bNumConfigurations);
  for (std::size_t index = 0; index < configurations.size(); ++index) {
    const auto& configuration = configurations[index];
    for (const auto& interface : range(configuration.interface, configuration.bNumInterfaces)) {
      const auto alternates = range(interface.altsetting, interface.num_altsetting);
      const auto alt = std::ranges::find(
          alternates, m_InterfaceClass,
          [](const auto& setting) -> unsigned int { return setting.bInterfaceClass; });
      if (alt != alternates.end() && claim(dev, static_cast<int>(index), &*alt)) {
        return &*alt;
      }
    }
  }
  return nullptr;
}

bool LibUsbConnector::claim(struct usb_device* dev, int configIndex,
                            struct usb_interface_descriptor* alt) {
  m_Handle.reset(luu_usb_open(dev));
  if (!m_Handle) {
    return false;
  }
  luu_usb_set_configuration(m_Handle.get(), dev->config[configIndex].bConfigurationValue);
  if (luu_usb_claim_interface(m_Handle.get(), alt->bInterfaceNumber) < 0) {
    m_Handle.reset();
    return false;
  }
  m_Interface = alt->bInterfaceNumber;
  return true;
}

void LibUsbConnector::findEndpoints(const struct usb_interface_descriptor& alt) {
  for (const auto& endpoint : range(alt.endpoint, alt.bNumEndpoints)) {
    if ((endpoint.bmAttributes & USB_ENDPOINT_TYPE_MASK) != USB_ENDPOINT_TYPE_BULK) {
      continue;
    }
    if ((endpoint.bEndpointAddress & USB_ENDPOINT_DIR_MASK) == 0) {
      m_OutEndpoint = endpoint.bEndpointAddress;
      continue;
    }
    m_InEndpoint = endpoint.bEndpointAddress;
    // Ignore a packet size of 0: a write in chunks of 0 bytes would never end.
    if (endpoint.wMaxPacketSize > 0) {
      m_InMaxPacket = endpoint.wMaxPacketSize;
    }
  }
}

int LibUsbConnector::close() {
  const PosixMutex::Lock writeLock(m_WriteMutex);
  const PosixMutex::Lock readLock(m_ReadMutex);
  if (!m_Handle) {
    return setStatus(IO_FAILED);
  }
  luu_usb_release_interface(m_Handle.get(), m_Interface);
  m_Handle.reset();
  return setStatus(IO_OK);
}

int LibUsbConnector::write(unsigned char* buf, int len) {
  if (!m_Handle) {
    return 0;
  }
  const PosixMutex::Lock lock(m_WriteMutex);
  int written = 0;
  int retries = 0;
  while (written < len) {
    const int chunk = std::min(m_InMaxPacket, len - written);
    const int result = luu_usb_bulk_write(m_Handle.get(), m_OutEndpoint,
                                          reinterpret_cast<const char*>(buf) + written, chunk,
                                          WriteTimeoutMilliseconds);
    if (result == -EPIPE) {
      setStatus(IO_BAD_DEVICE);
      break;
    }
    if (result < 0 && result != -ETIMEDOUT) {
      setStatus(IO_FAILED);
      break;
    }
    if (result > 0) {
      setStatus(IO_OK);
      written += std::min(result, chunk);
      continue;
    }
    if (result == -ETIMEDOUT) {
      luu_usb_clear_halt(m_Handle.get(), static_cast<unsigned int>(m_OutEndpoint));
    }
    setStatus(IO_TRY_AGAIN);
    if (retries == WriteRetryLimit) {
      break;
    }
    ++retries;
  }
  return written;
}

int LibUsbConnector::waitLimit(unsigned int timeout) const {
  if (m_TimeoutInSeconds) {
    timeout = std::max(timeout / MicrosecondsPerSecond, 1U);
  }
  return static_cast<int>(
      std::min(timeout, static_cast<unsigned int>(std::numeric_limits<int>::max())));
}

HCIOStatus LibUsbConnector::isReadReady(unsigned int timeout) {
  if (!m_Handle) {
    return setStatus(IO_FAILED);
  }
  const PosixMutex::Lock lock(m_ReadMutex);
  std::vector<unsigned char> packet(static_cast<std::size_t>(m_InMaxPacket));
  const int received =
      luu_usb_bulk_read(m_Handle.get(), m_InEndpoint, reinterpret_cast<char*>(packet.data()),
                        m_InMaxPacket, waitLimit(timeout));
  if (received <= 0 && received != -ETIMEDOUT) {
    // The read returned an error or an empty packet. libusb may report an error as an empty packet.
    // Every further read may return immediately too, and the caller reads again until its deadline.
    // The pause keeps the loop of the caller from using the whole processor.
    util::pauseBriefly();
  }
  if (received == 0 || received == -ETIMEDOUT) {
    return setStatus(IO_TIMEOUT);
  }
  // Drops a USB packet that does not fit into the ring, and also a USB packet that would fill the
  // ring to the last byte.
  if (received > 0 && received <= m_InMaxPacket &&
      m_RxBuffer.getAvailableSpace() > static_cast<unsigned long>(received) &&
      m_RxBuffer.writeBytes(packet.data(), static_cast<unsigned long>(received))) {
    return setStatus(IO_READ_READY);
  }
  return setStatus(IO_FAILED);
}

HCIOStatus LibUsbConnector::isWriteReady(unsigned int /*timeout*/) {
  return setStatus(IO_WRITE_READY);
}

int LibUsbConnector::read(unsigned char* buf, int len) {
  if (len <= 0) {
    return 0;
  }
  const auto wanted = static_cast<unsigned long>(len);
  while (m_RxBuffer.getAvailableBytes() < wanted && isReadReady(ReadPollTimeout) == IO_READ_READY) {
  }
  const unsigned long taken = std::min(wanted, m_RxBuffer.getAvailableBytes());
  return m_RxBuffer.readBytes(buf, taken) ? static_cast<int>(taken) : 0;
}

int LibUsbConnector::peek(unsigned char* /*buf*/, int /*len*/) {
  return 0;
}
