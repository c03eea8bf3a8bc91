// The input is the content of an argument file. The parsed settings must equal those that a simple
// model of the format finds.

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz_target.h"
#include "memory_file.h"
#include "settings/config_details.h"

namespace {

/// The parser reads a longer line in pieces of this size.
constexpr std::size_t LongestPiece = 255;
constexpr const char* Device = "/dev/usb/lp3";

/// Returns the lines of the file without comments. A long line is several pieces.
std::vector<std::string> linesOf(const std::string& content) {
  std::vector<std::string> lines;
  for (std::size_t start = 0; start < content.size();) {
    std::string piece = content.substr(start, LongestPiece);
    piece.resize(std::min(piece.find('\n'), piece.size() - 1) + 1);
    start += piece.size();
    // A line ends at its first zero byte.
    const std::string line = piece.substr(0, piece.find_first_of(std::string("\n\0", 2)));
    if (!line.starts_with('#')) {
      lines.push_back(line);
    }
  }
  return lines;
}

/// Returns the value in a line that contains the key: the text between the first two quotation
/// marks, or after the only one. Without a quotation mark, returns the rest after as many
/// characters as the key has, wherever the key is.
std::string valueIn(const std::string& line, std::string_view key) {
  const std::size_t open = line.find('"');
  if (open == std::string::npos) {
    return line.substr(key.size());
  }
  const std::string rest = line.substr(open + 1);
  return rest.substr(0, rest.find('"'));
}

using Getter = std::string (*)(const configDetails& settings);

template <auto Get>
std::string value(const configDetails& settings) {
  return (settings.*Get)();
}

template <int Index>
std::string wepKey(const configDetails& settings) {
  return settings.getWEPKey(Index);
}

/// An option in the file and the getter of its setting.
struct Option {
  std::string_view key;
  Getter get;
};

using C = configDetails;

constexpr std::array Options = {
    Option{"--ssid=", value<&C::getSSID>},
    Option{"--channel=", value<&C::getChannel>},
    Option{"--mode=", value<&C::getMode>},
    Option{"--security=", value<&C::getSecurity>},
    Option{"--passwd=", value<&C::getPasswd>},
    Option{"--encryption=", value<&C::get802Encryption>},
    Option{"--802-auth-ext=", value<&C::get802AuthExt>},
    Option{"--802-auth-inner=", value<&C::get802AuthInner>},
    Option{"--802-user=", value<&C::get802Username>},
    Option{"--802-pwd=", value<&C::get802Password>},
    Option{"--802-CA-cer-file=", value<&C::get802CACertFile>},
    Option{"--802-signed-cer-file=", value<&C::get802SignedCertFile>},
    Option{"--WEP-key1=", wepKey<0>},
    Option{"--WEP-key2=", wepKey<1>},
    Option{"--WEP-key3=", wepKey<2>},
    Option{"--WEP-key4=", wepKey<3>},
    Option{"--WEP-transmit=", value<&C::getWEPTransmit>},
    Option{"--psk=", value<&C::getPSK>},
    Option{"--cer-common=", value<&C::getCerCommonName>},
    Option{"--cer-org=", value<&C::getCerOrg>},
    Option{"--cer-unit=", value<&C::getCerUnit>},
    Option{"--cer-state=", value<&C::getCerState>},
    Option{"--cer-country=", value<&C::getCerCountry>},
    Option{"--cer-city=", value<&C::getCerCity>},
    Option{"--cer-altname=", value<&C::getCerAltName>},
    Option{"--cer-friendly-name=", value<&C::getCerFriendlyName>},
    Option{"--cer-path=", value<&C::getCerFilePath>},
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string content = fuzz::textOf(data, size);
  const fuzz::MemoryFile file(content);
  configDetails settings;
  fuzz::require(settings.parseFile(file.path(), Device) == 0);

  const std::vector<std::string> lines = linesOf(content);
  for (const Option& option : Options) {
    std::string expected = option.get(configDetails());
    for (const std::string& line : lines) {
      if (line.find(option.key) != std::string::npos) {
        expected = valueIn(line, option.key);
      }
    }
    fuzz::require(option.get(settings) == expected);
  }
  fuzz::require(settings.getUSB() == Device);
  return 0;
}
