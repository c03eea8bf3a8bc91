// The input is a text that `getHexValues` converts from hex to bytes. It need not be valid hex. The
// validity, the size and the bytes must equal those that a simple model finds.

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include "fuzz_target.h"
#include "hex_input.h"
#include "outputs.h"
#include "util/utility.h"

namespace {

bool isHexDigit(char c) {
  return std::string_view("0123456789abcdefABCDEF").find(c) != std::string_view::npos;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = fuzz::textOf(data, size);
  const std::string text = input.substr(0, input.find('\0'));
  const bool isValid = std::ranges::all_of(text, isHexDigit);

  unsigned char marker = 0;
  unsigned char* buffer = &marker;
  int count = -1;
  const fuzz::Output output =
      fuzz::outputOf([&] { count = Utility::getHexValues(text.c_str(), buffer); });
  fuzz::require(count == static_cast<int>(text.size() / 2));
  fuzz::require(output.out.empty() == isValid);
  fuzz::require(output.err.empty());
  if (text.empty()) {
    fuzz::require(buffer == &marker);
    return 0;
  }
  const std::unique_ptr<unsigned char[]> owned(buffer);
  fuzz::require((owned != nullptr) == isValid);
  if (isValid) {
    const fuzz::Bytes expected = fuzz::readHex(text);
    fuzz::require(std::equal(expected.begin(), expected.end(), owned.get(), owned.get() + count));
  }
  return 0;
}
