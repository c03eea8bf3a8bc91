#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "settings/option_table.h"

/// The settings of one run, as texts:
///
///     configDetails settings;  // initial values
///     settings.parseParm(4, {"zvkconfig", "-c", "--ssid=home", "/dev/usb/lp1"});
///     settings.getSSID();      // "home"
///     settings.getUSB();       // "/dev/usb/lp1"
///
/// The object does not check the texts: the encoders decide what a text means. Secrets are kept in
/// clear text. The object owns the texts and keeps the files that it reads open. A reference that a
/// getter returns is valid as long as the object exists, and shows later changes.
class configDetails {
 public:
  /// Sets each option to its initial value and the device path to "/dev/usb/lp0".
  configDetails();

  /// Extracts the value of option `key`, such as "--ssid=", from `text` into `*value`. Leaves
  /// `*value` unchanged if the key is not in the text. Otherwise sets `*value` to
  ///
  /// - the text between the first two quotation marks, or
  /// - the text after the only quotation mark, or
  /// - without quotation marks, the text from position `key.size()` on.
  ///
  /// The last rule gives the right value only if the key is at the start of the text:
  /// "x--ssid=home" yields "=home". Returns 0.
  int getParmValue(std::string text, std::string key, std::string* value);

  /// Reads the device path and the options from the arguments 1 to `count - 1`. An argument without
  /// "-" is a device path. In each other argument the operation searches for every option key. If a
  /// setting occurs several times, the last value counts. Returns 0.
  int parseParm(int count, std::vector<std::string> args);

  /// Reads only the device path: the last of the arguments 1 to `count - 1` without "-". Returns 0.
  int parseUSB(int count, std::vector<std::string> args);

  /// Sets the device path to `usbPath`, then reads the options in the file `path`, one per line. A
  /// line that starts with "#" is a comment. A line of more than 255 characters is read as several
  /// lines of 255. A file that cannot be read counts as empty. Returns 0. (argument_files.cpp)
  int parseFile(std::string path, std::string usbPath);

  /// Replaces the NPA data by the hex digits in the file `path`, and prints the digits to standard
  /// output. Skips all other bytes. Returns 0. Returns -1 and changes nothing if the file cannot be
  /// opened. (argument_files.cpp)
  int parseNPAFile(const char* path);

  /// Returns the text of `setting`. Each getter below returns the text of one setting. If an option
  /// sets the text, the comment of the getter names this option.
  const std::string& value(Setting setting) const {
    return m_Values[static_cast<std::size_t>(setting)];
  }

  /// Replaces the text of a setting. Other front ends use this operation to fill the settings.
  void set(Setting setting, std::string_view text) { slot(setting) = text; }

  /// Returns the device path: "/dev/usb/lp0" to "/dev/usb/lp16", or "BUS:DEVICE" for libusb.
  const std::string& getUSB() const { return value(Setting::Usb); }
  /// Returns `--ssid`.
  const std::string& getSSID() const { return value(Setting::Ssid); }
  /// Returns `--channel`, at first "6".
  const std::string& getChannel() const { return value(Setting::Channel); }
  /// Returns `--mode`, at first "Managed".
  const std::string& getMode() const { return value(Setting::Mode); }
  /// Returns `--security`, at first "None".
  const std::string& getSecurity() const { return value(Setting::Security); }
  /// Returns `--passwd`, the password of the network.
  const std::string& getPasswd() const { return value(Setting::Passwd); }
  /// Returns the hex digits of the NPA data file, two for each byte.
  const std::string& getNPAFileData() const { return value(Setting::NpaFileData); }
  /// Returns `--encryption`, which networks without 802.1x use as well.
  const std::string& get802Encryption() const { return value(Setting::Encryption); }
  /// Returns `--802-auth-ext`, a list of authentication methods.
  const std::string& get802AuthExt() const { return value(Setting::AuthExt); }
  /// Returns `--802-auth-inner`.
  const std::string& get802AuthInner() const { return value(Setting::AuthInner); }
  /// Returns `--802-user`.
  const std::string& get802Username() const { return value(Setting::Username); }
  /// Returns `--802-pwd`.
  const std::string& get802Password() const { return value(Setting::Password); }
  /// Returns `--802-CA-cer-file`, a path on the host.
  const std::string& get802CACertFile() const { return value(Setting::CaCertFile); }
  /// Returns `--802-signed-cer-file`, a path on the host.
  const std::string& get802SignedCertFile() const { return value(Setting::SignedCertFile); }
  /// Returns the WEP key `index`, from 0 for `--WEP-key1` to 3 for `--WEP-key4`. The index must be
  /// 0 to 3.
  const std::string& getWEPKey(int index) const {
    return m_Values.at(static_cast<std::size_t>(Setting::WepKey1) +
                       static_cast<std::size_t>(index));
  }
  /// Returns `--WEP-transmit`, the number of a WEP key from "1" on.
  const std::string& getWEPTransmit() const { return value(Setting::WepTransmit); }
  /// Returns `--psk`, the pre-shared key.
  const std::string& getPSK() const { return value(Setting::Psk); }
  /// Returns `--cer-common`.
  const std::string& getCerCommonName() const { return value(Setting::CerCommonName); }
  /// Returns `--cer-org`.
  const std::string& getCerOrg() const { return value(Setting::CerOrg); }
  /// Returns `--cer-unit`.
  const std::string& getCerUnit() const { return value(Setting::CerUnit); }
  /// Returns `--cer-state`.
  const std::string& getCerState() const { return value(Setting::CerState); }
  /// Returns `--cer-country`.
  const std::string& getCerCountry() const { return value(Setting::CerCountry); }
  /// Returns `--cer-city`.
  const std::string& getCerCity() const { return value(Setting::CerCity); }
  /// Returns `--cer-altname`.
  const std::string& getCerAltName() const { return value(Setting::CerAltName); }
  /// Returns `--cer-friendly-name`, which no command uses.
  const std::string& getCerFriendlyName() const { return value(Setting::CerFriendlyName); }
  /// Returns `--cer-path`, the host's file for a certificate request.
  const std::string& getCerFilePath() const { return value(Setting::CerFilePath); }

 private:
  struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  using File = std::unique_ptr<std::FILE, CloseFile>;

  /// Opens a file for reading and keeps it open as long as this object. Returns nullptr on failure.
  std::FILE* open(const char* path);

  /// Returns the text of a setting, for writing.
  std::string& slot(Setting setting) { return m_Values[static_cast<std::size_t>(setting)]; }
  /// Searches one argument or line for every option key, and sets the settings of the keys that it
  /// contains.
  void applyOptions(const std::string& argument);

  std::array<std::string, static_cast<std::size_t>(Setting::Count)> m_Values;
  // The files stay open on purpose. If the run starts with a closed standard input, the file that
  // is opened first gets descriptor 0. A device that gets descriptor 0 counts as not opened. So the
  // file must keep descriptor 0 until the run ends.
  std::vector<File> m_Files;
};
