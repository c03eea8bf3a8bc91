// The transport over USB: which connector a path selects, and how long reads and writes wait.

#include "transport/hcusb_transport.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include "transport/lib_usb_connector.h"
#include "transport/usblp_connector.h"
#include "util/clock.h"
#include "util/deadline.h"
#include "util/debug_line.h"
#include "util/decimal.h"

namespace {

/// The USB class code of printers.
constexpr unsigned char PrinterClass = 7;
/// The path of the kernel's device files, without their number.
constexpr const char* DevicePrefix = "/dev/usb/lp";
/// 1 ms for usblp, which counts in microseconds; 1 s for libusb, which counts in milliseconds.
constexpr unsigned int ProbeTimeout = 1000;
/// How long a read waits for the next byte.
constexpr std::time_t SilenceLimitSeconds = 5;
/// `SilenceLimitSeconds` in microseconds, the unit of the probe over usblp.
constexpr unsigned int SilenceLimitMicroseconds = 5'000'000;
/// How long the transport continues to write a request after a short first write.
constexpr std::time_t WriteLimitSeconds = 5;
/// How many characters a bus number or a device number has at most.
constexpr std::size_t AddressPartLimit = 9;

/// Returns the number after "usblp", or after "/lp" if there is no "usblp". Returns nothing if the
/// path has neither.
std::optional<int> usblpNumber(std::string_view path) {
  for (const std::string_view name : {"usblp", "/lp"}) {
    if (const std::size_t position = path.find(name); position != std::string_view::npos) {
      return util::toInt(path.substr(position + name.size()));
    }
  }
  return std::nullopt;
}

/// Returns the bus and device number of "BUS:DEVICE". Returns nothing if there is no colon or a
/// part has more than 9 characters.
std::optional<std::pair<int, int>> libUsbAddress(std::string_view path) {
  const std::size_t colon = path.find(':');
  if (colon == std::string_view::npos) {
    return std::nullopt;
  }
  const std::string_view bus = path.substr(0, colon);
  const std::string_view device = path.substr(colon + 1);
  if (bus.size() > AddressPartLimit || device.size() > AddressPartLimit) {
    return std::nullopt;
  }
  return std::pair(util::toInt(bus), util::toInt(device));
}

/// Returns the size, or the largest `int` if the size is larger: connectors count in `int`.
int narrowed(unsigned long len) {
  return static_cast<int>(
      std::min(len, static_cast<unsigned long>(std::numeric_limits<int>::max())));
}

}  // namespace

std::unique_ptr<HCUSBTransport> HCUSBTransport::m_Instance;
int HCUSBTransport::m_RefCount = 0;

HCUSBTransport* HCUSBTransport::GetInstance() {
  if (!m_Instance) {
    m_Instance.reset(new HCUSBTransport());
  }
  ++m_RefCount;
  return m_Instance.get();
}

void HCUSBTransport::DestroyInstance() {
  --m_RefCount;
  if (m_RefCount == 0) {
    util::debugLine("Destroying last instance of usb transport.");
    m_Instance.reset();
  }
}

int HCUSBTransport::CT_Open(const char* path) {
  if (m_Connector) {
    m_Connector->close();
    m_Connector.reset();
  }
  const std::string_view name = path == nullptr ? std::string_view() : path;
  int result = -1;
  if (name.find("/dev/usb") != std::string_view::npos) {
    if (const auto number = usblpNumber(name)) {
      result = openUsblp(*number);
    }
  } else if (const auto address = libUsbAddress(name)) {
    result = openLibUsb(address->first, address->second);
  }
  return result;
}

int HCUSBTransport::openUsblp(int number) {
  m_Connector = std::make_unique<USBLPConnector>(DevicePrefix, number);
  return m_Connector->open() == 0 ? 0 : -1;
}

int HCUSBTransport::openLibUsb(int bus, int device) {
  auto connector = std::make_unique<LibUsbConnector>(PrinterClass);
  const int opened = connector->open(bus, device);
  m_Connector = std::move(connector);
  return opened == 0 ? 0 : -1;
}

int HCUSBTransport::CT_Close() {
  return m_Connector && m_Connector->close() == 0 ? 0 : -1;
}

long HCUSBTransport::CT_Read(unsigned char* buf, unsigned long len) {
  if (!m_Connector) {
    return 0;
  }
  const int wanted = narrowed(len);
  const int first = m_Connector->read(buf, wanted);
  const int got = first == wanted ? first : readRest(buf, std::max(first, 0), wanted);
  observe(Direction::FromPrinter, buf, got);
  return got;
}

int HCUSBTransport::readRest(unsigned char* buf, int got, int wanted) {
  // Ends the loop if the printer is unplugged: then the device always reports that it is ready, and
  // never returns a byte.
  util::Deadline readyWithoutByte(SilenceLimitSeconds);
  while (got < wanted && !readyWithoutByte.hasPassed()) {
    const std::time_t start = util::nowInSeconds();
    HCIOStatus status = m_Connector->isReadReady(probeTimeout());
    while (status == IO_TIMEOUT && util::nowInSeconds() - start < SilenceLimitSeconds) {
      status = m_Connector->isReadReady(probeTimeout());
      readyWithoutByte.restart();
    }
    if (status != IO_READ_READY) {
      break;
    }
    const int count = m_Connector->read(buf + got, wanted - got);
    if (count > 0) {
      got += count;
      readyWithoutByte.restart();
    } else {
      readyWithoutByte.pause();
    }
  }
  return got;
}

unsigned int HCUSBTransport::probeTimeout() const {
  const bool blocks = m_Waiting == Waiting::Blocking && m_Connector->getType() == HC_LOC_USBLP;
  return blocks ? SilenceLimitMicroseconds : ProbeTimeout;
}

void HCUSBTransport::observe(Direction direction, const unsigned char* bytes, long count) const {
  if (m_Observer && count > 0) {
    m_Observer(direction, {bytes, static_cast<std::size_t>(count)});
  }
}

long HCUSBTransport::CT_Write(unsigned char* buf, unsigned long len, unsigned long /*timeout*/) {
  const long taken = m_Connector ? m_Connector->write(buf, narrowed(len)) : -1;
  observe(Direction::ToPrinter, buf, taken);
  return taken;
}

void HCUSBTransport::CT_RegisterReadCallback(int (* /*callback*/)(unsigned char*, int)) {}

long HCUSBTransport::writeRequest(std::span<unsigned char> request) {
  const long written = CT_Write(request.data(), request.size(), 0);
  if (written <= 0 || m_Connector->getType() != HC_LOC_USBLP) {
    return written;
  }
  auto rest = request.subspan(static_cast<std::size_t>(written));
  util::Deadline deadline(WriteLimitSeconds);
  while (!rest.empty() && !deadline.hasPassed()) {
    // A write leaves the status unchanged after most errors. The probe sets another status, so a
    // later IO_TRY_AGAIN is the status of this write and not of an earlier write.
    m_Connector->isWriteReady(0);
    const long count = CT_Write(rest.data(), rest.size(), 0);
    if (count > 0) {
      rest = rest.subspan(static_cast<std::size_t>(count));
    } else if (count == 0 || m_Connector->getLastError() == IO_TRY_AGAIN ||
               (m_Waiting == Waiting::Blocking && m_Connector->getLastError() == IO_INTERRUPTED)) {
      deadline.pause();
    } else {
      break;
    }
  }
  return static_cast<long>(request.size() - rest.size());
}
