#pragma once

#include <span>
#include <string>
#include <vector>

#include "npa/packet.h"

namespace emulator {

/// Bytes in upper-case hex with a blank between them.
std::string hexText(std::span<const npa::Byte> bytes);

/// The same, with "**" for the bytes whose `hidden` entry is true.
std::string hexText(std::span<const npa::Byte> bytes, const std::vector<bool>& hidden);

}  // namespace emulator
