#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "emulator/adapter/settings_store.h"
#include "emulator/certificates/certificate_store.h"
#include "emulator/radio/radio_configuration.h"

namespace emulator {

/// Thrown for settings that cannot become a configuration.
struct UnusableError {
  RadioProblem problem;
};

/// The network block of a wpa_supplicant configuration, under construction.
class NetworkBlock {
 public:
  /// Adds a line with a word or a number.
  void add(std::string_view name, std::string_view value);
  /// Adds a line with any bytes, in hex. wpa_supplicant decodes them.
  void addBytes(std::string_view name, std::string_view bytes);

  std::string text() const { return "network={\n" + m_Lines + "}\n"; }

 private:
  std::string m_Lines;
};

/// The codes of the setting "encryption".
enum class Encryption { None = 0, WepDynamic = 1, WepStatic = 2, Tkip = 3, Aes = 4 };

/// Returns the stored encryption, or nothing if none is stored. Throws `UnusableError` if the code
/// is unknown.
std::optional<Encryption> storedEncryption(const SettingsStore& settings);

/// Adds the lines for the ciphers of WPA and WPA2. Allows both ciphers if `encryption` is not set.
void addCiphers(NetworkBlock& block, std::optional<Encryption> encryption);

/// Adds the stored WEP keys and the index of the transmit key. Throws `UnusableError` if a key or
/// the index is invalid.
void addWepKeys(NetworkBlock& block, const SettingsStore& settings);

/// Adds the lines of an 802.1x network to `block`, and its certificates to `configuration`. Throws
/// `UnusableError` if the settings cannot be used. `folder` is the folder of the files.
void addAuthentication(NetworkBlock& block, RadioConfiguration& configuration,
                       const SettingsStore& settings, const CertificateStore& certificates,
                       const std::string& folder);

}  // namespace emulator
