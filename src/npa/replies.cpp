// Reads the values in raw replies.

#include "npa/replies.h"

#include <algorithm>

namespace npa {

namespace {

/// The size in bytes of the length field between the repeated request and the value.
constexpr std::size_t ValueLengthSize = 2;

}  // namespace

bool isRefusal(std::span<const Byte> reply) {
  return reply.size() > FlagOffset && reply[FlagOffset] == FlagRefused;
}

std::optional<std::string_view> ssidIn(std::span<const Byte> reply, std::size_t requestSize) {
  const std::size_t start = requestSize + ValueLengthSize;
  if (reply.size() <= start) {
    return std::nullopt;
  }
  const auto field = reply.subspan(start);
  const auto size = std::ranges::find(field, Byte{0}) - field.begin();
  return std::string_view(reinterpret_cast<const char*>(field.data()),
                          static_cast<std::size_t>(size));
}

std::optional<Address> addressIn(std::span<const Byte> reply) {
  Address address{};
  if (reply.size() < address.size()) {
    return std::nullopt;
  }
  std::ranges::copy(reply.last(address.size()), address.begin());
  return address == Address{} ? std::nullopt : std::optional(address);
}

std::optional<Byte> troubleCodeIn(std::span<const Byte> reply) {
  return reply.empty() ? std::nullopt : std::optional(reply.back());
}

}  // namespace npa
