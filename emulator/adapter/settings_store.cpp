#include "emulator/adapter/settings_store.h"

namespace emulator {

void SettingsStore::preset(npa::SettingKey key, std::span<const npa::Byte> value) {
  m_Presets[key].assign(value.begin(), value.end());
}

void SettingsStore::set(npa::SettingKey key, std::span<const npa::Byte> value) {
  m_Values[key].assign(value.begin(), value.end());
  ++m_Revision;
}

npa::Bytes SettingsStore::get(npa::SettingKey key) const {
  for (const Values* const values : {&m_Values, &m_Presets}) {
    if (const auto found = values->find(key); found != values->end()) {
      return found->second;
    }
  }
  return {};
}

std::string SettingsStore::text(npa::SettingKey key) const {
  const npa::Bytes value = get(key);
  const auto text = catalogue::withoutTerminator(value);
  return {text.begin(), text.end()};
}

std::optional<std::size_t> SettingsStore::number(npa::SettingKey key) const {
  return catalogue::numberOf(get(key));
}

std::vector<std::string> SettingsStore::describe(bool showSecrets) const {
  Values all = m_Values;
  all.insert(m_Presets.begin(), m_Presets.end());
  std::vector<std::string> lines;
  lines.reserve(all.size());
  for (const auto& [key, value] : all) {
    lines.push_back(catalogue::describeSetting(key, value, showSecrets));
  }
  return lines;
}

}  // namespace emulator
