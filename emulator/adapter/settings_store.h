#pragma once

#include <map>
#include <span>
#include <string>
#include <vector>

#include "catalogue/packet_reader.h"
#include "catalogue/setting_catalogue.h"

namespace emulator {

/// The settings that the adapter holds, as the bytes it was given.
class SettingsStore {
 public:
  using Values = std::map<npa::SettingKey, npa::Bytes>;

  /// Says what the adapter has from the start: the value of a setting that nobody stores.
  void preset(npa::SettingKey key, std::span<const npa::Byte> value);

  void set(npa::SettingKey key, std::span<const npa::Byte> value);

  /// The value of a setting; empty when it holds none.
  npa::Bytes get(npa::SettingKey key) const;

  bool holds(npa::SettingKey key) const {
    return stored().contains(key) || m_Presets.contains(key);
  }

  /// The settings that were stored, without those that the adapter has from the start.
  const Values& stored() const { return m_Values; }

  /// A number that grows with every value that is stored.
  unsigned long revision() const { return m_Revision; }

  /// One line for each setting in words, ordered by group and object.
  std::vector<std::string> describe(bool showSecrets) const;

 private:
  Values m_Presets;
  Values m_Values;
  unsigned long m_Revision = 0;
};

}  // namespace emulator
