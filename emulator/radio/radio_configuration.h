#pragma once

#include <map>
#include <string>
#include <variant>

#include "emulator/adapter/settings_store.h"
#include "emulator/certificates/certificate_store.h"
#include "emulator/radio/radio_problem.h"

namespace emulator {

/// A configuration of wpa_supplicant: the content of its files by name. The files contain keys and
/// passwords.
struct RadioConfiguration {
  std::map<std::string, std::string> files;

  bool operator==(const RadioConfiguration&) const = default;
};

/// The files of a configuration.
namespace radio_files {

inline constexpr const char* Main = "wpa_supplicant.conf";
inline constexpr const char* Authorities = "authorities.pem";
inline constexpr const char* Certificate = "certificate.pem";
inline constexpr const char* Key = "key.pem";
/// The folder of the control socket, which wpa_supplicant creates.
inline constexpr const char* Control = "control";

}  // namespace radio_files

using RadioPlan = std::variant<RadioConfiguration, RadioProblem>;

/// Returns the configuration with which the radio joins the network of the settings. If the
/// settings join no network, returns the reason. `folder` is the absolute path of the folder that
/// will contain the files. Uses only bytes that a host has stored.
RadioPlan planRadio(const SettingsStore& settings, const CertificateStore& certificates,
                    const std::string& folder);

}  // namespace emulator
