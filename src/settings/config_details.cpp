#include "settings/config_details.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace {

/// Arguments 1 to `count` - 1, as many of them as there are.
std::span<const std::string> argumentsBehindProgram(int count,
                                                    const std::vector<std::string>& args) {
  const std::size_t end = std::min(static_cast<std::size_t>(std::max(count, 1)), args.size());
  return args.empty() ? std::span<const std::string>() : std::span(args).subspan(1, end - 1);
}

/// What a run needs of a row: the program does not contain the texts for the manual.
struct Key {
  std::string_view text;
  Setting setting = Setting::Usb;
  std::string_view initial;
};

constexpr auto Keys = [] {
  std::array<Key, SettingOptions.size()> keys{};
  std::ranges::transform(SettingOptions, keys.begin(), [](const SettingOption& option) {
    return Key{option.key, option.setting, option.initial};
  });
  return keys;
}();

bool isDevicePath(const std::string& argument) {
  return argument.find('-') == std::string::npos;
}

}  // namespace

configDetails::configDetails() {
  slot(Setting::Usb) = "/dev/usb/lp0";
  for (const Key& key : Keys) {
    slot(key.setting) = key.initial;
  }
}

int configDetails::getParmValue(std::string text, std::string key, std::string* value) {
  if (text.find(key) == std::string::npos) {
    return 0;
  }
  const std::size_t open = text.find('"');
  if (open == std::string::npos) {
    *value = text.substr(key.size());
    return 0;
  }
  const std::size_t close = text.find('"', open + 1);
  const std::size_t end = close == std::string::npos ? text.size() : close;
  *value = text.substr(open + 1, end - open - 1);
  return 0;
}

void configDetails::applyOptions(const std::string& argument) {
  for (const Key& key : Keys) {
    getParmValue(argument, std::string(key.text), &slot(key.setting));
  }
}

int configDetails::parseParm(int count, std::vector<std::string> args) {
  for (const std::string& argument : argumentsBehindProgram(count, args)) {
    if (isDevicePath(argument)) {
      slot(Setting::Usb) = argument;
    } else {
      applyOptions(argument);
    }
  }
  return 0;
}

int configDetails::parseUSB(int count, std::vector<std::string> args) {
  for (const std::string& argument : argumentsBehindProgram(count, args)) {
    if (isDevicePath(argument)) {
      slot(Setting::Usb) = argument;
    }
  }
  return 0;
}
