#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "npa/packet.h"

namespace catalogue {

/// Bytes in upper-case hex with a blank between them.
std::string hexText(std::span<const npa::Byte> bytes);

/// The same, with "**" for the bytes whose `hidden` entry is true.
std::string hexText(std::span<const npa::Byte> bytes, const std::vector<bool>& hidden);

/// Text whose bytes that do not print are shown as \xNN.
std::string escaped(std::string_view text);

/// The same in quotation marks.
std::string quoted(std::string_view text);
std::string quoted(std::span<const npa::Byte> text);

}  // namespace catalogue
