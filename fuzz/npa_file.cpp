// The input is the content of an NPA data file. The parsed data must be the hex digits of the file,
// in the same order.

#include <memory>
#include <string>

#include "fuzz_target.h"
#include "hex_input.h"
#include "memory_file.h"
#include "outputs.h"
#include "settings/config_details.h"
#include "util/utility.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string content = fuzz::textOf(data, size);
  std::string digits;
  for (const char c : content) {
    const bool isDigit = (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    digits += isDigit ? std::string(1, c) : "";
  }

  const fuzz::MemoryFile file(content);
  configDetails settings;
  int result = -1;
  // Reads the file twice. The data of the second read must replace the data of the first.
  fuzz::outputOf([&] { settings.parseNPAFile(file.path().c_str()); });
  const fuzz::Output output =
      fuzz::outputOf([&] { result = settings.parseNPAFile(file.path().c_str()); });
  fuzz::require(result == 0);
  fuzz::require(settings.getNPAFileData() == digits);
  fuzz::require(output.out ==
                "npaFileData: (" + std::to_string(digits.size()) + " bytes) " + digits + "\n");

  unsigned char* buffer = nullptr;
  const int count = Utility::getHexValues(digits.c_str(), buffer);
  const std::unique_ptr<unsigned char[]> bytes(buffer);
  const fuzz::Bytes expected = fuzz::readHex(digits);
  fuzz::require(count == static_cast<int>(expected.size()));
  fuzz::require(expected == fuzz::Bytes(bytes.get(), bytes.get() + count));
  return 0;
}
