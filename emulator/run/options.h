#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "emulator/adapter/personality.h"
#include "emulator/usb/usb_traits.h"

namespace emulator {

/// The parsed command line of zvkprinter.
struct Options {
  enum class Action { Help, Run, Serve, Usb, Show };

  Action action = Action::Help;
  Personality personality;
  UsbTraits usb;                       ///< `usb`: properties and faults of the USB device
  std::optional<std::string> logFile;  ///< if not set, the log goes to standard error
  bool appendsLog = false;             ///< keep the content that the log file already has
  bool showSettings = false;         ///< at the end, print the printer's settings and certificates
  std::optional<std::string> radio;  ///< the interface with which the adapter joins networks
  std::optional<std::string> stateFolder;  ///< where the printer saves its state
  bool showSecrets = false;
  bool namespaces = true;             ///< `run`: try a private mount namespace first
  std::string link;                   ///< `serve`: the path of the link to the printer
  bool attach = false;                ///< `usb`: plug the printer into this machine
  std::optional<std::uint16_t> port;  ///< `usb`: the TCP port of the printer; 0: any free port
  std::vector<std::string> command;   ///< `run` and `usb`: the command; `usb` may have none
};

}  // namespace emulator
