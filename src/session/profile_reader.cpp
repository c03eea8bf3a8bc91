// Collects settings from options and settings files.

#include <cerrno>
#include <cstring>
#include <set>
#include <system_error>

#include "session/profile.h"
#include "session/setting_rules.h"
#include "session/settings_file.h"
#include "session/translatable.h"

namespace session {

namespace {

std::string lineOf(std::string subject, std::string_view got, const char* expected) {
  subject.append(": expected ").append(expected);
  if (!got.empty()) {
    subject.append(", got '").append(got).append("'");
  }
  return subject;
}

}  // namespace

ProfileError::ProfileError(std::string setting, std::string value, const char* allowed)
    : std::runtime_error(lineOf(setting, value, allowed)),
      subject(std::move(setting)),
      got(std::move(value)),
      expected(allowed) {}

ProfileError ProfileError::ofLastCall(const std::string& setting, const char* allowed) {
  return {setting, std::generic_category().message(errno), allowed};
}

void ProfileReader::set(std::string_view key, const std::string& value,
                        const std::string& subject) {
  const SettingRule* const rule = findRule(key);
  if (rule == nullptr) {
    throw ProfileError(subject, "", keysOfOptions());
  }
  if (rule->isSecret) {
    throw ProfileError(subject, "", rule->expected);
  }
  take(*rule, value, subject);
}

void ProfileReader::take(const SettingRule& rule, std::string_view value,
                         const std::string& subject) {
  storeSetting(rule, value, subject, m_Draft);
  m_Given[rule.place] = {subject, rule.hidesValue ? "" : std::string(value)};
}

void ProfileReader::readFile(const std::string& path) {
  const SettingsFile file = loadSettingsFile(path);
  readText(file.text, path, file.isPrivate);
}

void ProfileReader::readText(std::string_view text, const std::string& name, bool mayHoldPassword) {
  std::set<std::string_view> places;
  forEachSetting(text, name, [&](const SettingLine& line) {
    const SettingRule* const rule = findRule(line.key);
    if (rule == nullptr) {
      throw ProfileError(line.subject, "", keysOfFiles());
    }
    if (rule->isSecret && !mayHoldPassword) {
      throw ProfileError(line.subject, "",
                         translatable("a settings file of your own that nobody else can read "
                                      "(chmod 600), because it contains a password"));
    }
    if (!places.insert(rule->place).second) {
      throw ProfileError(line.subject, "", translatable("each setting only once"));
    }
    const std::string_view value = rule->isSecret ? line.value : trimmed(line.value);
    if (!m_Given.contains(rule->place)) {
      take(*rule, value, line.subject);
    } else {
      // A line must be valid even if its value is overridden.
      Draft ignored;
      storeSetting(*rule, value, line.subject, ignored);
    }
  });
}

}  // namespace session
