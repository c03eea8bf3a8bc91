// Writes OUTPUT from TEMPLATE with each {{NAME}} replaced by a text from the programs' tables.
//
// Usage: fill_template TEMPLATE OUTPUT

#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include "tools/texts.h"

namespace {

/// Returns the content of a file. Throws `std::runtime_error` if the file cannot be opened.
std::string contentOf(const char* path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    throw std::runtime_error(std::string(path) + ": cannot be read");
  }
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Writes a file. Throws `std::runtime_error` if this fails.
void write(const char* path, const std::string& content) {
  std::ofstream file(path, std::ios::binary);
  if (!(file << content).flush()) {
    throw std::runtime_error(std::string(path) + ": cannot be written");
  }
}

/// Returns the texts of all programs in this build.
tools::Texts allTexts() {
  tools::Texts texts;
  tools::addConfigTexts(texts);
  tools::addDissectorTexts(texts);
#ifdef ZVK_WITH_WIFI
  tools::addWifiTexts(texts);
#endif
#ifdef ZVK_WITH_EMULATOR
  tools::addPrinterTexts(texts);
#endif
#ifdef ZVK_WITH_DECODER
  tools::addDecoderTexts(texts);
#endif
  return texts;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("usage: fill_template TEMPLATE OUTPUT\n", stderr);
    return 2;
  }
  try {
    write(argv[2], tools::filled(contentOf(argv[1]), allTexts()));
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "fill_template: %s: %s\n", argv[1], error.what());
    return 1;
  }
}
