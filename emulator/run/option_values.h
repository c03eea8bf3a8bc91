#pragma once

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/adapter/personality.h"
#include "emulator/usb/usb_traits.h"
#include "npa/packet.h"

/// The values of zvkprinter's options. All of these throw `UsageError` for a text that is none.
namespace emulator {

/// A command line that makes no sense; the text says why.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// The largest counts of bytes and of queries, and the longest time in seconds.
inline constexpr std::size_t LargestCount = 65538;
inline constexpr std::size_t LargestDelay = 3600;
/// The largest count of bytes over many transfers.
inline constexpr std::size_t LargestUsbCount = 1'000'000'000;

/// A number from 0 to `largest` in digits of that base.
std::size_t parseNumber(std::string_view text, std::size_t largest, int base = 10);
npa::Byte parseByte(std::string_view text, int base = 10);

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

/// "full" or "high".
UsbSpeed parseSpeed(const std::string& text);

/// How many alternate settings there are.
std::size_t parseAlternates(const std::string& text);

/// "in" or "out", and behind a colon after how many bytes; without, at once. An unplug needs them.
UsbFault parseUsbFault(UsbFault::Kind kind, const std::string& text);

}  // namespace emulator
