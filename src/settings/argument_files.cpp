// The files that configDetails reads: argument files with one option per line, and NPA data files
// with the bytes of a packet as hex text.

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <utility>

#include "settings/config_details.h"
#include "util/output.h"

namespace {

/// A line, or a piece of a longer line: at most 255 characters and a zero byte.
using LineBuffer = std::array<char, 256>;

/// Returns true for 0 to 9, A to F and a to f, in any locale.
bool isHexDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

}  // namespace

std::FILE* configDetails::open(const char* path) {
  // With "e", a program that this process might start does not inherit the file.
  File file(std::fopen(path, "re"));
  return file ? m_Files.emplace_back(std::move(file)).get() : nullptr;
}

int configDetails::parseFile(std::string path, std::string usbPath) {
  slot(Setting::Usb) = usbPath;
  std::FILE* const file = open(path.c_str());
  // A missing file is no error: the options keep their initial values.
  if (file == nullptr) {
    return 0;
  }
  LineBuffer buffer{};
  while (std::fgets(buffer.data(), buffer.size(), file) != nullptr) {
    // Removes the line end. A carriage return before the line end stays and is part of the value.
    const std::string line(buffer.data(), std::strcspn(buffer.data(), "\n"));
    if (!line.starts_with('#')) {
      applyOptions(line);
    }
  }
  return 0;
}

int configDetails::parseNPAFile(const char* path) {
  std::FILE* const file = path == nullptr ? nullptr : open(path);
  if (file == nullptr) {
    return -1;
  }
  // Keeps only the hex digits. If their count is odd, the later conversion to bytes drops the last
  // digit.
  std::string& digits = slot(Setting::NpaFileData);
  digits.clear();
  std::array<char, 4096> block{};
  std::size_t count = 0;
  while ((count = std::fread(block.data(), 1, block.size(), file)) > 0) {
    for (std::size_t i = 0; i < count; ++i) {
      if (isHexDigit(block[i])) {
        digits.push_back(block[i]);
      }
    }
  }
  util::writeAnswer("npaFileData: (" + std::to_string(digits.size()) + " bytes) " + digits + "\n");
  return 0;
}
