// Authentication: computes the values of three 802.1x settings.

#include "emulator/adapter/authentication.h"

#include <algorithm>
#include <array>

namespace emulator {

namespace {

/// The value of the setting "security" that switches 802.1x on.
constexpr npa::Byte Security8021x = 3;

/// The flags that make the printer check the server's certificate. The printer checks it if at
/// least one of these flags is on.
constexpr std::array ServerChecks = {npa::settings::MethodPeap, npa::settings::MethodTls,
                                     npa::settings::MethodTtls, npa::settings::ValidateCert};

}  // namespace

std::optional<npa::Byte> Authentication::value(npa::SettingKey key) const {
  if (key == npa::settings::AuthEnabled) {
    return isEnabled() ? npa::Byte{1} : npa::Byte{0};
  }
  if (key == npa::settings::CaInstalled) {
    return hasCaCertificate() ? npa::Byte{1} : npa::Byte{0};
  }
  if (key == npa::settings::AuthStatus) {
    return static_cast<npa::Byte>(status());
  }
  return std::nullopt;
}

bool Authentication::isEnabled() const {
  const npa::Bytes security = m_Settings.get(npa::settings::Security);
  return !security.empty() && security.back() == Security8021x;
}

bool Authentication::hasCaCertificate() const {
  return !m_Certificates.authorities().empty();
}

bool Authentication::needsCaCertificate() const {
  return std::ranges::any_of(ServerChecks, [this](npa::SettingKey key) {
    const npa::Bytes flag = m_Settings.get(key);
    return !flag.empty() && flag.back() != 0;
  });
}

Authentication::Status Authentication::status() const {
  if (!isEnabled()) {
    return Status::NotEnabled;
  }
  const Membership found =
      m_Networks.empty() ? Membership::Joined : findNetwork(m_Networks, m_Settings);
  if (found == Membership::NoSuchNetwork) {
    return Status::NotConnected;
  }
  if (needsCaCertificate() && !hasCaCertificate()) {
    return Status::CaMissing;
  }
  return found == Membership::Joined ? Status::Authenticated : Status::Failed;
}

}  // namespace emulator
