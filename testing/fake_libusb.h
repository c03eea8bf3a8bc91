#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <usb.h>
#include <vector>

/// A test double of libusb 0.1. The usb_... functions of the double return the results that a test
/// sets, and record their calls. A hook is a `std::function` that a test can set to replace the
/// default behaviour of a call.
namespace fake_libusb {

using Bytes = std::vector<std::uint8_t>;

struct Endpoint {
  std::uint8_t address;
  std::uint8_t attributes;
  std::uint16_t maxPacketSize;
};

struct Alternate {
  std::uint8_t interfaceClass;
  std::uint8_t interfaceNumber;
  std::vector<Endpoint> endpoints;
};

using Interface = std::vector<Alternate>;

struct Configuration {
  std::uint8_t value;
  std::vector<Interface> interfaces;
};

/// The state of the double during one test. The usb_... functions work only while exactly one
/// object of this class exists.
class Library {
 public:
  Library();
  ~Library();
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  /// Adds a device to a bus. `bus` and `name` are texts like "001". If `configurations` is empty,
  /// the device has no configuration array, as if its descriptors could not be read. The library
  /// owns the device.
  struct usb_device* addDevice(const std::string& bus, const std::string& name,
                               std::vector<Configuration> configurations);

  /// Adds a printer with the bulk endpoints 0x81 and 0x02. Their USB packets have at most 64 bytes.
  struct usb_device* addPrinter(const std::string& bus, const std::string& name);

  // Results of the calls.
  bool opens = true;                                     ///< if false, usb_open returns nullptr
  std::function<void(const struct usb_device*)> onOpen;  ///< called by usb_open
  std::function<int(int interface)> claim;               ///< default: returns 0
  std::function<int(const Bytes&)> bulkWrite;            ///< default: returns the count of bytes
  /// Default: returns bytes of `incoming`. If `incoming` is empty, returns -ETIMEDOUT.
  std::function<int(char* buffer, int size)> bulkRead;
  int setConfiguration = 0;  ///< result of usb_set_configuration
  int unusedResult = 0;      ///< result of the calls whose result the program ignores
  /// The bytes that the next bulk reads return. Each read returns as many of them as fit into its
  /// buffer.
  Bytes incoming;

  // Record of the calls.
  std::vector<std::string> calls;  ///< e.g. "usb_claim_interface(0)"
  std::vector<Bytes> written;      ///< the bytes that each bulk write accepted
  std::vector<int> chunkSizes;     ///< the size of each bulk write
  std::vector<int> readSizes;      ///< the buffer size of each bulk read
  std::vector<int> readTimeouts;   ///< milliseconds
  std::vector<int> writeTimeouts;  ///< milliseconds
  /// The arguments of the last call: its numbers in order, and its pointers in order.
  std::vector<long> lastNumbers;
  std::vector<const void*> lastPointers;
  int openHandles = 0;

  /// Returns how many times `call` was made, e.g. "usb_close()".
  std::ptrdiff_t count(const std::string& call) const;

  /// Returns the existing object of this class, or nullptr if there is none.
  static Library* current();
  struct usb_bus* firstBus() {
    return m_FirstBus;
  }

 private:
  struct Storage;
  std::vector<std::unique_ptr<Storage>> m_Storage;
  std::vector<std::unique_ptr<struct usb_bus>> m_Buses;
  struct usb_bus* m_FirstBus = nullptr;
};

}  // namespace fake_libusb
