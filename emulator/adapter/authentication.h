#pragma once

#include <optional>
#include <span>

#include "catalogue/setting_catalogue.h"
#include "emulator/adapter/network.h"
#include "emulator/adapter/settings_store.h"
#include "emulator/certificates/certificate_store.h"

namespace emulator {

/// The printer's state of 802.1x authentication, computed from its settings and certificates. No
/// server takes part. An authentication fails only if a required CA certificate is missing, or if
/// there are networks and none of them has the stored SSID and the stored password.
class Authentication {
 public:
  /// All arguments must outlive the object. Without `networks`, any password is right.
  Authentication(const SettingsStore& settings, const CertificateStore& certificates,
                 std::span<const Network> networks = {})
      : m_Settings(settings), m_Certificates(certificates), m_Networks(networks) {}

  /// Returns the value of a computed setting: whether 802.1x is on, whether a CA certificate is
  /// installed, or the status. Returns nothing for any other setting.
  std::optional<npa::Byte> value(npa::SettingKey key) const;

  /// Returns true if the authentication fails because the printer has no CA certificate.
  bool lacksCaCertificate() const { return status() == Status::CaMissing; }

 private:
  /// The codes of the setting "802.1x authentication status".
  enum class Status : npa::Byte {
    NotEnabled = 0,
    Authenticated = 2,
    NotConnected = 3,
    Failed = 9,
    CaMissing = 11,
  };

  bool isEnabled() const;
  bool hasCaCertificate() const;
  /// Returns true if the settings make the printer check the server's certificate.
  bool needsCaCertificate() const;
  Status status() const;

  const SettingsStore& m_Settings;
  const CertificateStore& m_Certificates;
  std::span<const Network> m_Networks;
};

}  // namespace emulator
