#pragma once

#include <string>
#include <utility>
#include <vector>

namespace support {

/// The arguments of a program in the form that `main` takes.
///
///     CommandLine line({"zvkconfig", "-s"});
///     main(line.count(), line.vector());
class CommandLine {
 public:
  /// `arguments` begins with the program's own path.
  explicit CommandLine(std::vector<std::string> arguments) : m_Arguments(std::move(arguments)) {
    for (std::string& argument : m_Arguments) {
      m_Pointers.push_back(argument.data());
    }
    m_Pointers.push_back(nullptr);
  }
  ~CommandLine() = default;
  CommandLine(const CommandLine&) = delete;
  CommandLine& operator=(const CommandLine&) = delete;

  int count() const { return static_cast<int>(m_Arguments.size()); }
  char** vector() { return m_Pointers.data(); }

 private:
  std::vector<std::string> m_Arguments;
  std::vector<char*> m_Pointers;
};

/// The help text. zvkconfig prints it for -h, and if it has no arguments.
inline const std::string HelpText =
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
    "      USB_PATH        path of the usb where the printer you want to configure is connected.\n"
    "\n";

}  // namespace support
