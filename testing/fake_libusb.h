#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <usb.h>
#include <vector>

/// A libusb 0.1 without a bus: the usb_... functions that the program calls, answered from what a
/// test set up, and recorded.
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

/// Makes the functions answer for the life of one test.
class Library {
 public:
  Library();
  ~Library();
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  /// Puts a device on the bus; both names are texts like "001". Without `configurations` the device
  /// has no configuration array, as when its descriptors could not be read.
  struct usb_device* addDevice(const std::string& bus, const std::string& name,
                               std::vector<Configuration> configurations);

  /// A printer with bulk endpoints 0x81 and 0x02 of 64 bytes at `bus`:`name`.
  struct usb_device* addPrinter(const std::string& bus, const std::string& name);

  // What the calls answer.
  bool opens = true;                                     ///< usb_open gives a handle
  std::function<void(const struct usb_device*)> onOpen;  ///< called by usb_open
  std::function<int(int interface)> claim;               ///< default 0
  std::function<int(const Bytes&)> bulkWrite;            ///< default: all of it
  std::function<int(char* buffer, int size)> bulkRead;   ///< default: a time-out
  int setConfiguration = 0;                              ///< usb_set_configuration
  /// What the calls give that the program makes no use of.
  int idleResult = 0;
  /// Bytes that arrive with the next bulk reads, at most one packet each.
  Bytes incoming;

  // What was asked.
  std::vector<std::string> calls;  ///< e.g. "usb_claim_interface(0)"
  std::vector<Bytes> written;      ///< what each bulk write took
  std::vector<int> chunkSizes;     ///< what each bulk write was asked to take
  std::vector<int> readSizes;      ///< what each bulk read had room for
  std::vector<int> readTimeouts;   ///< milliseconds
  std::vector<int> writeTimeouts;  ///< milliseconds
  /// The arguments of the last call, numbers and pointers apart, each in order.
  std::vector<long> lastNumbers;
  std::vector<const void*> lastPointers;
  int openHandles = 0;

  /// How often the call `call` was made, e.g. "usb_close()".
  std::ptrdiff_t count(const std::string& call) const;

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
