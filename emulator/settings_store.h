#pragma once

#include <map>
#include <span>
#include <string>
#include <vector>

#include "emulator/packet_reader.h"
#include "emulator/setting_catalogue.h"

namespace emulator {

/// The settings that the adapter holds, as the bytes it was given.
class SettingsStore {
 public:
  void set(SettingKey key, std::span<const npa::Byte> value);

  /// The value of a setting; empty when it holds none.
  Bytes get(SettingKey key) const;

  bool holds(SettingKey key) const { return m_Values.contains(key); }

  /// One line for each setting in words, ordered by group and object.
  std::vector<std::string> describe(bool showSecrets) const;

 private:
  std::map<SettingKey, Bytes> m_Values;
};

}  // namespace emulator
