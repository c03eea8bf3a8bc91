// The encoders of wnpaGenerator for 802.1x authentication.

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "cert/cert_mgr.h"
#include "npa/packet.h"
#include "util/debug_line.h"
#include "wireless/setting_encoding.h"
#include "wireless/wnpa_generator.h"

namespace {

using Value = SettingEncoding::Value;

constexpr std::array EncryptionCodes = {
    TextCode{"NONE", 0},    TextCode{"WEP-DYNAMIC", 1}, TextCode{"WEP-STATIC", 2},
    TextCode{"WEP", 2},     TextCode{"WPA-TKIP", 3},    TextCode{"TKIP", 3},
    TextCode{"WPA-AES", 4}, TextCode{"AES", 4},
};
constexpr std::array InnerAuthCodes = {TextCode{"CHAP", 0}, TextCode{"MSCHAP", 1},
                                       TextCode{"MSCHAPv2", 2}, TextCode{"PAP", 3}};

constexpr SettingEncoding Encryption = {.group = npa::GroupWireless,
                                        .object = 0x26,
                                        .source = from<&configDetails::get802Encryption>,
                                        .label = "Encryption (advanced)",
                                        .value = Value::Code,
                                        .codes = EncryptionCodes};
constexpr SettingEncoding InnerAuth = {.group = npa::Group8021x,
                                       .object = 0x1A,
                                       .source = from<&configDetails::get802AuthInner>,
                                       .label = "802.1x Inner Auth",
                                       .value = Value::Code,
                                       .codes = InnerAuthCodes};
constexpr SettingEncoding Username = {.group = npa::Group8021x,
                                      .object = 0x02,
                                      .source = from<&configDetails::get802Username>,
                                      .label = "802.1x User",
                                      .tellsSize = true,
                                      .value = Value::TerminatedText,
                                      .limit = 32};
/// The size field of the longest password, 256 bytes with its zero byte, reads 0 on purpose.
constexpr SettingEncoding Password = {.group = npa::Group8021x,
                                      .object = 0x03,
                                      .source = from<&configDetails::get802Password>,
                                      .label = "802.1x password",
                                      .tellsSize = true,
                                      .value = Value::TerminatedText,
                                      .limit = 256,
                                      .sizeField = SettingEncoding::SizeField::LowByteOnly};

/// An authentication method and the object that says whether it may be used.
struct AuthMethod {
  npa::Byte object;
  std::string_view name;
};

constexpr std::array AuthMethods = {
    AuthMethod{0x14, "EAP-MD5"}, AuthMethod{0x15, "MSCHAPv2"}, AuthMethod{0x16, "LEAP"},
    AuthMethod{0x17, "PEAP"},    AuthMethod{0x18, "EAP-TLS"},  AuthMethod{0x19, "EAP-TTLS"},
};

constexpr npa::Byte ValidateCertObject = 0x24;

/// The printer's own certificates must be more than one, of an authority's a single one is enough.
bool holdsCertificates(CertMgr& certificates) {
  std::vector<std::string> names;
  if (certificates.getCertFriendlyNameList(names) == 0 && names.size() > 1) {
    return true;
  }
  names.clear();
  return certificates.getCACommonNameList(names) == 0 && !names.empty();
}

}  // namespace

int wnpaGenerator::construct802EncryptMode() {
  return encode(Encryption);
}

int wnpaGenerator::construct802AuthInner() {
  return encode(InnerAuth);
}

int wnpaGenerator::construct802Username() {
  return encode(Username);
}

int wnpaGenerator::construct802Passwd() {
  return encode(Password);
}

int wnpaGenerator::construct802AuthExtension() {
  const std::string& methods = m_Configuration->get802AuthExt();
  util::debugLine("802.1x Auth Extension = %s", methods.c_str());
  int size = 0;
  for (const AuthMethod& method : AuthMethods) {
    // The methods are listed with "|" between them. Since no name holds a "|", a name that stands
    // anywhere in the list stands inside one of its members, which is what counts.
    const bool listed = methods.find(method.name) != std::string::npos;
    size += appendFlag(npa::Group8021x, method.object, listed);
  }
  return size;
}

int wnpaGenerator::construct802ValidateCert() {
  CertMgr certificates(m_Configuration->getUSB());
  const bool validates = holdsCertificates(certificates);
  util::debugLine("Validate certificate? %d", validates ? 1 : 0);
  return appendFlag(npa::Group8021x, ValidateCertObject, validates);
}
