#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "npa/packet.h"

/// What the adapter's raw replies say. Each reader checks the length first: a byte that did not
/// arrive counts as no value.
namespace npa {

/// Whether the reply refuses the request: its flag byte is 0xD4.
[[nodiscard]] bool isRefusal(std::span<const Byte> reply);

/// Returns the SSID in the reply to a query of `requestSize` bytes, up to its first zero byte. The
/// view is into `reply`. Returns nothing if the reply ends before the SSID.
///
/// The reply repeats the request and adds two bytes for the value's length: the SSID follows these.
[[nodiscard]] std::optional<std::string_view> ssidIn(std::span<const Byte> reply,
                                                     std::size_t requestSize);

using Address = std::array<Byte, 4>;

/// Returns the IPv4 address that ends the reply. Returns nothing if it is 0.0.0.0, which the
/// adapter sends until it has one, or if the reply has fewer than four bytes.
[[nodiscard]] std::optional<Address> addressIn(std::span<const Byte> reply);

/// Returns the trouble code, the reply's last byte; 0 is no trouble. Returns nothing for an empty
/// reply.
[[nodiscard]] std::optional<Byte> troubleCodeIn(std::span<const Byte> reply);

}  // namespace npa
