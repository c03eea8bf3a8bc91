// The encoders of wnpaGenerator for keys and for what WEP does with them.

#include <array>

#include "npa/packet.h"
#include "util/debug_line.h"
#include "util/decimal.h"
#include "wireless/setting_encoding.h"
#include "wireless/wnpa_generator.h"

namespace {

using WhenEmpty = SettingEncoding::WhenEmpty;

constexpr npa::Byte WepTransmitObject = 0x1F;
constexpr npa::Byte WepAuthObject = 0x23;

/// Key texts go out as they were typed, hex digits too, and without a terminating zero byte.
constexpr SettingEncoding Psk = {.group = npa::GroupWireless,
                                 .object = 0x11,
                                 .source = from<&configDetails::getPSK>,
                                 .label = "PSK (Pre-shared key)",
                                 .tellsSize = true,
                                 .limit = 64,
                                 .whenEmpty = WhenEmpty::HeaderAlone};

template <int Index>
const std::string& wepKey(const configDetails& configuration) {
  return configuration.getWEPKey(Index);
}

template <int Index>
constexpr SettingEncoding wepKeyEncoding(npa::Byte object, const char* label) {
  return {.group = npa::GroupWireless,
          .object = object,
          .source = wepKey<Index>,
          .label = label,
          .quote = "'",
          .tellsSize = true,
          .limit = 26,
          .whenEmpty = WhenEmpty::HeaderAlone};
}

constexpr SettingEncoding WepKey1 = wepKeyEncoding<0>(0x09, "WEP Key 1");
constexpr SettingEncoding WepKey2 = wepKeyEncoding<1>(0x0B, "WEP Key 2");
constexpr SettingEncoding WepKey3 = wepKeyEncoding<2>(0x0D, "WEP Key 3");
constexpr SettingEncoding WepKey4 = wepKeyEncoding<3>(0x0F, "WEP Key 4");

constexpr std::array WepAuthCodes = {TextCode{"OPEN", 1}, TextCode{"SHARED", 2}};
constexpr std::array WepAuthNames = {"Auto", "Open", "Shared"};

}  // namespace

int wnpaGenerator::constructPSK() {
  return encode(Psk);
}

int wnpaGenerator::constructWEPKey1() {
  return encode(WepKey1);
}

int wnpaGenerator::constructWEPKey2() {
  return encode(WepKey2);
}

int wnpaGenerator::constructWEPKey3() {
  return encode(WepKey3);
}

int wnpaGenerator::constructWEPKey4() {
  return encode(WepKey4);
}

int wnpaGenerator::constructWEPTransmit() {
  const std::string& key = m_Configuration->getWEPTransmit();
  util::debugLine("WEP Transmit key = %s", key.c_str());
  const int number = key.empty() ? 1 : util::toInt(key);
  // Any number is sent, and of a negative or large one the lowest byte.
  return appendCode(npa::GroupWireless, WepTransmitObject,
                    npa::lowByte(static_cast<unsigned int>(number)));
}

int wnpaGenerator::constructWEPAuth() {
  const std::string& encryption = m_Configuration->get802Encryption();
  if (encryption.empty()) {
    return 0;
  }
  const npa::Byte code =
      encryption == "WEP" ? codeOf(m_Configuration->getSecurity(), WepAuthCodes) : npa::Byte{0};
  util::debugLine("WEP auth mode: %d (%s)", code, WepAuthNames[code]);
  return appendCode(npa::GroupWireless, WepAuthObject, code);
}
