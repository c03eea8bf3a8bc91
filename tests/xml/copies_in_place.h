#pragma once

/// Returns how many calls of memmove so far had equal source and destination. `std::copy` calls
/// memmove and does not permit equal positions, so the code under test must not make such a call.
int copiesInPlace();
