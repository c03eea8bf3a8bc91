#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "catalogue/packet_reader.h"
#include "catalogue/setting_catalogue.h"

namespace emulator {

/// The settings that the adapter holds. The values are bytes, in the form in which a host sends
/// them.
class SettingsStore {
 public:
  using Values = std::map<npa::SettingKey, npa::Bytes>;

  /// Sets the initial value of a setting. A value that a host stores takes precedence.
  void preset(npa::SettingKey key, std::span<const npa::Byte> value);

  /// Stores a value that a host sends.
  void set(npa::SettingKey key, std::span<const npa::Byte> value);

  /// Returns the value of a setting, or an empty value if there is none.
  npa::Bytes get(npa::SettingKey key) const;

  /// Returns the value of a text setting without its zero byte.
  std::string text(npa::SettingKey key) const;

  /// Returns the value of a number setting. Returns nothing if the setting has no value, or if the
  /// value is not a number.
  std::optional<std::size_t> number(npa::SettingKey key) const;

  /// Returns true if the setting has a stored or an initial value.
  bool holds(npa::SettingKey key) const {
    return stored().contains(key) || m_Presets.contains(key);
  }

  /// Returns the stored settings, without the initial values.
  const Values& stored() const { return m_Values; }

  /// Returns a number that grows with every stored value.
  unsigned long revision() const { return m_Revision; }

  /// Returns a line of text for each setting, ordered by group and object. Masks secrets unless
  /// `showSecrets` is set.
  std::vector<std::string> describe(bool showSecrets) const;

 private:
  Values m_Presets;
  Values m_Values;
  unsigned long m_Revision = 0;
};

}  // namespace emulator
