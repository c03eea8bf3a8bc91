#include "threads/loopback_libusb.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <deque>
#include <mutex>
#include <usb.h>

namespace {

/// The printer and its bus in the structures of libusb.
struct Printer {
  std::array<usb_endpoint_descriptor, 2> endpoints{};
  usb_interface_descriptor alternate{};
  usb_interface interface {};
  usb_config_descriptor configuration{};
  struct usb_device device {};
  usb_bus bus{};

  std::mutex mutex;
  std::deque<char> bytes;

  Printer() {
    for (usb_endpoint_descriptor& endpoint : endpoints) {
      endpoint.bmAttributes = USB_ENDPOINT_TYPE_BULK;
      endpoint.wMaxPacketSize = loopback_libusb::PacketSize;
    }
    endpoints[0].bEndpointAddress = 0x81;
    endpoints[1].bEndpointAddress = 0x02;
    alternate.bInterfaceClass = USB_CLASS_PRINTER;
    alternate.bNumEndpoints = static_cast<std::uint8_t>(endpoints.size());
    alternate.endpoint = endpoints.data();
    interface.altsetting = &alternate;
    interface.num_altsetting = 1;
    configuration.bConfigurationValue = 1;
    configuration.bNumInterfaces = 1;
    configuration.interface = &interface;
    device.descriptor.bNumConfigurations = 1;
    device.config = &configuration;
    device.bus = &bus;
    std::strcpy(device.filename, "002");
    std::strcpy(bus.dirname, "001");
    bus.devices = &device;
  }
};

Printer& printer() {
  static Printer instance;
  return instance;
}

}  // namespace

std::size_t loopback_libusb::waiting() {
  const std::scoped_lock lock(printer().mutex);
  return printer().bytes.size();
}

extern "C" {

void usb_init() {}

int usb_find_busses() {
  return 1;
}

int usb_find_devices() {
  return 1;
}

usb_bus* usb_get_busses() {
  return &printer().bus;
}

usb_dev_handle* usb_open(struct usb_device* dev) {
  return reinterpret_cast<usb_dev_handle*>(dev);
}

int usb_close(usb_dev_handle* /*dev*/) {
  return 0;
}

int usb_set_configuration(usb_dev_handle* /*dev*/, int /*configuration*/) {
  return 0;
}

int usb_claim_interface(usb_dev_handle* /*dev*/, int /*interface*/) {
  return 0;
}

int usb_release_interface(usb_dev_handle* /*dev*/, int /*interface*/) {
  return 0;
}

int usb_bulk_write(usb_dev_handle* /*dev*/, int /*ep*/, const char* bytes, int size,
                   int /*timeout*/) {
  const std::scoped_lock lock(printer().mutex);
  printer().bytes.insert(printer().bytes.end(), bytes, bytes + size);
  return size;
}

int usb_bulk_read(usb_dev_handle* /*dev*/, int /*ep*/, char* bytes, int size, int /*timeout*/) {
  const std::scoped_lock lock(printer().mutex);
  std::deque<char>& waiting = printer().bytes;
  if (waiting.empty()) {
    return -ETIMEDOUT;
  }
  const auto count = std::min(static_cast<std::ptrdiff_t>(size), std::ssize(waiting));
  std::copy_n(waiting.begin(), count, bytes);
  waiting.erase(waiting.begin(), waiting.begin() + count);
  return static_cast<int>(count);
}

int usb_clear_halt(usb_dev_handle* /*dev*/, unsigned int /*ep*/) {
  return 0;
}

int usb_set_altinterface(usb_dev_handle* /*dev*/, int /*alternate*/) {
  return 0;
}

int usb_control_msg(usb_dev_handle* /*dev*/, int /*requesttype*/, int /*request*/, int /*value*/,
                    int /*index*/, char* /*bytes*/, int /*size*/, int /*timeout*/) {
  return 0;
}

char* usb_strerror() {
  return nullptr;
}

int usb_get_string_simple(usb_dev_handle* /*dev*/, int /*index*/, char* /*buf*/,
                          std::size_t /*buflen*/) {
  return 0;
}

}  // extern "C"
