#pragma once

#include "transport/hcusb_transport.h"

namespace support {

/// A user of the shared transport. The destructor releases the transport.
///
///     const TransportUser transport;
///     transport->CT_Open("/dev/usb/lp0");
class TransportUser {
 public:
  TransportUser() : m_Transport(HCUSBTransport::GetInstance()) {}
  ~TransportUser() { HCUSBTransport::DestroyInstance(); }
  TransportUser(const TransportUser&) = delete;
  TransportUser& operator=(const TransportUser&) = delete;

  HCUSBTransport* operator->() const { return m_Transport; }

 private:
  HCUSBTransport* m_Transport;
};

}  // namespace support
