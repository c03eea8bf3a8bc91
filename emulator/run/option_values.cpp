// Parses option values. The error messages say what was expected.

#include "emulator/run/option_values.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>
#include <utility>

#include "catalogue/option_parser.h"
#include "catalogue/setting_catalogue.h"

namespace emulator {

namespace {

using catalogue::ValueError;

constexpr std::size_t LargestByte = 255;
constexpr std::size_t LargestStatus = 65535;
constexpr std::size_t SmallestRsaKey = 1024;
constexpr std::size_t LargestRsaKey = 4096;
constexpr std::size_t LongestSsid = 32;

/// Returns the number in `text`, or nothing if the text is not a number from 0 to `largest`.
std::optional<std::size_t> toNumber(std::string_view text, std::size_t largest, int base = 10) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  if (error != std::errc() || end != text.data() + text.size() || number > largest) {
    return std::nullopt;
  }
  return number;
}

/// Splits "METHOD:REST". Returns an empty name and the whole text if the text does not begin with
/// the name of a method and a colon.
std::pair<std::string, std::string> splitMethod(const std::string& text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string::npos || !CertificateObject::hasMethod(text.substr(0, colon))) {
    return {"", text};
  }
  return {text.substr(0, colon), text.substr(colon + 1)};
}

}  // namespace

std::size_t parseNumber(std::string_view text, std::size_t largest, std::string_view unit,
                        std::size_t smallest) {
  const std::optional<std::size_t> number = toNumber(text, largest);
  if (!number || *number < smallest) {
    throw ValueError(std::string("a number")
                         .append(unit.empty() ? "" : " of ")
                         .append(unit)
                         .append(" from ")
                         .append(std::to_string(smallest))
                         .append(" to ")
                         .append(std::to_string(largest)));
  }
  return *number;
}

std::chrono::seconds parseSeconds(std::string_view text) {
  return std::chrono::seconds(parseNumber(text, LargestDelay, "seconds"));
}

npa::Byte parseByte(std::string_view text) {
  return static_cast<npa::Byte>(parseNumber(text, LargestByte));
}

npa::Byte parseHexByte(std::string_view text) {
  constexpr int hexadecimal = 16;
  const std::optional<std::size_t> number = toNumber(text, LargestByte, hexadecimal);
  if (!number) {
    throw ValueError("a hex number from 0 to FF");
  }
  return static_cast<npa::Byte>(*number);
}

std::array<npa::Byte, 4> parseAddress(const std::string& text) {
  std::array<npa::Byte, 4> address{};
  std::string_view rest = text;
  for (std::size_t i = 0; i < address.size(); ++i) {
    const bool last = i + 1 == address.size();
    const std::size_t dot = last ? rest.size() : rest.find('.');
    const std::optional<std::size_t> number = toNumber(rest.substr(0, dot), LargestByte);
    if (dot == std::string_view::npos || !number) {
      throw ValueError("an IPv4 address such as 192.168.1.20");
    }
    address[i] = static_cast<npa::Byte>(*number);
    rest.remove_prefix(std::min(dot + 1, rest.size()));
  }
  return address;
}

Readiness parseReadiness(const std::string& text) {
  const bool countsSeconds = text.ends_with('s');
  const std::string_view digits = std::string_view(text).substr(0, text.size() - countsSeconds);
  const std::optional<std::size_t> number =
      toNumber(digits, countsSeconds ? LargestDelay : LargestCount);
  if (!number) {
    throw ValueError("a number of queries from 0 to " + std::to_string(LargestCount) +
                     ", or of seconds from 0s to " + std::to_string(LargestDelay) + "s");
  }
  Readiness readiness;
  if (countsSeconds) {
    readiness.afterTime = std::chrono::seconds(*number);
  } else {
    readiness.afterQueries = static_cast<int>(*number);
  }
  return readiness;
}

std::vector<npa::Byte> parseBytes(std::string_view list) {
  std::vector<npa::Byte> bytes;
  while (true) {
    const std::size_t comma = list.find(',');
    const std::optional<std::size_t> number = toNumber(list.substr(0, comma), LargestByte);
    if (!number) {
      throw ValueError("numbers from 0 to 255 with commas between them");
    }
    bytes.push_back(static_cast<npa::Byte>(*number));
    if (comma == std::string_view::npos) {
      return bytes;
    }
    list.remove_prefix(comma + 1);
  }
}

InitialSetting parseInitialSetting(const std::string& text) {
  using Kind = catalogue::SettingInfo::Kind;
  const std::size_t colon = text.find(':');
  const std::size_t equals = text.find('=');
  if (colon == std::string::npos || equals == std::string::npos || equals < colon) {
    throw ValueError("GROUP:OBJECT=VALUE");
  }
  const std::string_view all = text;
  const npa::SettingKey key = {parseHexByte(all.substr(0, colon)),
                               parseHexByte(all.substr(colon + 1, equals - colon - 1))};
  const std::string value = text.substr(equals + 1);
  const catalogue::SettingInfo* const info = catalogue::findSetting(key);
  switch (info == nullptr ? Kind::Text : info->kind) {
    case Kind::Text:
      break;
    case Kind::Number:
      return {key, {0, 0, 0, parseByte(value)}};
    case Kind::Flag:
      return {key, {static_cast<npa::Byte>(parseNumber(value, 1))}};
    case Kind::Address: {
      const std::array<npa::Byte, 4> address = parseAddress(value);
      return {key, {address.begin(), address.end()}};
    }
  }
  npa::Bytes bytes(value.begin(), value.end());
  bytes.push_back(0);
  return {key, std::move(bytes)};
}

Network parseNetwork(const std::string& text) {
  const std::size_t colon = text.rfind(':');
  if (colon == std::string::npos || colon == 0 || colon > LongestSsid) {
    throw ValueError("an SSID of 1 to " + std::to_string(LongestSsid) +
                     " bytes, then a colon and a key without colons");
  }
  return {text.substr(0, colon), text.substr(colon + 1)};
}

std::string parseInterface(const std::string& text) {
  constexpr std::size_t longest = 15;
  if (text.empty() || text.size() > longest || text == "." || text == ".." ||
      text.find_first_of("/ \t\n'") != std::string::npos) {
    throw ValueError("the name of a network interface");
  }
  return text;
}

std::size_t parseKeyBits(const std::string& text) {
  const std::optional<std::size_t> bits = toNumber(text, LargestRsaKey);
  if (!bits || (*bits > 0 && *bits < SmallestRsaKey)) {
    throw ValueError("0 or a number of bits from " + std::to_string(SmallestRsaKey) + " to " +
                     std::to_string(LargestRsaKey));
  }
  return *bits;
}

void parseSubjectText(Subject& subject, const std::string& text) {
  const std::size_t equals = text.find('=');
  const auto* const field =
      std::ranges::find(SubjectFields, text.substr(0, equals), &SubjectField::name);
  if (field == SubjectFields.end() || equals == std::string::npos) {
    std::vector<std::string_view> names;
    std::ranges::transform(SubjectFields, std::back_inserter(names), &SubjectField::name);
    throw ValueError(catalogue::joined(names, ", ", " or ") + ", then = and a text");
  }
  subject.*field->text = text.substr(equals + 1);
}

ObjectReply parseObjectReply(const std::string& text) {
  auto [method, file] = splitMethod(text);
  return {std::move(method), std::move(file)};
}

ObjectReply parseObjectStatus(const std::string& text) {
  auto [method, code] = splitMethod(text);
  const std::optional<std::size_t> status = toNumber(code, LargestStatus);
  if (!status) {
    throw ValueError("a code from 0 to " + std::to_string(LargestStatus) +
                     ", optionally after a method's name and a colon");
  }
  return {std::move(method), {}, static_cast<int>(*status)};
}

std::size_t parseAlternates(const std::string& text) {
  return parseNumber(text, LargestAlternateCount, {}, 1);
}

std::string parseSerial(const std::string& text) {
  // ";" ends an entry of the device ID.
  const bool isValid =
      std::ranges::all_of(text, [](char c) { return c > ' ' && c <= '~' && c != ';'; });
  if (text.empty() || text.size() > LongestSerial || !isValid) {
    throw ValueError("1 to " + std::to_string(LongestSerial) +
                     " printable ASCII characters other than a blank and ;");
  }
  return text;
}

UsbFault parseUsbFault(UsbFault::Kind kind, const std::string& text) {
  const bool needsCount = kind == UsbFault::Kind::Unplug;
  const std::size_t colon = text.find(':');
  const bool hasCount = colon != std::string::npos;
  const std::string direction = text.substr(0, colon);
  const std::optional<std::size_t> count =
      toNumber(hasCount ? std::string_view(text).substr(colon + 1) : "0", LargestUsbCount);
  if ((direction != "in" && direction != "out") || !count || (needsCount && !hasCount)) {
    throw ValueError(std::string(needsCount ? "in or out" : "in or out, optionally") +
                     " with a colon and a number of bytes up to " +
                     std::to_string(LargestUsbCount));
  }
  return {.kind = kind,
          .direction = direction == "in" ? UsbDirection::In : UsbDirection::Out,
          .afterBytes = *count};
}

}  // namespace emulator
