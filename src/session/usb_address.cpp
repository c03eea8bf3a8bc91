// Texts of USB addresses.

#include "session/usb_address.h"

#include "session/texts.h"
#include "util/format.h"

namespace session {

std::optional<UsbAddress> UsbAddress::parse(std::string_view text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) {
    return std::nullopt;
  }
  const auto bus = decimalNumber(text.substr(0, colon));
  const auto device = decimalNumber(text.substr(colon + 1));
  return bus && device ? std::optional(UsbAddress{*bus, *device}) : std::nullopt;
}

std::string UsbAddress::text() const {
  return util::formatted("%d:%d", bus, device);
}

std::string UsbAddress::node(const Machine& machine) const {
  return machine.devices + util::formatted("/bus/usb/%03d/%03d", bus, device);
}

}  // namespace session
