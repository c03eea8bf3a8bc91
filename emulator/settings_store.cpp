#include "emulator/settings_store.h"

namespace emulator {

void SettingsStore::set(SettingKey key, std::span<const npa::Byte> value) {
  m_Values[key].assign(value.begin(), value.end());
}

Bytes SettingsStore::get(SettingKey key) const {
  const auto found = m_Values.find(key);
  return found == m_Values.end() ? Bytes() : found->second;
}

std::vector<std::string> SettingsStore::describe(bool showSecrets) const {
  std::vector<std::string> lines;
  lines.reserve(m_Values.size());
  for (const auto& [key, value] : m_Values) {
    lines.push_back(describeSetting(key, value, showSecrets));
  }
  return lines;
}

}  // namespace emulator
