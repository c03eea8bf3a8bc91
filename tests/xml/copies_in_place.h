#pragma once

/// Returns how many calls of memmove so far had equal source and destination. The code under test
/// must not make such a call, because `std::copy`, which calls memmove, does not permit it.
int copiesInPlace();
