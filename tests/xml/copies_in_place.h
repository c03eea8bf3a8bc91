#pragma once

/// How many times so far bytes were moved to the place where they are. `std::copy`, which ends in
/// such a move, does not permit that.
int copiesInPlace();
