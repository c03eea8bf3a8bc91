#pragma once

namespace bench {

/// Adds the row with the count of allocations for building one packet.
void addPacketAllocations();

}  // namespace bench
