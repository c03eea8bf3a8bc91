#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "npa/packet.h"

/// Texts about bytes for logs, reports and error messages.
///
///     hexText(std::array<npa::Byte, 2>{0xA5, 0x00});  // A5 00
///     quoted("a\n");                                  // "a\x0A"
namespace catalogue {

/// Returns the bytes in upper-case hex with a blank between them.
std::string hexText(std::span<const npa::Byte> bytes);

/// Returns the bytes in the same form, with "**" for each byte whose entry in `hidden` is true.
/// `hidden` may be shorter than `bytes`; bytes without an entry are shown.
std::string hexText(std::span<const npa::Byte> bytes, const std::vector<bool>& hidden);

/// Returns the text. Writes each byte that is not printable ASCII as \xNN.
std::string escaped(std::string_view text);

/// Returns the escaped text in quotation marks.
std::string quoted(std::string_view text);
std::string quoted(std::span<const npa::Byte> text);

}  // namespace catalogue
