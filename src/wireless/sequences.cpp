// The configuration sequences of wnpaGenerator.

#include <cstddef>

#include "npa/packet.h"
#include "util/debug_line.h"
#include "wireless/wnpa_generator.h"

int wnpaGenerator::sendBatch(int size) {
  const std::size_t framed = static_cast<std::size_t>(size) + npa::GroupingHeaderSize +
                             (m_WrapMode ? npa::WrapHeaderSize : 0);
  if (!npa::canBeFramed(framed)) {
    return -1;
  }
  size = constructAtomicGrouping(size);
  if (m_WrapMode) {
    size = constructWrapping(m_Packet, size);
  }
  return m_Exchange.setConfig(m_Packet.data(), size);
}

int wnpaGenerator::configBasic() {
  util::debugLine("Basic config...");
  m_Packet.clear();
  int size = 0;
  size += constructMode(&size);
  size += constructSecurity(&size);
  size += constructChannel(&size);
  size += constructSSID(&size);
  size += constructPasswd(&size);
  const int result = sendBatch(size);
  util::debugLine("Basic config ret = %d", result);
  return result;
}
