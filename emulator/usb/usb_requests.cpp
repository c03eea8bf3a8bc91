// UsbDevice: the requests on the control endpoint (USB 2.0, section 9.4; USB printer class 1.1,
// section 4.2). The device stalls a request that is not in the table. It also stalls a request that
// it cannot carry out in its current state.

#include <algorithm>
#include <array>

#include "emulator/usb/usb_descriptors.h"
#include "emulator/usb/usb_device.h"
#include "npa/packet.h"

namespace emulator {

namespace {

using npa::Byte;

// The bits that the replies to GET_STATUS can have.
constexpr Byte SelfPoweredStatus = 1;
constexpr Byte HaltedStatus = 1;
constexpr std::uint16_t FeatureEndpointHalt = 0;
/// The printer is selected, has no error and is not out of paper.
constexpr Byte PortStatus = 0x18;
constexpr unsigned HighestAddress = 127;

/// Returns a status of two bytes, low byte first.
npa::Bytes status(Byte low) {
  return {low, 0};
}

}  // namespace

struct UsbDevice::Request {
  Byte type;  ///< direction, kind and recipient in one byte (USB 2.0, table 9-2)
  Byte code;
  std::optional<npa::Bytes> (UsbDevice::*answer)(const UsbSetup& setup);
};

std::optional<npa::Bytes> UsbDevice::answer(const UsbSetup& setup) {
  static constexpr std::array requests = {
      Request{0x80, 0x06, &UsbDevice::getDescriptor},
      Request{0x00, 0x05, &UsbDevice::setAddress},
      Request{0x80, 0x08, &UsbDevice::getConfiguration},
      Request{0x00, 0x09, &UsbDevice::setConfiguration},
      Request{0x81, 0x0A, &UsbDevice::getInterface},
      Request{0x01, 0x0B, &UsbDevice::setInterface},
      Request{0x80, 0x00, &UsbDevice::deviceStatus},
      Request{0x81, 0x00, &UsbDevice::interfaceStatus},
      Request{0x82, 0x00, &UsbDevice::endpointStatus},
      Request{0x02, 0x01, &UsbDevice::clearHalt},
      Request{0x02, 0x03, &UsbDevice::setHalt},
      Request{0xA1, 0x00, &UsbDevice::getDeviceId},
      Request{0xA1, 0x01, &UsbDevice::getPortStatus},
      Request{0x21, 0x02, &UsbDevice::softReset},
      // Version 1.0 of the printer class gives this type to the soft reset. Drivers still send it.
      Request{0x23, 0x02, &UsbDevice::softReset},
  };
  const auto* const found = std::ranges::find_if(requests, [&](const Request& request) {
    return request.type == setup.type && request.code == setup.request;
  });
  return found == requests.end() ? std::nullopt : (this->*found->answer)(setup);
}

bool UsbDevice::isInterface(const UsbSetup& setup) const {
  return m_Configuration != 0 && setup.index == 0;
}

bool UsbDevice::hasAlternate(std::size_t number) const {
  return m_Configuration != 0 && number < m_Traits.alternates;
}

UsbPipe* UsbDevice::pipeAt(unsigned address) {
  if (m_Configuration == 0) {
    return nullptr;
  }
  if (address == EndpointOut) {
    return &m_Out;
  }
  return address == EndpointIn && hasInEndpoint(m_Traits, m_Alternate) ? &m_In : nullptr;
}

std::optional<npa::Bytes> UsbDevice::getDescriptor(const UsbSetup& setup) {
  return usbDescriptor(m_Traits, npa::highByte(setup.value), npa::lowByte(setup.value));
}

// Accepts the address and does not store it: the host controller addresses the device.
std::optional<npa::Bytes> UsbDevice::setAddress(const UsbSetup& setup) {
  return setup.value <= HighestAddress ? std::optional(npa::Bytes()) : std::nullopt;
}

std::optional<npa::Bytes> UsbDevice::getConfiguration(const UsbSetup& /*setup*/) {
  return npa::Bytes{m_Configuration};
}

std::optional<npa::Bytes> UsbDevice::setConfiguration(const UsbSetup& setup) {
  if (setup.value > UsbConfigurationValue) {
    return std::nullopt;
  }
  m_Configuration = npa::lowByte(setup.value);
  m_Alternate = 0;
  clearHalts();
  return npa::Bytes();
}

std::optional<npa::Bytes> UsbDevice::getInterface(const UsbSetup& setup) {
  return isInterface(setup) ? std::optional(npa::Bytes{m_Alternate}) : std::nullopt;
}

std::optional<npa::Bytes> UsbDevice::setInterface(const UsbSetup& setup) {
  if (!isInterface(setup) || !hasAlternate(setup.value)) {
    return std::nullopt;
  }
  m_Alternate = npa::lowByte(setup.value);
  clearHalts();
  return npa::Bytes();
}

std::optional<npa::Bytes> UsbDevice::deviceStatus(const UsbSetup& setup) {
  return setup.index == 0 ? std::optional(status(SelfPoweredStatus)) : std::nullopt;
}

std::optional<npa::Bytes> UsbDevice::interfaceStatus(const UsbSetup& setup) {
  return isInterface(setup) ? std::optional(status(0)) : std::nullopt;
}

std::optional<npa::Bytes> UsbDevice::endpointStatus(const UsbSetup& setup) {
  // The control endpoint always exists, in both directions, and is never halted.
  if ((setup.index & ~unsigned{EndpointDirectionIn}) == 0) {
    return status(0);
  }
  const UsbPipe* const pipe = pipeAt(setup.index);
  if (pipe == nullptr) {
    return std::nullopt;
  }
  return status(pipe->isHalted() ? HaltedStatus : 0);
}

std::optional<npa::Bytes> UsbDevice::clearHalt(const UsbSetup& setup) {
  UsbPipe* const pipe = pipeAt(setup.index);
  if (setup.value != FeatureEndpointHalt || pipe == nullptr) {
    return std::nullopt;
  }
  pipe->clearHalt();
  return npa::Bytes();
}

std::optional<npa::Bytes> UsbDevice::setHalt(const UsbSetup& setup) {
  UsbPipe* const pipe = pipeAt(setup.index);
  if (setup.value != FeatureEndpointHalt || pipe == nullptr) {
    return std::nullopt;
  }
  pipe->halt();
  return npa::Bytes();
}

// The high byte of the index is the interface, its low byte the alternate setting. The value is the
// index of the configuration, counted from 0.
std::optional<npa::Bytes> UsbDevice::getDeviceId(const UsbSetup& setup) {
  return setup.value == 0 && hasAlternate(setup.index) ? std::optional(deviceId(m_Traits))
                                                       : std::nullopt;
}

std::optional<npa::Bytes> UsbDevice::getPortStatus(const UsbSetup& setup) {
  return isInterface(setup) ? std::optional(npa::Bytes{PortStatus}) : std::nullopt;
}

std::optional<npa::Bytes> UsbDevice::softReset(const UsbSetup& setup) {
  if (!isInterface(setup)) {
    return std::nullopt;
  }
  m_Log.note("USB: reset by the host");
  forgetBytes();
  clearHalts();
  return npa::Bytes();
}

}  // namespace emulator
