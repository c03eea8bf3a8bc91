#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "settings/option_table.h"

/// The settings of one run. Each is text, and none is checked: the encoders decide what a text
/// means. References that a getter returns live as long as the record, and so do the files that it
/// reads: they stay open.
class configDetails {
 public:
  /// Gives each option its initial value, and the device "/dev/usb/lp0".
  configDetails();

  /// Extracts the value of option `key` from `text` into `*value`. Nothing happens when the key
  /// occurs nowhere in the text. Else the value is what stands between the first two quotation
  /// marks, or behind the only one, or, without any, from the position that is the key's length:
  /// right when the key opens the text. Returns 0.
  int getParmValue(std::string text, std::string key, std::string* value);

  /// Fills the record from arguments 1 to `count` - 1: one without any "-" is the device path, each
  /// other is matched against every option key. Returns 0.
  int parseParm(int count, std::vector<std::string> args);

  /// Takes only the device path from arguments 1 to `count` - 1: the last one without any "-".
  /// Returns 0.
  int parseUSB(int count, std::vector<std::string> args);

  /// Sets the device path to `usbPath`, then reads options from the file `path`: one to a line, "#"
  /// opening a comment, lines of more than 255 characters in pieces of 255. A file that cannot be
  /// read counts as empty. Returns 0. (argument_files.cpp)
  int parseFile(std::string path, std::string usbPath);

  /// Replaces the NPA data by the hex digits of the file `path`, all other bytes skipped, and
  /// prints it. Returns 0, or -1 when the file cannot be opened. (argument_files.cpp)
  int parseNPAFile(const char* path);

  /// Any setting; those below are the same by name.
  const std::string& value(Setting setting) const {
    return m_Values[static_cast<std::size_t>(setting)];
  }

  /// Replaces the text of a setting. Other front ends fill the settings with it.
  void set(Setting setting, std::string_view text) { slot(setting) = text; }

  const std::string& getUSB() const { return value(Setting::Usb); }
  const std::string& getSSID() const { return value(Setting::Ssid); }
  const std::string& getChannel() const { return value(Setting::Channel); }
  const std::string& getMode() const { return value(Setting::Mode); }
  const std::string& getSecurity() const { return value(Setting::Security); }
  const std::string& getPasswd() const { return value(Setting::Passwd); }
  const std::string& getNPAFileData() const { return value(Setting::NpaFileData); }
  const std::string& get802Encryption() const { return value(Setting::Encryption); }
  const std::string& get802AuthExt() const { return value(Setting::AuthExt); }
  const std::string& get802AuthInner() const { return value(Setting::AuthInner); }
  const std::string& get802Username() const { return value(Setting::Username); }
  const std::string& get802Password() const { return value(Setting::Password); }
  const std::string& get802CACertFile() const { return value(Setting::CaCertFile); }
  const std::string& get802SignedCertFile() const { return value(Setting::SignedCertFile); }
  /// WEP key `index`, 0 to 3.
  const std::string& getWEPKey(int index) const {
    return m_Values.at(static_cast<std::size_t>(Setting::WepKey1) +
                       static_cast<std::size_t>(index));
  }
  const std::string& getWEPTransmit() const { return value(Setting::WepTransmit); }
  const std::string& getPSK() const { return value(Setting::Psk); }
  const std::string& getCerCommonName() const { return value(Setting::CerCommonName); }
  const std::string& getCerOrg() const { return value(Setting::CerOrg); }
  const std::string& getCerUnit() const { return value(Setting::CerUnit); }
  const std::string& getCerState() const { return value(Setting::CerState); }
  const std::string& getCerCountry() const { return value(Setting::CerCountry); }
  const std::string& getCerCity() const { return value(Setting::CerCity); }
  const std::string& getCerAltName() const { return value(Setting::CerAltName); }
  const std::string& getCerFriendlyName() const { return value(Setting::CerFriendlyName); }
  const std::string& getCerFilePath() const { return value(Setting::CerFilePath); }

 private:
  struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  using File = std::unique_ptr<std::FILE, CloseFile>;

  /// Opens a file for reading, for as long as the record lives. Returns nullptr on failure.
  std::FILE* open(const char* path);

  std::string& slot(Setting setting) { return m_Values[static_cast<std::size_t>(setting)]; }
  /// Matches one argument against every option key.
  void applyOptions(const std::string& argument);

  std::array<std::string, static_cast<std::size_t>(Setting::Count)> m_Values;
  // A run may start with standard input closed. The file then gets descriptor 0, which no device
  // may have: as long as the file is open, the device gets another.
  std::vector<File> m_Files;
};
