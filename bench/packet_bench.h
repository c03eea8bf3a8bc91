#pragma once

namespace bench {

/// Adds the row that tells how often the building of a packet allocates.
void addPacketAllocations();

}  // namespace bench
