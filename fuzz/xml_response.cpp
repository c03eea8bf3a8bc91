// The input, in hex, is the collected reply to a method call. The XML text in the reply must equal
// the text that a simple model finds. This must hold for both overloads of the operation, and for
// buffers that are too small, just large enough and larger.

#include <algorithm>
#include <array>
#include <string>

#include "cert/cert_mgr.h"
#include "fuzz_target.h"
#include "hex_input.h"

namespace {

using fuzz::Bytes;

constexpr std::array<std::uint8_t, 7> Marker = {0xE0, 0xC0, 0x03, 0x00, 0x01, 0x00, 0xE0};

bool hasMarker(const Bytes& reply) {
  return reply.size() >= Marker.size() && std::equal(Marker.begin(), Marker.end(), reply.begin());
}

/// The model: everything after the marker except bytes 0xE0, up to the first zero byte.
std::string expectedText(const Bytes& reply) {
  std::string text;
  for (std::size_t i = Marker.size(); hasMarker(reply) && i < reply.size(); ++i) {
    if (reply[i] != Marker[0]) {
      text.push_back(static_cast<char>(reply[i]));
    }
  }
  return text.substr(0, text.find('\0'));
}

/// Requires that a buffer of `room` bytes gets the text. If the buffer is too small, or if the
/// reply does not begin with the marker, requires that the buffer stays unchanged.
void requireWritten(Bytes& reply, std::size_t room, const std::string& expected) {
  std::string out(room, '#');
  const int count = CertMgr::getXmlResponse(reply.data(), static_cast<int>(reply.size()),
                                            out.data(), static_cast<unsigned int>(room));
  const bool isWritten = hasMarker(reply) && reply.size() <= room;
  fuzz::require(count == (isWritten ? static_cast<int>(expected.size()) : 0));
  if (!isWritten) {
    fuzz::require(out == std::string(room, '#'));
    return;
  }
  fuzz::require(out.compare(0, expected.size() + 1, expected.c_str(), expected.size() + 1) == 0);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes reply = fuzz::readHex(fuzz::textOf(data, size));
  const std::string expected = expectedText(reply);
  fuzz::require(CertMgr::getXmlResponse(reply.data(), static_cast<int>(reply.size())) == expected);
  requireWritten(reply, reply.size(), expected);
  requireWritten(reply, reply.size() + 3, expected);
  if (!reply.empty()) {
    requireWritten(reply, reply.size() - 1, expected);
  }
  return 0;
}
