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

/// Parsers of option values. All throw `catalogue::ValueError` for an invalid value.
namespace emulator {

/// The largest count of queries or bytes that an option accepts: the size of the largest packet.
inline constexpr std::size_t LargestCount = 65538;
/// The longest time in seconds that an option accepts.
inline constexpr std::size_t LargestDelay = 3600;
/// The largest count of bytes that an option of the USB device accepts.
inline constexpr std::size_t LargestUsbCount = 1'000'000'000;

/// Parses a decimal number from `smallest` to `largest`. The error message contains `unit`, the
/// name of the things that the number counts.
std::size_t parseNumber(std::string_view text, std::size_t largest, std::string_view unit = {},
                        std::size_t smallest = 0);

/// Parses a serial number: 1 to `LongestSerial` printable ASCII characters other than a blank and
/// ";".
std::string parseSerial(const std::string& text);

/// Parses a number of seconds, at most `LargestDelay`.
std::chrono::seconds parseSeconds(std::string_view text);

/// Parses a decimal number from 0 to 255.
npa::Byte parseByte(std::string_view text);
/// Parses a hex number from 0 to FF.
npa::Byte parseHexByte(std::string_view text);

/// Parses decimal numbers from 0 to 255 with commas between them.
std::vector<npa::Byte> parseBytes(std::string_view list);

/// Parses an IPv4 address, "A.B.C.D".
std::array<npa::Byte, 4> parseAddress(const std::string& text);

/// Parses "3" (after 3 queries) or "20s" (after 20 seconds).
Readiness parseReadiness(const std::string& text);

/// Parses "GROUP:OBJECT=VALUE", such as "28:08=home". The kind of the setting in the catalogue
/// decides how the value is parsed: a text, a number from 0 to 255, a flag or an address. The value
/// of an unknown setting is a text.
InitialSetting parseInitialSetting(const std::string& text);

/// Parses "SSID:KEY". The last colon is the separator. The SSID has 1 to 32 bytes. The key may be
/// empty.
Network parseNetwork(const std::string& text);

/// Parses the name of a network interface: 1 to 15 characters other than "/" and a blank, and
/// neither "." nor "..".
std::string parseInterface(const std::string& text);

/// Parses the count of bits of an RSA key, or 0.
std::size_t parseKeyBits(const std::string& text);

/// Parses "FIELD=TEXT", such as "CN=printer", and stores the text in this field of the subject.
void parseSubjectText(Subject& subject, const std::string& text);

/// Parses "METHOD:FILE", or "FILE" for all methods. Does not read the file.
ObjectReply parseObjectReply(const std::string& text);

/// Parses "METHOD:CODE", or "CODE" for all methods.
ObjectReply parseObjectStatus(const std::string& text);

/// Parses the count of alternate settings, 1 to `LargestAlternateCount`.
std::size_t parseAlternates(const std::string& text);

/// Parses "in" or "out", optionally followed by a colon and a count of bytes (default: 0). The kind
/// `Unplug` requires the count.
UsbFault parseUsbFault(UsbFault::Kind kind, const std::string& text);

}  // namespace emulator
