#pragma once

#include <stdexcept>
#include <utility>

#include "wifi/arguments.h"
#include "wifi/explanation.h"

namespace wifi {

/// Ends a command that fails before it has a report. Contains the exit status and the reason.
struct CommandError : std::runtime_error {
  CommandError(int exitStatus, Explanation reason)
      : std::runtime_error(reason.message), status(exitStatus), explanation(std::move(reason)) {}

  int status;
  Explanation explanation;
};

// The commands. Each command prints its result and returns the exit status. A command may throw
// `UsageError`, `CommandError`, `session::ProfileError`, `SecretError`, `Interrupted`,
// `session::FileError` or `std::system_error`.

/// Asks for everything step by step on the terminal. If there is no terminal, prints the usage.
int guideCommand(const Arguments& arguments);
int listCommand(const Arguments& arguments);
int statusCommand(const Arguments& arguments);
int setCommand(const Arguments& arguments);
int stationCommand(const Arguments& arguments);
int resetCommand(const Arguments& arguments);
int certListCommand(const Arguments& arguments);
int certRequestCommand(const Arguments& arguments);
int certInstallCaCommand(const Arguments& arguments);
int certInstallCommand(const Arguments& arguments);
int certDeleteCommand(const Arguments& arguments);
int certDeleteCaCommand(const Arguments& arguments);

}  // namespace wifi
