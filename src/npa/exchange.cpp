// The table of exchanges, and the functions that recognise the expected replies.

#include "npa/exchange.h"

#include "npa/replies.h"

namespace {

using Reply = Exchange::Reply;

// The last bytes of expected replies.
constexpr npa::Byte SettingsAccepted = 0x01;
constexpr npa::Byte DescriptorEnd = '-';
constexpr npa::Byte NoTrouble = 0x00;

/// Returns true if the reply is not empty and its last byte is `Last`.
template <npa::Byte Last>
bool endsWith(Reply reply, std::size_t /*requestSize*/) {
  return !reply.empty() && reply.back() == Last;
}

/// Returns true if the reply has at least one byte after the length field of the SSID. This byte
/// may be the zero byte that ends an empty SSID.
bool hasSsid(Reply reply, std::size_t requestSize) {
  return npa::ssidIn(reply, requestSize).has_value();
}

/// Returns true if the reply has an IP address other than 0.0.0.0. The adapter sends 0.0.0.0 while
/// it has no address.
bool hasAddress(Reply reply, std::size_t /*requestSize*/) {
  return npa::addressIn(reply).has_value();
}

}  // namespace

// Sizes are in bytes, pauses in seconds (see `Exchange`).
namespace exchanges {

constexpr Exchange SetConfig = {
    .bufferSize = 1000,
    .pauseAfterWrite = 5,
    .isExpected = endsWith<SettingsAccepted>,
};

constexpr Exchange ResetIna = {
    .bufferSize = 255,
    .pauseAfterWrite = 5,
    .attempts = 2,
    .pauseBetween = 50,
    .canBeRefused = false,
    .isExpected = endsWith<SettingsAccepted>,
};

constexpr Exchange GetAdapterDescriptor = {
    .bufferSize = 255,
    .pauseAfterWrite = 0,
    .attempts = 6,
    .pauseBetween = 10,
    .canBeRefused = false,
    .isExpected = endsWith<DescriptorEnd>,
};

constexpr Exchange GetTroubleCode = {
    .bufferSize = 255,
    .pauseAfterWrite = 2,
    .attempts = 4,
    .isExpected = endsWith<NoTrouble>,
};

constexpr Exchange GetSsid = {
    .bufferSize = 512,
    .pauseAfterWrite = 2,
    .attempts = 7,
    .isExpected = hasSsid,
};

constexpr Exchange GetIp = {
    .bufferSize = 255,
    .pauseAfterWrite = 3,
    .attempts = 7,
    .isExpected = hasAddress,
};

}  // namespace exchanges
