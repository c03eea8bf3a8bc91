#pragma once

#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "session/secret.h"
#include "settings/config_details.h"

namespace session {

enum class Security { Open, Wep, Wpa, Enterprise };

/// The settings of one network, checked: every value is one that the adapter accepts, and the
/// values fit each other.
struct Profile {
  std::string ssid = {};
  Security security = Security::Open;
  bool adHoc = false;
  std::optional<int> channel = {};  ///< 1 to 11, only with ad-hoc
  std::string encryption = "auto";  ///< auto, tkip, aes, wep-dynamic, wep-static
  std::string wepAuth = "open";     ///< open, shared
  std::string user = {};
  std::vector<std::string> eapMethods = {};  ///< some of: md5, mschapv2, leap, peap, tls, ttls
  std::string innerMethod = {};              ///< chap, mschap, mschapv2, pap, or empty
  Secret secret = {};                        ///< WPA passphrase or key, WEP key, 802.1x password

  bool operator==(const Profile&) const = default;
};

/// Where the secret comes from.
struct SecretSource {
  enum class Kind { Unspecified, Prompt, File, Descriptor, Inline };

  Kind kind = Kind::Unspecified;
  std::string path = {};  ///< for `File`
  int descriptor = -1;    ///< for `Descriptor`
  Secret secret = {};     ///< for `Inline`: the secret in the settings file

  bool operator==(const SecretSource&) const = default;
};

/// A wrong setting. `what()` is a line in English for logs: "--mode: expected infrastructure or
/// ad-hoc, got 'adhoc'". Front ends translate the parts. No part contains a secret, or a value that
/// may be one.
struct ProfileError : std::runtime_error {
  ProfileError(std::string setting, std::string value, const char* allowed);

  /// Returns the error for a system call that has just failed. `got` describes `errno`.
  static ProfileError ofLastCall(const std::string& setting, const char* allowed);

  std::string subject;   ///< "--security" or "office.conf:3: security"
  std::string got;       ///< the value, unescaped, or the system's error; empty if there is none
  const char* expected;  ///< what is allowed, as a message to translate; never freed
};

struct SettingRule;

/// Collects settings from options and settings files, and checks them.
///
///     ProfileReader reader;
///     reader.readFile("office.conf");
///     reader.set("ssid", "office", "--ssid");  // overrides the file
///     const Profile profile = reader.finish();  // checked, except the secret
class ProfileReader {
 public:
  /// Sets the value of `key` ("ssid", "security", "password-from", ...), and replaces an earlier
  /// value. Throws `ProfileError` and sets nothing if there is no such key or the value is not
  /// allowed. `subject` names the option in errors. The key "password" is refused.
  void set(std::string_view key, const std::string& value, const std::string& subject);

  /// Reads a settings file. Values that are already set stay unchanged. Throws `ProfileError` if a
  /// line is wrong, if the file cannot be read or is not a regular file, or if it contains a
  /// password and is not private (see `isPrivateFile`).
  void readFile(const std::string& path);

  /// Reads the text of a settings file (see settings_file.h for the format). `name` names the file
  /// in errors. A password in the text is an error if `mayHoldPassword` is false.
  void readText(std::string_view text, const std::string& name, bool mayHoldPassword);

  /// Checks that the settings fit each other and returns them without the secret. Checks the secret
  /// too if it is in a settings file. Throws `ProfileError` if a check fails.
  [[nodiscard]] Profile finish() const;

  /// Returns where the secret comes from.
  [[nodiscard]] const SecretSource& secretSource() const { return m_Draft.source; }

  /// The settings read so far.
  struct Draft {
    Profile profile;
    SecretSource source;
  };

 private:
  /// A setting that was given, as errors describe it.
  struct Given {
    std::string subject;
    std::string value;  ///< empty if it may be a secret
  };

  /// Stores a value and remembers that it is given.
  void take(const SettingRule& rule, std::string_view value, const std::string& subject);
  /// Throws `ProfileError` for the given setting of this place (see `SettingRule::place`).
  [[noreturn]] void refuse(std::string_view place, const char* expected) const;
  void requireComplete() const;
  void requireFit() const;
  void requireSecretFits() const;

  Draft m_Draft;
  std::map<std::string_view, Given> m_Given;  ///< the keys are `SettingRule::place`
};

/// Returns true if the profile's network needs a secret.
[[nodiscard]] bool needsSecret(const Profile& profile);

/// Checks a secret for this profile. Returns what is allowed, as a message to translate, or null if
/// the secret is right.
[[nodiscard]] const char* checkSecret(const Profile& profile, std::string_view secret);

/// Returns the settings as the encoders take them, for `wnpaGenerator::advancedPackets`. `device`
/// is the printer's device for the transport.
[[nodiscard]] std::unique_ptr<configDetails> configurationOf(const Profile& profile,
                                                             const std::string& device);

}  // namespace session
