// The configuration sequences of wnpaGenerator.

#include <array>
#include <cstddef>
#include <cstdio>

#include "npa/packet.h"
#include "util/debug_line.h"
#include "wireless/wnpa_generator.h"

namespace {

/// Stores one setting, the adapter's reset, as 1.
constexpr std::array<npa::Byte, 13> ResetPacket = {0xA5, 0x00, 0x0A, 0x50, 0xE0, 0xDA, 0x01,
                                                   0x06, 0x14, 0x00, 0x00, 0x01, 0x01};

/// Writes a progress text and makes sure that it is seen before the wait that follows.
void showProgress(const char* text) {
  std::fputs(text, stdout);
  std::fflush(stdout);
}

}  // namespace

int wnpaGenerator::frameBatch(int size) {
  size = constructAtomicGrouping(size);
  return m_WrapMode ? constructWrapping(m_Packet, size) : size;
}

int wnpaGenerator::sendBatch(int size) {
  size = frameBatch(size);
  if (!npa::canBeFramed(m_Packet.size())) {
    return -1;
  }
  return m_Exchange.setConfig(m_Packet.data(), size);
}

int wnpaGenerator::encodeBasicSettings() {
  m_Packet.clear();
  int size = 0;
  size += constructMode(&size);
  size += constructSecurity(&size);
  size += constructChannel(&size);
  size += constructSSID(&size);
  size += constructPasswd(&size);
  return size;
}

int wnpaGenerator::configBasic() {
  util::debugLine("Basic config...");
  const int result = sendBatch(encodeBasicSettings());
  util::debugLine("Basic config ret = %d", result);
  return result;
}

int wnpaGenerator::generate() {
  const int size = frameBatch(encodeBasicSettings());
  for (const unsigned char byte : m_Packet) {
    std::fprintf(stderr, "%x ", byte);
  }
  showProgress(
      "Configuring the printer....\n"
      "Resetting the printer....\n"
      "Connecting to wireless network....");
  if (configBasic() == -1) {
    setWrapMode(false);
    configBasic();
  }
  getTroubleCode();
  showProgress(
      "Acquiring network address....\n"
      "IP-ADDRESS : ");
  getIP();
  return size;
}

int wnpaGenerator::reset() {
  std::vector<unsigned char> request = outgoing(ResetPacket);
  return m_Exchange.resetINA(request.data(), static_cast<int>(request.size()));
}
