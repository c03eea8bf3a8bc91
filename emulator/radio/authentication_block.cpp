// Adds the lines of an 802.1x network to the configuration of wpa_supplicant.

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "emulator/radio/network_block.h"

namespace emulator {

namespace {

namespace settings = npa::settings;

/// What an EAP method needs.
struct MethodRow {
  npa::SettingKey flag;
  std::string_view word;  ///< the name in the configuration
  bool needsPassword;
};

constexpr MethodRow Tls = {settings::MethodTls, "TLS", false};
constexpr MethodRow Peap = {settings::MethodPeap, "PEAP", true};
constexpr MethodRow Leap = {settings::MethodLeap, "LEAP", true};
constexpr MethodRow Md5 = {settings::MethodMd5, "MD5", true};

/// The methods, in the order in which the radio proposes them.
constexpr std::array Methods = {Tls,
                                Peap,
                                MethodRow{settings::MethodTtls, "TTLS", true},
                                MethodRow{settings::MethodMsChapV2, "MSCHAPV2", true},
                                Leap,
                                Md5};

/// The inner methods. The index is the code of the setting "802.1x inner authentication".
constexpr std::array<std::string_view, 4> InnerMethods = {"CHAP", "MSCHAP", "MSCHAPV2", "PAP"};
constexpr std::size_t MsChapV2 = 2;

/// The settings and certificates of an 802.1x network.
class Credentials {
 public:
  Credentials(const SettingsStore& store, const CertificateStore& certificates)
      : m_Store(store), m_Certificates(certificates) {}

  bool isSet(npa::SettingKey flag) const { return m_Store.number(flag).value_or(0) != 0; }

  /// Returns the code of the inner method. If no code is stored, returns the code of MSCHAPv2, the
  /// only inner method that both PEAP and EAP-TTLS have.
  std::size_t innerMethod() const {
    const std::size_t code = m_Store.number(settings::InnerAuth).value_or(MsChapV2);
    if (code >= InnerMethods.size()) {
      throw UnusableError{RadioProblem::InnerMethodUnknown};
    }
    return code;
  }

  /// Returns the newest certificate whose key the printer has, or null if there is none.
  const DeviceCertificate* ownCertificate() const {
    const DeviceCertificate* found = nullptr;
    for (const DeviceCertificate& device : m_Certificates.devices()) {
      if (!device.isPending() && !device.keyPem.empty()) {
        found = &device;
      }
    }
    return found;
  }

  /// Returns why a method cannot be used, or nothing if it can.
  std::optional<RadioProblem> problemOf(const MethodRow& method,
                                        std::optional<Encryption> encryption) const {
    if (method.flag == Leap.flag) {
      return RadioProblem::LeapUnsupported;
    }
    const bool needsKeys = encryption != Encryption::None && encryption != Encryption::WepStatic;
    if (method.flag == Md5.flag && needsKeys) {
      return RadioProblem::MethodMakesNoKeys;
    }
    if (method.flag == Peap.flag && innerMethod() != MsChapV2) {
      return RadioProblem::InnerMethodUnfitForPeap;
    }
    if (method.needsPassword && m_Store.text(settings::AuthPassword).empty()) {
      return RadioProblem::PasswordMissing;
    }
    if (method.flag == Tls.flag && ownCertificate() == nullptr) {
      return RadioProblem::ClientCertificateMissing;
    }
    return std::nullopt;
  }

  /// Returns the methods that are allowed and can be used. If there is none, throws `UnusableError`
  /// with the problem of the first allowed method.
  std::vector<MethodRow> usableMethods(std::optional<Encryption> encryption) const {
    std::vector<MethodRow> usable;
    std::optional<RadioProblem> first;
    for (const MethodRow& method : Methods) {
      if (!isSet(method.flag)) {
        continue;
      }
      if (const auto problem = problemOf(method, encryption)) {
        first = first.value_or(*problem);
      } else {
        usable.push_back(method);
      }
    }
    if (usable.empty()) {
      throw UnusableError{first.value_or(RadioProblem::MethodMissing)};
    }
    return usable;
  }

 private:
  const SettingsStore& m_Store;
  const CertificateStore& m_Certificates;
};

void addKeyManagement(NetworkBlock& block, const SettingsStore& store,
                      std::optional<Encryption> encryption) {
  if (!encryption || *encryption == Encryption::Tkip || *encryption == Encryption::Aes) {
    block.add("key_mgmt", "WPA-EAP");
    block.add("proto", "WPA RSN");
    addCiphers(block, encryption);
    return;
  }
  block.add("key_mgmt", "IEEE8021X");
  // 3: the access point must send keys for unicasts and for broadcasts.
  block.add("eapol_flags", encryption == Encryption::WepDynamic ? "3" : "0");
  if (encryption == Encryption::WepStatic) {
    addWepKeys(block, store);
  }
}

}  // namespace

void addAuthentication(NetworkBlock& block, RadioConfiguration& configuration,
                       const SettingsStore& store, const CertificateStore& certificates,
                       const std::string& folder) {
  const Credentials credentials(store, certificates);
  const std::optional<Encryption> encryption = storedEncryption(store);
  const auto addFile = [&](std::string_view line, const std::string& name, std::string content) {
    configuration.files[name] = std::move(content);
    block.add(line, "\"" + folder + "/" + name + "\"");
  };
  addKeyManagement(block, store, encryption);

  std::string words;
  bool needsPassword = false;
  const std::vector<MethodRow> methods = credentials.usableMethods(encryption);
  for (const MethodRow& method : methods) {
    words.append(words.empty() ? "" : " ").append(method.word);
    needsPassword = needsPassword || method.needsPassword;
  }
  block.add("eap", words);
  const std::string user = store.text(settings::AuthUser);
  if (user.empty()) {
    throw UnusableError{RadioProblem::UserMissing};
  }
  block.addBytes("identity", user);
  if (needsPassword) {
    block.addBytes("password", store.text(settings::AuthPassword));
    block.add("phase2", "\"auth=" + std::string(InnerMethods.at(credentials.innerMethod())) + "\"");
  }
  if (methods.front().flag == Tls.flag) {
    const DeviceCertificate& own = *credentials.ownCertificate();
    addFile("client_cert", radio_files::Certificate, own.certificatePem);
    addFile("private_key", radio_files::Key, own.keyPem);
  }
  if (credentials.isSet(settings::ValidateCert)) {
    std::string authorities;
    for (const CaCertificate& authority : certificates.authorities()) {
      authorities.append(authority.pem);
    }
    if (authorities.empty()) {
      throw UnusableError{RadioProblem::AuthorityMissing};
    }
    addFile("ca_cert", radio_files::Authorities, std::move(authorities));
  }
}

}  // namespace emulator
