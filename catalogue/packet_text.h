#pragma once

#include <string>
#include <vector>

#include "catalogue/packet_grammar.h"

namespace catalogue {

/// A packet as text for logs. Keys, passwords and everything that is not understood are masked.
struct PacketText {
  std::string hex;      ///< the bytes, with "**" for a masked one
  std::string meaning;  ///< what the packet says, in words
};

/// Describes a whole packet, as `PacketReader` returns it.
[[nodiscard]] PacketText packetText(Data packet);

}  // namespace catalogue
