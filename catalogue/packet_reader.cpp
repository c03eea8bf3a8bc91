#include "catalogue/packet_reader.h"

#include <algorithm>

#include "catalogue/packet_grammar.h"
#include "npa/packet.h"

namespace catalogue {

std::vector<npa::Bytes> PacketReader::feed(std::span<const npa::Byte> bytes) {
  m_Pending.insert(m_Pending.end(), bytes.begin(), bytes.end());
  std::vector<npa::Bytes> packets;
  Cursor cursor(m_Pending);
  while (true) {
    const auto start = static_cast<std::size_t>(std::ranges::find(cursor.rest(), npa::StartByte) -
                                                cursor.rest().begin());
    cursor.bytes(start);
    m_StrayBytes += start;
    const auto packet = cursor.packet();
    if (!packet) {
      break;
    }
    packets.emplace_back(packet->begin(), packet->end());
  }
  // Makes a new vector instead of calling `erase`, because `erase` would leave bytes of the packets
  // in the memory of the vector. The packets may contain keys.
  m_Pending = npa::Bytes(cursor.rest().begin(), cursor.rest().end());
  return packets;
}

}  // namespace catalogue
