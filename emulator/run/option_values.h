#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/adapter/personality.h"
#include "emulator/usb/usb_traits.h"
#include "npa/packet.h"

/// Readers of the values of zvkprinter's options. All of them throw `catalogue::ValueError` for an
/// invalid value.
namespace emulator {

/// The largest counts of bytes and of queries, and the longest time in seconds.
inline constexpr std::size_t LargestCount = 65538;
inline constexpr std::size_t LargestDelay = 3600;
/// The largest count of bytes over many transfers.
inline constexpr std::size_t LargestUsbCount = 1'000'000'000;

/// A decimal number from 0 to `largest`; `unit` is what it counts, for the message.
std::size_t parseNumber(std::string_view text, std::size_t largest, std::string_view unit = {});

/// A number of seconds, at most `LargestDelay`.
std::chrono::seconds parseSeconds(std::string_view text);

npa::Byte parseByte(std::string_view text);
/// Two hex digits at most.
npa::Byte parseHexByte(std::string_view text);

/// Bytes with commas between them.
std::vector<npa::Byte> parseBytes(std::string_view list);

/// "A.B.C.D".
std::array<npa::Byte, 4> parseAddress(const std::string& text);

/// "3" is after three queries, "20s" after twenty seconds.
Readiness parseReadiness(const std::string& text);

/// The bits of an RSA key, or 0.
std::size_t parseKeyBits(const std::string& text);

/// "CN=text" for one text of the subject.
void parseSubjectText(Subject& subject, const std::string& text);

/// "METHOD:FILE", or "FILE" for every method: a reply that is still to be read.
ObjectAnswer parseObjectReply(const std::string& text);

/// "METHOD:CODE", or "CODE" for every method.
ObjectAnswer parseObjectStatus(const std::string& text);

/// How many alternate settings there are.
std::size_t parseAlternates(const std::string& text);

/// "in" or "out", then a colon and after how many bytes; without a number, at once. An unplug needs
/// the number.
UsbFault parseUsbFault(UsbFault::Kind kind, const std::string& text);

}  // namespace emulator
