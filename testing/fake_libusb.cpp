#include "testing/fake_libusb.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <list>
#include <optional>
#include <utility>

#include "testing/fault_injection.h"
#include "testing/virtual_system.h"

/// usb.h only declares this type, and the program uses only pointers to it. So the double may
/// define any content.
struct usb_dev_handle {
  struct usb_device* device;
};

namespace fake_libusb {

namespace {

Library* currentLibrary = nullptr;

/// Records a call. The text in `calls` contains only the first of the numbers, which is enough to
/// distinguish the calls.
void record(const char* name, std::vector<long> numbers, std::vector<const void*> pointers) {
  const std::string first = numbers.empty() ? "" : std::to_string(numbers.front());
  currentLibrary->calls.emplace_back(std::string(name) + "(" + first + ")");
  currentLibrary->lastNumbers = std::move(numbers);
  currentLibrary->lastPointers = std::move(pointers);
}

void advanceClock(int milliseconds) {
  if (virtual_system::System::current() != nullptr) {
    virtual_system::System::current()->advance(milliseconds * 1000LL);
  }
}

}  // namespace

struct Library::Storage {
  struct usb_device device {};
  std::vector<struct usb_config_descriptor> configurations;
  std::list<std::vector<struct usb_interface>> interfaces;
  std::list<std::vector<struct usb_interface_descriptor>> alternates;
  std::list<std::vector<struct usb_endpoint_descriptor>> endpoints;
};

Library::Library() {
  currentLibrary = this;
}

Library::~Library() {
  currentLibrary = nullptr;
}

Library* Library::current() {
  return currentLibrary;
}

std::ptrdiff_t Library::count(const std::string& call) const {
  return std::ranges::count(calls, call);
}

struct usb_device* Library::addDevice(const std::string& bus, const std::string& name,
                                      std::vector<Configuration> configurations) {
  auto& storage = *m_Storage.emplace_back(std::make_unique<Storage>());
  for (const Configuration& configuration : configurations) {
    auto& interfaces = storage.interfaces.emplace_back();
    for (const Interface& interface : configuration.interfaces) {
      auto& alternates = storage.alternates.emplace_back();
      for (const Alternate& alternate : interface) {
        auto& endpoints = storage.endpoints.emplace_back();
        for (const Endpoint& endpoint : alternate.endpoints) {
          struct usb_endpoint_descriptor descriptor {};
          descriptor.bEndpointAddress = endpoint.address;
          descriptor.bmAttributes = endpoint.attributes;
          descriptor.wMaxPacketSize = endpoint.maxPacketSize;
          endpoints.push_back(descriptor);
        }
        struct usb_interface_descriptor descriptor {};
        descriptor.bInterfaceClass = alternate.interfaceClass;
        descriptor.bInterfaceNumber = alternate.interfaceNumber;
        descriptor.bNumEndpoints = static_cast<std::uint8_t>(endpoints.size());
        descriptor.endpoint = endpoints.empty() ? nullptr : endpoints.data();
        alternates.push_back(descriptor);
      }
      interfaces.push_back({alternates.data(), static_cast<int>(alternates.size())});
    }
    struct usb_config_descriptor descriptor {};
    descriptor.bConfigurationValue = configuration.value;
    descriptor.bNumInterfaces = static_cast<std::uint8_t>(interfaces.size());
    descriptor.interface = interfaces.data();
    storage.configurations.push_back(descriptor);
  }
  struct usb_device& device = storage.device;
  std::snprintf(device.filename, sizeof device.filename, "%s", name.c_str());
  // The device descriptor contains the count of configurations even if the configurations could not
  // be read.
  device.descriptor.bNumConfigurations =
      static_cast<std::uint8_t>(std::max<std::size_t>(configurations.size(), 1));
  device.config = storage.configurations.empty() ? nullptr : storage.configurations.data();

  struct usb_bus** link = &m_FirstBus;
  while (*link != nullptr && bus != (*link)->dirname) {
    link = &(*link)->next;
  }
  if (*link == nullptr) {
    *link = m_Buses.emplace_back(std::make_unique<struct usb_bus>()).get();
    std::snprintf((*link)->dirname, sizeof(*link)->dirname, "%s", bus.c_str());
  }
  device.bus = *link;
  struct usb_device** last = &(*link)->devices;
  while (*last != nullptr) {
    last = &(*last)->next;
  }
  *last = &device;
  return &device;
}

struct usb_device* Library::addPrinter(const std::string& bus, const std::string& name) {
  return addDevice(bus, name,
                   {{.value = 1,
                     .interfaces = {{{.interfaceClass = 7,
                                      .interfaceNumber = 0,
                                      .endpoints = {{0x81, 2, 64}, {0x02, 2, 64}}}}}}});
}

}  // namespace fake_libusb

using fake_libusb::Bytes;
using fake_libusb::currentLibrary;
using fake_libusb::record;
using support::InterceptedCall;

namespace {

/// Returns the result of a bulk transfer that fails or moves no bytes. Otherwise returns
/// `std::nullopt` and limits `size` to the bytes that the transfer may move.
std::optional<int> cut(const InterceptedCall& call, int& size, int timeout) {
  auto most = static_cast<std::size_t>(size);
  const auto failure = call.cut(most);
  size = static_cast<int>(most);
  if (call.result() == -ETIMEDOUT) {
    fake_libusb::advanceClock(timeout);
  }
  return failure ? std::optional(call.result()) : std::nullopt;
}

}  // namespace

extern "C" {

void usb_init() {
  const InterceptedCall call("usb_init");
  record("usb_init", {}, {});
}

int usb_find_busses() {
  const InterceptedCall call("usb_find_busses");
  record("usb_find_busses", {}, {});
  return call.fails() ? call.result() : currentLibrary->unusedResult;
}

int usb_find_devices() {
  const InterceptedCall call("usb_find_devices");
  record("usb_find_devices", {}, {});
  return call.fails() ? call.result() : currentLibrary->unusedResult;
}

struct usb_bus* usb_get_busses() {
  const InterceptedCall call("usb_get_busses");
  record("usb_get_busses", {}, {});
  return call.fails() ? nullptr : currentLibrary->firstBus();
}

usb_dev_handle* usb_open(struct usb_device* dev) {
  const InterceptedCall call("usb_open");
  record("usb_open", {}, {dev});
  if (currentLibrary->onOpen) {
    currentLibrary->onOpen(dev);
  }
  if (!currentLibrary->opens || call.fails()) {
    return nullptr;
  }
  ++currentLibrary->openHandles;
  return new usb_dev_handle{dev};
}

int usb_close(usb_dev_handle* dev) {
  const InterceptedCall call("usb_close");
  record("usb_close", {}, {dev});
  --currentLibrary->openHandles;
  delete dev;
  return call.fails() ? call.result() : currentLibrary->unusedResult;
}

int usb_set_configuration(usb_dev_handle* dev, int configuration) {
  const InterceptedCall call("usb_set_configuration");
  record("usb_set_configuration", {configuration}, {dev});
  return call.fails() ? call.result() : currentLibrary->setConfiguration;
}

int usb_claim_interface(usb_dev_handle* dev, int interface) {
  const InterceptedCall call("usb_claim_interface");
  record("usb_claim_interface", {interface}, {dev});
  if (call.fails()) {
    return call.result();
  }
  return currentLibrary->claim ? currentLibrary->claim(interface) : 0;
}

int usb_release_interface(usb_dev_handle* dev, int interface) {
  const InterceptedCall call("usb_release_interface");
  record("usb_release_interface", {interface}, {dev});
  return call.fails() ? call.result() : currentLibrary->unusedResult;
}

int usb_bulk_write(usb_dev_handle* dev, int ep, const char* bytes, int size, int timeout) {
  const InterceptedCall call("usb_bulk_write");
  record("usb_bulk_write", {ep, size, timeout}, {dev, bytes});
  currentLibrary->chunkSizes.push_back(size);
  currentLibrary->writeTimeouts.push_back(timeout);
  if (const auto failure = cut(call, size, timeout)) {
    return *failure;
  }
  const auto* first = reinterpret_cast<const std::uint8_t*>(bytes);
  const int result =
      currentLibrary->bulkWrite ? currentLibrary->bulkWrite(Bytes(first, first + size)) : size;
  if (result == -ETIMEDOUT) {
    fake_libusb::advanceClock(timeout);
  }
  if (result > 0) {
    currentLibrary->written.emplace_back(first, first + result);
  }
  return result;
}

int usb_bulk_read(usb_dev_handle* dev, int ep, char* bytes, int size, int timeout) {
  const InterceptedCall call("usb_bulk_read");
  record("usb_bulk_read", {ep, size, timeout}, {dev, bytes});
  currentLibrary->readSizes.push_back(size);
  currentLibrary->readTimeouts.push_back(timeout);
  if (const auto failure = cut(call, size, timeout)) {
    return *failure;
  }
  if (currentLibrary->bulkRead) {
    return currentLibrary->bulkRead(bytes, size);
  }
  Bytes& incoming = currentLibrary->incoming;
  if (incoming.empty()) {
    fake_libusb::advanceClock(timeout);
    return -ETIMEDOUT;
  }
  const auto count = std::min<std::size_t>(incoming.size(), static_cast<std::size_t>(size));
  std::copy_n(incoming.begin(), count, reinterpret_cast<std::uint8_t*>(bytes));
  incoming.erase(incoming.begin(), incoming.begin() + static_cast<std::ptrdiff_t>(count));
  return static_cast<int>(count);
}

int usb_clear_halt(usb_dev_handle* dev, unsigned int ep) {
  const InterceptedCall call("usb_clear_halt");
  record("usb_clear_halt", {static_cast<long>(ep)}, {dev});
  return call.fails() ? call.result() : currentLibrary->unusedResult;
}

int usb_set_altinterface(usb_dev_handle* dev, int alternate) {
  record("usb_set_altinterface", {alternate}, {dev});
  return currentLibrary->unusedResult;
}

int usb_control_msg(usb_dev_handle* dev, int requesttype, int request, int value, int index,
                    char* bytes, int size, int timeout) {
  record("usb_control_msg", {requesttype, request, value, index, size, timeout}, {dev, bytes});
  return currentLibrary->unusedResult;
}

char* usb_strerror() {
  record("usb_strerror", {}, {});
  static char text[] = "no error";
  return text;
}

int usb_get_string_simple(usb_dev_handle* dev, int index, char* buf, size_t buflen) {
  record("usb_get_string_simple", {index, static_cast<long>(buflen)}, {dev, buf});
  return currentLibrary->unusedResult;
}

}  // extern "C"
