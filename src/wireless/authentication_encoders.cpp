// The encoders of wnpaGenerator for 802.1x authentication.

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "cert/cert_mgr.h"
#include "npa/packet.h"
#include "util/debug_line.h"
#include "wireless/setting_encodings.h"
#include "wireless/wnpa_generator.h"

namespace {

/// An authentication method: the flag that allows it, and its name in the configured list.
struct AuthMethod {
  npa::SettingKey key;
  std::string_view name;
};

/// All methods, in the order in which the adapter needs their flags. The flag of a forbidden method
/// is 0.
constexpr std::array AuthMethods = {
    AuthMethod{npa::settings::MethodMd5, "EAP-MD5"},
    AuthMethod{npa::settings::MethodMsChapV2, "MSCHAPv2"},
    AuthMethod{npa::settings::MethodLeap, "LEAP"},
    AuthMethod{npa::settings::MethodPeap, "PEAP"},
    AuthMethod{npa::settings::MethodTls, "EAP-TLS"},
    AuthMethod{npa::settings::MethodTtls, "EAP-TTLS"},
};

/// Returns true if the printer lists at least two printer certificates or at least one CA
/// certificate. Reads the list of CA certificates only if the printer lists fewer than two printer
/// certificates.
bool holdsCertificates(const std::string& device) {
  CertMgr certificates(device);
  std::vector<std::string> names;
  if (certificates.getCertFriendlyNameList(names) == 0 && names.size() > 1) {
    return true;
  }
  names.clear();
  return certificates.getCACommonNameList(names) == 0 && !names.empty();
}

}  // namespace

int wnpaGenerator::construct802EncryptMode() {
  return encode(encodings::Encryption);
}

int wnpaGenerator::construct802AuthInner() {
  return encode(encodings::InnerAuth);
}

int wnpaGenerator::construct802Username() {
  return encode(encodings::Username);
}

int wnpaGenerator::construct802Passwd() {
  return encode(encodings::Password);
}

int wnpaGenerator::construct802AuthExtension() {
  const std::string& methods = m_Configuration->get802AuthExt();
  util::debugLine("802.1x Auth Extension = %s", methods.c_str());
  int size = 0;
  for (const AuthMethod& method : AuthMethods) {
    // The name may be anywhere in the text. So "NO-PEAP" allows PEAP.
    const bool listed = methods.find(method.name) != std::string::npos;
    size += appendFlag(method.key, listed);
  }
  return size;
}

int wnpaGenerator::construct802ValidateCert() {
  const bool validates =
      m_ServerValidation ? *m_ServerValidation : holdsCertificates(m_Configuration->getUSB());
  util::debugLine("Validate certificate? %d", validates ? 1 : 0);
  return appendFlag(npa::settings::ValidateCert, validates);
}
