// The input is the content of an argument file.

#include <algorithm>
#include <string>
#include <vector>

#include "cli/config_details.h"
#include "fuzz_target.h"
#include "memory_file.h"

namespace {

constexpr std::size_t LongestPiece = 255;
constexpr const char* Device = "/dev/usb/lp3";

/// The pieces that the file is read in, without those that hold no option.
std::vector<std::string> optionsIn(const std::string& content) {
  std::vector<std::string> options = {"zvkconfig"};
  for (std::size_t start = 0; start < content.size();) {
    std::string piece = content.substr(start, LongestPiece);
    piece.resize(std::min(piece.find('\n'), piece.size() - 1) + 1);
    start += piece.size();
    // A text ends at its first zero byte.
    std::string line = piece.substr(0, piece.find_first_of(std::string("\n\0", 2)));
    // No key is without a "-", and on a command line such a text would be the device's path.
    if (!line.starts_with('#') && line.find('-') != std::string::npos) {
      options.push_back(std::move(line));
    }
  }
  return options;
}

std::vector<std::string> valuesOf(const configDetails& settings) {
  std::vector<std::string> values = {settings.getSSID(),
                                     settings.getChannel(),
                                     settings.getMode(),
                                     settings.getSecurity(),
                                     settings.getPasswd(),
                                     settings.get802Encryption(),
                                     settings.get802AuthExt(),
                                     settings.get802AuthInner(),
                                     settings.get802Username(),
                                     settings.get802Password(),
                                     settings.get802CACertFile(),
                                     settings.get802SignedCertFile(),
                                     settings.getWEPTransmit(),
                                     settings.getPSK(),
                                     settings.getCerCommonName(),
                                     settings.getCerOrg(),
                                     settings.getCerUnit(),
                                     settings.getCerState(),
                                     settings.getCerCountry(),
                                     settings.getCerCity(),
                                     settings.getCerAltName(),
                                     settings.getCerFriendlyName(),
                                     settings.getCerFilePath(),
                                     settings.getNPAFileData(),
                                     settings.getUSB()};
  for (int i = 0; i < 4; ++i) {
    values.push_back(settings.getWEPKey(i));
  }
  return values;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string content = fuzz::textOf(data, size);
  const fuzz::MemoryFile file(content);
  configDetails fromFile;
  fuzz::require(fromFile.parseFile(file.path(), Device) == 0);

  std::vector<std::string> options = optionsIn(content);
  options.emplace_back(Device);
  configDetails fromOptions;
  const int count = static_cast<int>(options.size());
  fuzz::require(fromOptions.parseParm(count, std::move(options)) == 0);
  fuzz::require(valuesOf(fromFile) == valuesOf(fromOptions));
  for (const std::string& value : valuesOf(fromFile)) {
    fuzz::require(value.size() <= LongestPiece);
    fuzz::require(value.find('\n') == std::string::npos);
  }
  return 0;
}
