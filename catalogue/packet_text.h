#pragma once

#include <string>
#include <vector>

#include "catalogue/packet_grammar.h"

namespace catalogue {

/// A packet as text for logs. Keys, passwords and bytes that cannot be parsed are masked.
struct PacketText {
  std::string hex;      ///< the bytes in hex; "**" stands for a masked byte
  std::string meaning;  ///< what the packet says, in words
};

/// Describes a whole packet, as `PacketReader` returns it.
[[nodiscard]] PacketText packetText(Data packet);

}  // namespace catalogue
