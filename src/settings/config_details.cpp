#include "settings/config_details.h"

#include <algorithm>
#include <span>

namespace {

/// Arguments 1 to `count` - 1, as many of them as there are.
std::span<const std::string> argumentsBehindProgram(int count,
                                                    const std::vector<std::string>& args) {
  const std::size_t end = std::min(static_cast<std::size_t>(std::max(count, 1)), args.size());
  return args.empty() ? std::span<const std::string>() : std::span(args).subspan(1, end - 1);
}

bool isDevicePath(const std::string& argument) {
  return argument.find('-') == std::string::npos;
}

}  // namespace

// In the order in which the keys are tried.
const std::array<configDetails::Option, 27> configDetails::Options = {{
    {"--ssid=", Setting::Ssid},
    {"--channel=", Setting::Channel},
    {"--mode=", Setting::Mode},
    {"--security=", Setting::Security},
    {"--passwd=", Setting::Passwd},
    {"--encryption=", Setting::Encryption},
    {"--802-auth-ext=", Setting::AuthExt},
    {"--802-auth-inner=", Setting::AuthInner},
    {"--802-user=", Setting::Username},
    {"--802-pwd=", Setting::Password},
    {"--802-CA-cer-file=", Setting::CaCertFile},
    {"--802-signed-cer-file=", Setting::SignedCertFile},
    {"--WEP-key1=", Setting::WepKey1},
    {"--WEP-key2=", Setting::WepKey2},
    {"--WEP-key3=", Setting::WepKey3},
    {"--WEP-key4=", Setting::WepKey4},
    {"--WEP-transmit=", Setting::WepTransmit},
    {"--psk=", Setting::Psk},
    {"--cer-common=", Setting::CerCommonName},
    {"--cer-org=", Setting::CerOrg},
    {"--cer-unit=", Setting::CerUnit},
    {"--cer-state=", Setting::CerState},
    {"--cer-country=", Setting::CerCountry},
    {"--cer-city=", Setting::CerCity},
    {"--cer-altname=", Setting::CerAltName},
    {"--cer-friendly-name=", Setting::CerFriendlyName},
    {"--cer-path=", Setting::CerFilePath},
}};

configDetails::configDetails() {
  value(Setting::Usb) = "/dev/usb/lp0";
  value(Setting::Channel) = "6";
  value(Setting::Mode) = "Managed";
  value(Setting::Security) = "None";
}

std::vector<std::string> configDetails::optionKeys() {
  std::vector<std::string> keys;
  keys.reserve(Options.size());
  for (const Option& option : Options) {
    keys.emplace_back(option.key);
  }
  return keys;
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
  for (const Option& option : Options) {
    getParmValue(argument, option.key, &value(option.setting));
  }
}

int configDetails::parseParm(int count, std::vector<std::string> args) {
  for (const std::string& argument : argumentsBehindProgram(count, args)) {
    if (isDevicePath(argument)) {
      value(Setting::Usb) = argument;
    } else {
      applyOptions(argument);
    }
  }
  return 0;
}

int configDetails::parseUSB(int count, std::vector<std::string> args) {
  for (const std::string& argument : argumentsBehindProgram(count, args)) {
    if (isDevicePath(argument)) {
      value(Setting::Usb) = argument;
    }
  }
  return 0;
}
