#include "emulator/run/option_values.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace emulator {

namespace {

constexpr std::size_t LargestStatus = 65535;
constexpr std::size_t SmallestRsaKey = 1024;
constexpr std::size_t LargestRsaKey = 4096;

/// The method's name ahead of a colon, and what is behind it; an empty name when there is none.
std::pair<std::string, std::string> splitMethod(const std::string& text) {
  const std::size_t colon = text.find(':');
  if (colon == std::string::npos || !CertificateObject::hasMethod(text.substr(0, colon))) {
    return {"", text};
  }
  return {text.substr(0, colon), text.substr(colon + 1)};
}

}  // namespace

std::size_t parseNumber(std::string_view text, std::size_t largest, int base) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  if (error != std::errc() || end != text.data() + text.size() || number > largest) {
    throw UsageError("'" + std::string(text) + "' is no number from 0 to " +
                     std::to_string(largest));
  }
  return number;
}

npa::Byte parseByte(std::string_view text, int base) {
  return static_cast<npa::Byte>(parseNumber(text, 0xFF, base));
}

std::array<npa::Byte, 4> parseAddress(const std::string& text) {
  std::array<npa::Byte, 4> address{};
  std::string_view rest = text;
  for (std::size_t i = 0; i < address.size(); ++i) {
    const bool last = i + 1 == address.size();
    const std::size_t dot = last ? rest.size() : rest.find('.');
    if (dot == std::string_view::npos) {
      throw UsageError("'" + text + "' is no IP address");
    }
    address[i] = parseByte(rest.substr(0, dot));
    rest.remove_prefix(std::min(dot + 1, rest.size()));
  }
  return address;
}

Readiness parseReadiness(const std::string& text) {
  Readiness readiness;
  if (text.ends_with('s')) {
    const std::string_view seconds(text.data(), text.size() - 1);
    readiness.afterTime = std::chrono::seconds(parseNumber(seconds, LargestDelay));
  } else {
    readiness.afterQueries = static_cast<int>(parseNumber(text, LargestCount));
  }
  return readiness;
}

std::vector<npa::Byte> parseBytes(std::string_view list) {
  std::vector<npa::Byte> bytes;
  while (true) {
    const std::size_t comma = list.find(',');
    bytes.push_back(parseByte(list.substr(0, comma)));
    if (comma == std::string_view::npos) {
      return bytes;
    }
    list.remove_prefix(comma + 1);
  }
}

std::size_t parseKeyBits(const std::string& text) {
  const std::size_t bits = parseNumber(text, LargestRsaKey);
  if (bits > 0 && bits < SmallestRsaKey) {
    throw UsageError("'" + text + "' is no size of an RSA key: " + std::to_string(SmallestRsaKey) +
                     " to " + std::to_string(LargestRsaKey) + ", or 0");
  }
  return bits;
}

void parseSubjectText(Subject& subject, const std::string& text) {
  const std::size_t equals = text.find('=');
  const auto* const field =
      std::ranges::find(SubjectFields, text.substr(0, equals), &SubjectField::name);
  if (field == SubjectFields.end() || equals == std::string::npos) {
    throw UsageError("'" + text + "' begins with none of O=, OU=, C=, ST=, L=, CN= and AN=");
  }
  subject.*field->text = text.substr(equals + 1);
}

ObjectAnswer parseObjectReply(const std::string& text) {
  auto [method, file] = splitMethod(text);
  return {std::move(method), std::move(file)};
}

ObjectAnswer parseObjectStatus(const std::string& text) {
  auto [method, code] = splitMethod(text);
  if (code.find(':') != std::string::npos) {
    throw UsageError("'" + text + "' names no method of the object store");
  }
  const auto status = static_cast<int>(parseNumber(code, LargestStatus));
  return {std::move(method), {}, status};
}

UsbSpeed parseSpeed(const std::string& text) {
  if (text != "full" && text != "high") {
    throw UsageError("'" + text + "' is no speed: full or high");
  }
  return text == "full" ? UsbSpeed::Full : UsbSpeed::High;
}

std::size_t parseAlternates(const std::string& text) {
  const std::size_t count = parseNumber(text, LargestAlternateCount);
  if (count == 0) {
    throw UsageError("a device has at least one alternate setting");
  }
  return count;
}

UsbFault parseUsbFault(UsbFault::Kind kind, const std::string& text) {
  const std::size_t colon = text.find(':');
  const std::string direction = text.substr(0, colon);
  if (direction != "in" && direction != "out") {
    throw UsageError("'" + direction + "' is no direction: in or out");
  }
  if (kind == UsbFault::Kind::Unplug && colon == std::string::npos) {
    throw UsageError("'" + text + "' does not say after how many bytes, such as in:512");
  }
  UsbFault fault{.kind = kind,
                 .direction = direction == "in" ? UsbDirection::In : UsbDirection::Out};
  if (colon != std::string::npos) {
    fault.afterBytes = parseNumber(std::string_view(text).substr(colon + 1), LargestUsbCount);
  }
  return fault;
}

}  // namespace emulator
