#include "cli/zvk_setup.h"

#include <cstddef>
#include <cstdio>
#include <span>

#include "cli/command_mode.h"

namespace {

/// The generator's answer to a request that the adapter refused.
constexpr int Refused = -1;
constexpr int CommandUnavailable = 1;
/// Where the settings of a command begin in the arguments.
constexpr std::size_t SettingsArgument = 2;

std::vector<std::string> copyOf(int argumentCount, char** arguments) {
  const std::span<char*> all(arguments, static_cast<std::size_t>(argumentCount));
  return {all.begin(), all.end()};
}

}  // namespace

zvkSetup::zvkSetup(int argumentCount, char** arguments)
    : m_ArgumentCount(argumentCount),
      m_Arguments(copyOf(argumentCount, arguments)),
      m_Command(m_Arguments.at(1)),
      m_Configuration(std::make_unique<configDetails>()),
      m_ReturnCode(setDevice()) {}

int zvkSetup::setDevice() {
  readSettings();
  return runCommand();
}

void zvkSetup::readSettings() {
  const CommandMode* const mode = findCommandMode(m_Command);
  if (mode != nullptr && mode->settings == CommandMode::Settings::Options) {
    static_cast<void>(m_Arguments.at(SettingsArgument));  // a configuration of nothing ends the run
    m_Configuration->parseParm(m_ArgumentCount, m_Arguments);
  } else {
    m_Configuration->parseUSB(m_ArgumentCount, m_Arguments);
  }
}

int zvkSetup::runCommand() {
  const CommandMode* const mode = findCommandMode(m_Command);
  if (mode == nullptr) {
    std::fprintf(stderr, "zvkconfig: this version has no command '%s'\n", m_Command.c_str());
    return CommandUnavailable;
  }
  m_Generator = std::make_unique<wnpaGenerator>(m_Configuration.get());
  if (mode->operation == nullptr) {
    return showHelp();
  }
  const auto run = [&] {
    return (m_Generator.get()->*mode->operation)();
  };
  const int result = run();
  if (result != Refused || !mode->retriesBare) {
    return result;
  }
  m_Generator->setWrapMode(false);
  return run();
}

int zvkSetup::showHelp() {
  std::fputs(
      "\n"
      "  zvkconfig\n"
      "\tConfigures printer to connect to other wireless devices.\n"
      "\n"
      "  USAGE:\n"
      "        zvkconfig --ssid=\"<SSID>\" --mode=\"[Ad-hoc|Managed]\" "
      "--security=\"[None|WEP|WPA|WPA2|802.1x]\" /\n"
      "        --channel=\"[1-6]\" --passwd=\"<password>\" [USB_PATH]\n"
      "\n"
      "  OPTIONS:\n"
      "      --ssid          Name of the network you want to connect.\n"
      "      --mode          Type of connection.\n"
      "      --security      Security of the network you are connecting.\n"
      "      --channel       Channel of the ad-hoc network you are connecting.\n"
      "      --password      Password of the network if security is equal to None\n"
      "\n"
      "      -h              displays this help.\n"
      "      USB_PATH        path of the usb where the printer you want to configure is "
      "connected.\n"
      "\n",
      stdout);
  return 0;
}
