// The encoders of wnpaGenerator for the fields of a certificate request.

#include "npa/packet.h"
#include "util/debug_line.h"
#include "wireless/setting_encoding.h"
#include "wireless/wnpa_generator.h"

namespace {

using Value = SettingEncoding::Value;
using Source = decltype(SettingEncoding::source);

constexpr npa::Byte SignRequestObject = 0x12;

/// Most fields have at most 64 bytes with their terminating zero byte.
constexpr SettingEncoding field(npa::Byte object, Source source, const char* label) {
  return {.group = npa::Group8021x,
          .object = object,
          .source = source,
          .label = label,
          .tellsSize = true,
          .value = Value::TerminatedText,
          .limit = 64};
}

constexpr SettingEncoding FriendlyName =
    field(0x27, from<&configDetails::getCerFriendlyName>, "Cer friendly");
constexpr SettingEncoding AltName = field(0x1C, from<&configDetails::getCerAltName>, "Cer alt");
constexpr SettingEncoding City = field(0x0B, from<&configDetails::getCerCity>, "Cer city");
constexpr SettingEncoding State = field(0x08, from<&configDetails::getCerState>, "Cer state");
constexpr SettingEncoding Unit = field(0x07, from<&configDetails::getCerUnit>, "Cer unit");

// These three carry no terminating zero byte, and the size field of the longest common name reads
// 0: so the adapter wants them.
constexpr SettingEncoding Organization = {.group = npa::Group8021x,
                                          .object = 0x06,
                                          .source = from<&configDetails::getCerOrg>,
                                          .label = "Cer org",
                                          .tellsSize = true,
                                          .limit = 64};
constexpr SettingEncoding CommonName = {.group = npa::Group8021x,
                                        .object = 0x0A,
                                        .source = from<&configDetails::getCerCommonName>,
                                        .label = "Cer common",
                                        .tellsSize = true,
                                        .limit = 256,
                                        .sizeField = SettingEncoding::SizeField::LowByteOnly};
constexpr SettingEncoding Country = {.group = npa::Group8021x,
                                     .object = 0x09,
                                     .source = from<&configDetails::getCerCountry>,
                                     .label = "Cer country",
                                     .tellsSize = true,
                                     .value = Value::PaddedText,
                                     .limit = 2};

}  // namespace

int wnpaGenerator::constructCertFriendlyName() {
  return encode(FriendlyName);
}

int wnpaGenerator::constructCertAltName() {
  return encode(AltName);
}

int wnpaGenerator::constructCertCity() {
  return encode(City);
}

int wnpaGenerator::constructCertState() {
  return encode(State);
}

int wnpaGenerator::constructCertUnit() {
  return encode(Unit);
}

int wnpaGenerator::constructCertOrg() {
  return encode(Organization);
}

int wnpaGenerator::constructCertCommonName() {
  return encode(CommonName);
}

int wnpaGenerator::constructCertCountry() {
  return encode(Country);
}

int wnpaGenerator::constructCertSignRequest() {
  util::debugLine("Cer construct CSR");
  return appendFlag(npa::Group8021x, SignRequestObject, true);
}
