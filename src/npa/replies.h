#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "npa/packet.h"

/// Functions that read one value from the adapter's raw reply. Each function checks the size of the
/// reply, and returns nothing if the value did not arrive:
///
///     if (const auto code = npa::troubleCodeIn(reply)) { ... }
namespace npa {

/// Returns true if the reply is a refusal: its flag byte is 0xD4.
[[nodiscard]] bool isRefusal(std::span<const Byte> reply);

/// Returns the SSID in the reply to a query of `requestSize` bytes, up to its first zero byte. The
/// view refers to `reply`. Returns nothing if the reply ends before the SSID.
///
/// The reply repeats the request, with larger length fields. Two bytes with the length of the value
/// follow, then the SSID.
[[nodiscard]] std::optional<std::string_view> ssidIn(std::span<const Byte> reply,
                                                     std::size_t requestSize);

/// The bytes of an IPv4 address: {192, 168, 1, 20} is 192.168.1.20.
using Address = std::array<Byte, 4>;

/// Returns the IPv4 address in the last four bytes of the reply. Returns nothing if the reply has
/// fewer than four bytes or the address is 0.0.0.0, which the adapter sends until it has an
/// address.
[[nodiscard]] std::optional<Address> addressIn(std::span<const Byte> reply);

/// Returns the trouble code, which is the last byte of the reply; 0 means no trouble. Returns
/// nothing if the reply is empty.
[[nodiscard]] std::optional<Byte> troubleCodeIn(std::span<const Byte> reply);

}  // namespace npa
