// The settings of one run: initial values, and options from the command line.

#include "settings/config_details.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace {

/// Returns the arguments 1 to `count - 1`. If there are fewer arguments, ends at the last argument.
std::span<const std::string> argumentsAfterProgram(int count,
                                                   const std::vector<std::string>& args) {
  const std::size_t end = std::min(static_cast<std::size_t>(std::max(count, 1)), args.size());
  return args.empty() ? std::span<const std::string>() : std::span(args).subspan(1, end - 1);
}

/// The columns of the option table that a run needs, so that the program does not contain the texts
/// for the manual page.
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

/// Returns true if the argument is a device path, that is, if it contains no "-".
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
  // The search for the quotation mark begins at the start of the text, even if the key comes later.
  const std::size_t open = text.find('"');
  if (open == std::string::npos) {
    // On purpose, this is the text after the key only if the key is at the start of the text.
    *value = text.substr(key.size());
    return 0;
  }
  const std::size_t close = text.find('"', open + 1);
  const std::size_t end = close == std::string::npos ? text.size() : close;
  *value = text.substr(open + 1, end - open - 1);
  return 0;
}

void configDetails::applyOptions(const std::string& argument) {
  // Tries every key, because an argument can contain several keys. Each key that is found sets its
  // setting.
  for (const Key& key : Keys) {
    getParmValue(argument, std::string(key.text), &slot(key.setting));
  }
}

int configDetails::parseParm(int count, std::vector<std::string> args) {
  for (const std::string& argument : argumentsAfterProgram(count, args)) {
    if (isDevicePath(argument)) {
      slot(Setting::Usb) = argument;
    } else {
      applyOptions(argument);
    }
  }
  return 0;
}

int configDetails::parseUSB(int count, std::vector<std::string> args) {
  for (const std::string& argument : argumentsAfterProgram(count, args)) {
    if (isDevicePath(argument)) {
      slot(Setting::Usb) = argument;
    }
  }
  return 0;
}
