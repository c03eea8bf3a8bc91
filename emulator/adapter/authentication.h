#pragma once

#include <optional>

#include "catalogue/setting_catalogue.h"
#include "emulator/adapter/settings_store.h"
#include "emulator/certificates/certificate_store.h"

namespace emulator {

/// The printer's state of 802.1x authentication, computed from its settings and certificates. There
/// is no authentication server: if 802.1x is on, authentication succeeds unless a required CA
/// certificate is missing.
class Authentication {
 public:
  /// Both arguments must exist longer than the object.
  Authentication(const SettingsStore& settings, const CertificateStore& certificates)
      : m_Settings(settings), m_Certificates(certificates) {}

  /// Returns the value of a computed setting: whether 802.1x is on, whether a CA certificate is
  /// installed, or the status. Returns nothing for any other setting.
  std::optional<npa::Byte> value(npa::SettingKey key) const;

 private:
  /// The codes of the setting "802.1x authentication status".
  enum class Status : npa::Byte {
    NotEnabled = 0,
    Authenticated = 2,
    CaMissing = 11,
  };

  bool isEnabled() const;
  bool hasCaCertificate() const;
  /// Returns true if the settings make the printer check the server's certificate.
  bool needsCaCertificate() const;
  Status status() const;

  const SettingsStore& m_Settings;
  const CertificateStore& m_Certificates;
};

}  // namespace emulator
