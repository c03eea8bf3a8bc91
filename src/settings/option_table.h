#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

/// The settings of one run. `configDetails` keeps an array with a text for each setting. The values
/// of this enumeration are the indexes of the array.
enum class Setting : std::size_t {
  Usb,  ///< the device path: an argument without "-"
  Ssid,
  Channel,
  Mode,
  Security,
  Passwd,
  NpaFileData,  ///< the hex digits of an NPA data file
  Encryption,
  AuthExt,
  AuthInner,
  Username,
  Password,
  CaCertFile,
  SignedCertFile,
  // The WEP keys are consecutive: `configDetails::getWEPKey` adds a number to the index of the
  // first key.
  WepKey1,
  WepKey2,
  WepKey3,
  WepKey4,
  WepTransmit,
  Psk,
  CerCommonName,
  CerOrg,
  CerUnit,
  CerState,
  CerCountry,
  CerCity,
  CerAltName,
  CerFriendlyName,
  CerFilePath,
  Count,  ///< the count of settings, not a setting
};

/// One row of the option table: an option of the command line or of an argument file, the setting
/// that it sets, and its description. The build generates the manual page and the shells'
/// completions from these rows. The program uses only key, setting and initial value.
struct SettingOption {
  /// The section of the manual page.
  enum class Section { Networks, Keys, Authentication, Certificates };

  /// The kind of value, for the descriptions. The program does not check a value: an encoder
  /// decides what a text means.
  enum class Kind {
    Text,      ///< any text
    Word,      ///< one of the fixed values in `words`
    WordList,  ///< some of the fixed values in `words`, with "|" between them
    File,      ///< a path on the host
  };

  /// The words (fixed values) that an option takes with the command `command`. If `command` is
  /// empty, the words are for every command.
  struct Words {
    std::string_view command = {};
    std::span<const std::string_view> list = {};
  };

  /// The option as typed, with its "=".
  std::string_view key;
  /// The setting that the option sets.
  Setting setting;
  Section section;
  Kind kind = Kind::Text;
  /// What the manual page calls the value.
  std::string_view valueName = "TEXT";
  /// The words of a `Word` or a `WordList`.
  std::array<Words, 2> words = {};
  /// The value if the option is not given.
  std::string_view initial = {};
  /// One line: an imperative or a noun, without a full stop.
  std::string_view help;
  /// Further sentences for the manual page, in the markup of scdoc.
  std::string_view details = {};
};

/// The words of the options. The encoders in src/wireless have separate tables of the words that
/// they know.
namespace option_words {

inline constexpr auto Modes = std::to_array<std::string_view>({"Managed", "Ad-Hoc"});
inline constexpr auto Channels =
    std::to_array<std::string_view>({"1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11"});
/// The securities of -c. The numbers that are sent for them are in encoders.cpp.
inline constexpr auto BasicSecurities =
    std::to_array<std::string_view>({"None", "WEP", "WPA", "WPA2"});
/// The securities of -ca. Each selects a sequence in sequences.cpp.
inline constexpr auto AdvancedSecurities =
    std::to_array<std::string_view>({"OPEN", "SHARED", "WPA-PER", "WPA-ENT", "802.1x"});
inline constexpr auto Encryptions = std::to_array<std::string_view>(
    {"TKIP", "AES", "WEP", "NONE", "WEP-DYNAMIC", "WEP-STATIC", "WPA-TKIP", "WPA-AES"});
inline constexpr auto AuthMethods =
    std::to_array<std::string_view>({"EAP-MD5", "MSCHAPv2", "LEAP", "PEAP", "EAP-TLS", "EAP-TTLS"});
inline constexpr auto InnerMethods =
    std::to_array<std::string_view>({"CHAP", "MSCHAP", "MSCHAPv2", "PAP"});
inline constexpr auto WepKeyNumbers = std::to_array<std::string_view>({"1", "2", "3", "4"});

}  // namespace option_words

/// All options, in the order of their settings.
inline constexpr std::array SettingOptions = {
    SettingOption{.key = "--ssid=",
                  .setting = Setting::Ssid,
                  .section = SettingOption::Section::Networks,
                  .help = "name of the network",
                  .details = "Without this option no SSID is sent."},
    SettingOption{.key = "--channel=",
                  .setting = Setting::Channel,
                  .section = SettingOption::Section::Networks,
                  .kind = SettingOption::Kind::Word,
                  .valueName = "NUMBER",
                  .words = {{{.list = option_words::Channels}}},
                  .initial = "6",
                  .help = "channel of an ad-hoc network",
                  .details = "Any other text is sent as *6*."},
    SettingOption{.key = "--mode=",
                  .setting = Setting::Mode,
                  .section = SettingOption::Section::Networks,
                  .kind = SettingOption::Kind::Word,
                  .valueName = "MODE",
                  .words = {{{.list = option_words::Modes}}},
                  .initial = "Managed",
                  .help = "managed network or ad-hoc network",
                  .details =
                      "Upper and lower case are different. Any other text is sent as *Managed*. "
                      "If the value is empty, no mode is sent."},
    SettingOption{.key = "--security=",
                  .setting = Setting::Security,
                  .section = SettingOption::Section::Networks,
                  .kind = SettingOption::Kind::Word,
                  .valueName = "SECURITY",
                  .words = {{{.command = "-c", .list = option_words::BasicSecurities},
                             {.command = "-ca", .list = option_words::AdvancedSecurities}}},
                  .initial = "None",
                  .help = "security of the network",
                  .details =
                      "*WPA* and *WPA2* are the same: the adapter chooses the version. *SHARED* is "
                      "WEP with a shared key, *WPA-PER* is WPA personal, *WPA-ENT* is WPA "
                      "enterprise. Upper and lower case are different. For any other text *-c* "
                      "stores \"none\", and *-ca* sends nothing."},
    SettingOption{.key = "--passwd=",
                  .setting = Setting::Passwd,
                  .section = SettingOption::Section::Networks,
                  .help = "password of the network (-c)",
                  .details =
                      "With the security *WEP* the password is the first WEP key, otherwise the "
                      "pre-shared key. If this option is missing and the security is not *None*, "
                      "the program asks for the password: see *PASSWORD PROMPT*."},
    SettingOption{.key = "--encryption=",
                  .setting = Setting::Encryption,
                  .section = SettingOption::Section::Keys,
                  .kind = SettingOption::Kind::Word,
                  .valueName = "ENCRYPTION",
                  .words = {{{.list = option_words::Encryptions}}},
                  .help = "encryption of the network",
                  .details =
                      "Use *TKIP* or *AES* for *WPA-PER* and *WPA-ENT*; *WEP* for *SHARED*, and "
                      "for *OPEN* with WEP; *NONE*, *WEP-DYNAMIC*, *WEP-STATIC*, *WPA-TKIP* "
                      "or *WPA-AES* for *802.1x*. The adapter gets the same number for *TKIP* "
                      "and *WPA-TKIP*, for *AES* and *WPA-AES*, and for *WEP* and "
                      "*WEP-STATIC*. With *WPA-PER*, *WPA-ENT* and *802.1x*, an unknown text is "
                      "sent as *NONE*, and an empty text is not sent."},
    SettingOption{
        .key = "--802-auth-ext=",
        .setting = Setting::AuthExt,
        .section = SettingOption::Section::Authentication,
        .kind = SettingOption::Kind::WordList,
        .valueName = "METHOD[|METHOD...]",
        .words = {{{.list = option_words::AuthMethods}}},
        .help = "authentication methods that may be used",
        .details = "A method is allowed if its name occurs anywhere in the value: NO-PEAP allows "
                   "*PEAP*. All other methods are forbidden."},
    SettingOption{.key = "--802-auth-inner=",
                  .setting = Setting::AuthInner,
                  .section = SettingOption::Section::Authentication,
                  .kind = SettingOption::Kind::Word,
                  .valueName = "METHOD",
                  .words = {{{.list = option_words::InnerMethods}}},
                  .help = "inner authentication method",
                  .details = "An unknown text is sent as *CHAP*. An empty text is not sent."},
    SettingOption{.key = "--802-user=",
                  .setting = Setting::Username,
                  .section = SettingOption::Section::Authentication,
                  .help = "user name of at most 31 characters"},
    SettingOption{.key = "--802-pwd=",
                  .setting = Setting::Password,
                  .section = SettingOption::Section::Authentication,
                  .help = "password of at most 254 characters",
                  .details = "A longer password is cut to 255 characters, and its length is sent "
                             "as 0."},
    SettingOption{.key = "--802-CA-cer-file=",
                  .setting = Setting::CaCertFile,
                  .section = SettingOption::Section::Certificates,
                  .kind = SettingOption::Kind::File,
                  .valueName = "FILE",
                  .help = "CA certificate that -icer installs",
                  .details = "_FILE_ is a PEM file of at most about 11,900 bytes."},
    SettingOption{.key = "--802-signed-cer-file=",
                  .setting = Setting::SignedCertFile,
                  .section = SettingOption::Section::Certificates,
                  .kind = SettingOption::Kind::File,
                  .valueName = "FILE",
                  .help = "signed certificate that -icer installs",
                  .details = "_FILE_ is a PEM file of at most about 11,900 bytes."},
    SettingOption{.key = "--WEP-key1=",
                  .setting = Setting::WepKey1,
                  .section = SettingOption::Section::Keys,
                  .help = "first WEP key of at most 26 characters, sent as typed"},
    SettingOption{.key = "--WEP-key2=",
                  .setting = Setting::WepKey2,
                  .section = SettingOption::Section::Keys,
                  .help = "second WEP key of at most 26 characters, sent as typed"},
    SettingOption{.key = "--WEP-key3=",
                  .setting = Setting::WepKey3,
                  .section = SettingOption::Section::Keys,
                  .help = "third WEP key of at most 26 characters, sent as typed"},
    SettingOption{.key = "--WEP-key4=",
                  .setting = Setting::WepKey4,
                  .section = SettingOption::Section::Keys,
                  .help = "fourth WEP key of at most 26 characters, sent as typed"},
    SettingOption{.key = "--WEP-transmit=",
                  .setting = Setting::WepTransmit,
                  .section = SettingOption::Section::Keys,
                  .kind = SettingOption::Kind::Word,
                  .valueName = "NUMBER",
                  .words = {{{.list = option_words::WepKeyNumbers}}},
                  .help = "number of the WEP key that the adapter sends with",
                  .details = "The default is *1*."},
    SettingOption{.key = "--psk=",
                  .setting = Setting::Psk,
                  .section = SettingOption::Section::Keys,
                  .help = "pre-shared key of at most 64 characters",
                  .details =
                      "*WPA-PER* and *WPA-ENT* use this key. Without this option *-ca* sends an "
                      "empty key, and does not ask for a key."},
    SettingOption{.key = "--cer-common=",
                  .setting = Setting::CerCommonName,
                  .section = SettingOption::Section::Certificates,
                  .help = "common name of the subject"},
    SettingOption{.key = "--cer-org=",
                  .setting = Setting::CerOrg,
                  .section = SettingOption::Section::Certificates,
                  .help = "organisation"},
    SettingOption{.key = "--cer-unit=",
                  .setting = Setting::CerUnit,
                  .section = SettingOption::Section::Certificates,
                  .help = "organisational unit"},
    SettingOption{.key = "--cer-state=",
                  .setting = Setting::CerState,
                  .section = SettingOption::Section::Certificates,
                  .help = "state"},
    SettingOption{.key = "--cer-country=",
                  .setting = Setting::CerCountry,
                  .section = SettingOption::Section::Certificates,
                  .help = "country, two letters"},
    SettingOption{.key = "--cer-city=",
                  .setting = Setting::CerCity,
                  .section = SettingOption::Section::Certificates,
                  .help = "city"},
    SettingOption{.key = "--cer-altname=",
                  .setting = Setting::CerAltName,
                  .section = SettingOption::Section::Certificates,
                  .help = "alternative name"},
    SettingOption{.key = "--cer-friendly-name=",
                  .setting = Setting::CerFriendlyName,
                  .section = SettingOption::Section::Certificates,
                  .help = "name of the certificate (not used)",
                  .details = "No command uses it: the printer keeps the certificate under a fixed "
                             "name."},
    SettingOption{.key = "--cer-path=",
                  .setting = Setting::CerFilePath,
                  .section = SettingOption::Section::Certificates,
                  .kind = SettingOption::Kind::File,
                  .valueName = "FILE",
                  .help = "file that -csr writes the certificate request to"},
};
