#include "catalogue/packet_reader.h"

#include <algorithm>
#include <array>

#include "npa/packet.h"

namespace catalogue {

namespace {

/// Stores the setting 2A 0C; the length field counts as if it were a query.
constexpr std::array<npa::Byte, 9> GenerateHead = {0xA5, 0x00, 0x06, 0x50, 0xE0,
                                                   0xDA, 0x01, 0x2A, 0x0C};
/// What follows: the end of the object's header, and its value.
constexpr std::size_t GenerateRest = 4;

}  // namespace

std::size_t packetSize(std::span<const npa::Byte> bytes) {
  const std::size_t size = npa::LengthHeaderSize + npa::numberAt(bytes, 1);
  const bool generates = bytes.size() >= GenerateHead.size() &&
                         std::ranges::equal(bytes.first(GenerateHead.size()), GenerateHead);
  return generates ? size + GenerateRest : size;
}

std::vector<npa::Bytes> PacketReader::feed(std::span<const npa::Byte> bytes) {
  m_Pending.insert(m_Pending.end(), bytes.begin(), bytes.end());
  std::vector<npa::Bytes> packets;
  std::span<const npa::Byte> rest(m_Pending);
  while (!rest.empty()) {
    const auto start =
        static_cast<std::size_t>(std::ranges::find(rest, npa::StartByte) - rest.begin());
    m_StrayBytes += start;
    rest = rest.subspan(start);
    if (rest.size() < npa::LengthHeaderSize) {
      break;
    }
    const std::size_t size = packetSize(rest);
    if (rest.size() < size) {
      break;
    }
    packets.emplace_back(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(size));
    rest = rest.subspan(size);
  }
  m_Pending.erase(m_Pending.begin(), m_Pending.end() - static_cast<std::ptrdiff_t>(rest.size()));
  return packets;
}

}  // namespace catalogue
