#pragma once

#include <string>
#include <vector>

#include "testing/files.h"
#include "testing/rows.h"

namespace faults {

/// The longest that a command may wait, over all of its attempts and both ways to pack a request.
struct LongestWait {
  int pauses;  ///< the protocol's pauses and deadlines, in seconds
  int writes;  ///< requests, each of which a printer may keep waiting
  int reads;   ///< reads, each of which ends after a silence
};

/// A command as somebody calls it.
struct Command : support::Row {
  /// "{}" stands for the device, "{name}" for a file of that name.
  std::vector<std::string> arguments;
  /// Every exit status that it may end with, whatever the printer and the system do.
  std::vector<int> statuses;
  LongestWait longestWait;
  /// What is typed at the terminal.
  std::string input{};
};

/// Every command, and each security of the advanced configuration.
const std::vector<Command>& commands();

/// Those that talk to the printer.
std::vector<Command> talkingCommands();

/// The command of that name.
const Command& command(const std::string& name);

/// The files that the commands name.
class CommandFiles {
 public:
  CommandFiles();

  /// The arguments of a command behind the program's own path, with `device` filled in.
  std::vector<std::string> fill(const Command& command, const std::string& device) const;

 private:
  support::TemporaryFolder m_Folder;
};

}  // namespace faults
