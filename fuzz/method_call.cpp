// The input is the XML of a method call to the emulated printer. The parser must not crash, and the
// text about a call must be printable.

#include "emulator/certificates/method_call.h"

#include <string>
#include <variant>

#include "emulator/certificates/certificate_object.h"
#include "fuzz_target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string xml = fuzz::textOf(data, size);
  const emulator::ParsedCall parsed = emulator::parseMethodCall(xml);
  if (const auto* const call = std::get_if<emulator::MethodCall>(&parsed)) {
    // The text goes to a terminal, so it must have no control characters.
    for (const char c : emulator::describe(*call)) {
      fuzz::require(c >= ' ' && c != '\x7F');
    }
    for (const emulator::MethodCall::Parameter& parameter : call->parameters) {
      fuzz::require(parameter.value.size() <= size);
    }
  }
  return 0;
}
