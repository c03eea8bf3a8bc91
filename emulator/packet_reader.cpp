#include "emulator/packet_reader.h"

#include <algorithm>

namespace emulator {

std::vector<Bytes> PacketReader::feed(std::span<const npa::Byte> bytes) {
  m_Pending.insert(m_Pending.end(), bytes.begin(), bytes.end());
  std::vector<Bytes> packets;
  std::span<const npa::Byte> rest(m_Pending);
  while (!rest.empty()) {
    const auto start =
        static_cast<std::size_t>(std::ranges::find(rest, npa::StartByte) - rest.begin());
    m_StrayBytes += start;
    rest = rest.subspan(start);
    if (rest.size() < npa::LengthHeaderSize) {
      break;
    }
    const std::size_t size = npa::LengthHeaderSize + npa::numberAt(rest, 1);
    if (rest.size() < size) {
      break;
    }
    packets.emplace_back(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(size));
    rest = rest.subspan(size);
  }
  m_Pending.erase(m_Pending.begin(), m_Pending.end() - static_cast<std::ptrdiff_t>(rest.size()));
  return packets;
}

}  // namespace emulator
