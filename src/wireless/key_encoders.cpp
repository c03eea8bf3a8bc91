// The encoders of wnpaGenerator for keys, the WEP transmit key and the WEP authentication.

#include <array>

#include "npa/packet.h"
#include "util/debug_line.h"
#include "util/decimal.h"
#include "wireless/setting_encodings.h"
#include "wireless/wnpa_generator.h"

namespace {

// The WEP authentication: the security as configured and the code that is sent for it. Any other
// security is sent as 0, "Auto". The names are for the log; the index of a name is its code.
constexpr std::array WepAuthCodes = {TextCode{"OPEN", 1}, TextCode{"SHARED", 2}};
constexpr std::array WepAuthNames = {"Auto", "Open", "Shared"};

}  // namespace

int wnpaGenerator::constructPSK() {
  return encode(encodings::Psk);
}

int wnpaGenerator::constructWEPKey1() {
  return encode(encodings::WepKey1);
}

int wnpaGenerator::constructWEPKey2() {
  return encode(encodings::WepKey2);
}

int wnpaGenerator::constructWEPKey3() {
  return encode(encodings::WepKey3);
}

int wnpaGenerator::constructWEPKey4() {
  return encode(encodings::WepKey4);
}

int wnpaGenerator::constructWEPTransmit() {
  const std::string& key = m_Configuration->getWEPTransmit();
  util::debugLine("WEP Transmit key = %s", key.c_str());
  const int number = key.empty() ? 1 : util::toInt(key);
  // The number is not checked, and only its lowest byte is sent.
  return appendCode(npa::settings::WepTransmit, npa::lowByte(static_cast<unsigned int>(number)));
}

int wnpaGenerator::constructWEPAuth() {
  const std::string& encryption = m_Configuration->get802Encryption();
  if (encryption.empty()) {
    return 0;
  }
  const npa::Byte code =
      encryption == "WEP" ? codeOf(m_Configuration->getSecurity(), WepAuthCodes) : npa::Byte{0};
  util::debugLine("WEP auth mode: %d (%s)", code, WepAuthNames[code]);
  return appendCode(npa::settings::WepAuth, code);
}
