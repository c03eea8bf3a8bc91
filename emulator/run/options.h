#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "emulator/adapter/personality.h"
#include "emulator/usb/usb_traits.h"

namespace emulator {

/// The command line of zvkprinter, taken apart.
struct Options {
  enum class Action { Help, Run, Serve, Usb, Show };

  Action action = Action::Help;
  Personality personality;
  UsbTraits usb;                           ///< `usb`: how the printer looks to the host
  std::optional<std::string> logFile;      ///< standard error when there is none
  bool appendsLog = false;                 ///< keeps what the log file holds already
  bool showSettings = false;               ///< say at the end what the printer holds
  std::optional<std::string> stateFolder;  ///< keeps what the printer holds from run to run
  bool showSecrets = false;
  bool namespaces = true;             ///< try a private mount namespace first
  std::string link;                   ///< of `serve`
  bool attach = false;                ///< `usb`: plug the printer into this machine
  std::optional<std::uint16_t> port;  ///< `usb`: serve it there; 0 is any
  std::vector<std::string> command;   ///< of `run`; of `usb`, where it may be missing
};

}  // namespace emulator
