#pragma once

#include <span>

#include "decoder/packet.h"

namespace decoder {

/// Reads one whole packet, start byte and length included: flag, wrapper and contents. Stream and
/// place are left to the caller. A packet that only goes on with the reply to a method call cannot
/// be told by itself; it is `Unknown`.
Packet readPacket(std::span<const npa::Byte> bytes);

/// Reads a reply as the program collects it: of each packet what stands behind the flag byte.
Packet readCollectedReply(std::span<const npa::Byte> bytes);

}  // namespace decoder
