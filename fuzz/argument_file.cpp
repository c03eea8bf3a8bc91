// The input is the content of an argument file. The parsed settings must equal the settings that a
// simple model of the format finds.

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz_target.h"
#include "memory_file.h"
#include "settings/config_details.h"

namespace {

/// The largest count of characters that the parser reads at once. It reads a longer line in pieces.
constexpr std::size_t LongestPiece = 255;
constexpr const char* Device = "/dev/usb/lp3";

/// Returns the lines of the file without comments. A long line is returned as several pieces.
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
/// marks, or after the only quotation mark. If there is no quotation mark, returns the line without
/// its first `key.size()` characters, even if the key is not at the start of the line.
std::string valueIn(const std::string& line, std::string_view key) {
  const std::size_t open = line.find('"');
  if (open == std::string::npos) {
    return line.substr(key.size());
  }
  const std::string rest = line.substr(open + 1);
  return rest.substr(0, rest.find('"'));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string content = fuzz::textOf(data, size);
  const fuzz::MemoryFile file(content);
  configDetails settings;
  fuzz::require(settings.parseFile(file.path(), Device) == 0);

  const std::vector<std::string> lines = linesOf(content);
  for (const SettingOption& option : SettingOptions) {
    std::string expected(option.initial);
    for (const std::string& line : lines) {
      if (line.find(option.key) != std::string::npos) {
        expected = valueIn(line, option.key);
      }
    }
    fuzz::require(settings.value(option.setting) == expected);
  }
  fuzz::require(settings.getUSB() == Device);
  return 0;
}
