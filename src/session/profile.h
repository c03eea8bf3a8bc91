#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "settings/config_details.h"

namespace session {

enum class Security { Open, Wep, Wpa, Enterprise };

/// The settings of one network, checked: every value is one that the adapter accepts, and the
/// values fit each other.
struct Profile {
  std::string ssid;
  Security security = Security::Open;
  bool adHoc = false;
  std::optional<int> channel;       ///< 1 to 11, only with ad-hoc
  std::string encryption = "auto";  ///< auto, tkip, aes, wep-dynamic, wep-static
  std::string wepAuth = "open";     ///< open, shared
  std::string user;
  std::vector<std::string> eapMethods;  ///< of md5 mschapv2 leap peap tls ttls
  std::string innerMethod;              ///< chap mschap mschapv2 pap, or empty
  std::string secret;                   ///< the WPA passphrase, WEP key or 802.1x password
};

/// Where the secret comes from.
struct SecretSource {
  enum class Kind { Unspecified, Prompt, File, Descriptor, Inline };

  Kind kind = Kind::Unspecified;
  std::string path;     ///< of a file
  int descriptor = -1;  ///< of a descriptor
  std::string secret;   ///< from the settings file itself
};

/// A wrong setting. `what()` is a whole sentence in English for logs; front ends translate the
/// parts.
struct ProfileError : std::runtime_error {
  ProfileError(std::string subject, std::string got, const char* expected);

  std::string subject;   ///< "--security" or "office.conf:3: security"
  std::string got;       ///< the value; empty if there is none or it is secret
  const char* expected;  ///< what is allowed, as a message to translate
};

/// Collects settings from options and a settings file, and checks them.
///
///     ProfileReader reader;
///     reader.readFile("office.conf");
///     reader.set("ssid", "office", "--ssid");  // overrides the file
///     const ProfileReader::Draft draft = reader.finish();   // all but the secret is checked
class ProfileReader {
 public:
  /// Sets the value of `key` ("ssid", "security", "password-from", ...). Throws `ProfileError` if
  /// there is no such key or the value is not allowed. `subject` names option or line in errors.
  void set(std::string_view key, const std::string& value, const std::string& subject);

  /// Reads `key=value` lines. Throws `ProfileError`, also if the file cannot be read or contains a
  /// password although others than its owner may read it. Values that are set already stay.
  void readFile(const std::string& path);

  /// Checks that the settings fit each other and returns them without the secret. Throws
  /// `ProfileError`.
  [[nodiscard]] Profile finish() const;

  /// Returns where the secret comes from.
  [[nodiscard]] const SecretSource& secretSource() const;

 private:
  struct State;
  std::shared_ptr<State> m_State;
};

/// Returns true if the profile is complete only with a secret.
[[nodiscard]] bool needsSecret(const Profile& profile);

/// Checks a secret for this profile. Returns what is allowed, as a message to translate, or null if
/// the secret is right.
[[nodiscard]] const char* checkSecret(const Profile& profile, std::string_view secret);

/// Returns the settings as the encoders take them, for `wnpaGenerator::advancedPackets`.
[[nodiscard]] std::unique_ptr<configDetails> configurationOf(const Profile& profile,
                                                             const std::string& device);

}  // namespace session
