#pragma once

#include <optional>

#include "catalogue/setting_catalogue.h"
#include "emulator/adapter/settings_store.h"
#include "emulator/certificates/certificate_store.h"

namespace emulator {

/// What the printer tells of 802.1x authentication: it follows from the settings and certificates
/// that it holds, as if every server let it in.
class Authentication {
 public:
  /// Both must outlive it.
  Authentication(const SettingsStore& settings, const CertificateStore& certificates)
      : m_Settings(settings), m_Certificates(certificates) {}

  /// The value of a setting that is told and not stored: whether 802.1x is on, whether a CA
  /// certificate is there, the status. Nothing for any other.
  std::optional<npa::Byte> value(npa::SettingKey key) const;

 private:
  enum class Status : npa::Byte {
    NotEnabled = 0,
    Authenticated = 2,
    CaMissing = 11,
  };

  bool isEnabled() const;
  bool hasCaCertificate() const;
  /// Whether one of the methods is allowed, or the validation told to be done, in which the printer
  /// looks at the server's certificate.
  bool needsCaCertificate() const;
  Status status() const;

  const SettingsStore& m_Settings;
  const CertificateStore& m_Certificates;
};

}  // namespace emulator
