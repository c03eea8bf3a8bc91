#pragma once

#include <string>
#include <tuple>
#include <vector>

#include "testing/files.h"
#include "testing/rows.h"

namespace faults {

/// The longest waits of a command. Each member is a total over all attempts with wrapped and bare
/// packets.
struct LongestWait {
  int pauses;  ///< the protocol's pauses and deadlines, in seconds
  int writes;  ///< count of requests; the printer can delay each request
  int reads;   ///< count of reads that end with a timeout
};

/// A command line of the program.
struct Command : support::Row {
  /// "{}" stands for the device. "{name}" stands for the file `name` of `CommandFiles`.
  std::vector<std::string> arguments;
  /// Every exit status that the command may end with.
  std::vector<int> statuses;
  LongestWait longestWait;
  /// The text that the test types on the terminal.
  std::string input{};
};

/// Returns test commands for all switches of zvkconfig, for each security of the advanced
/// configuration, for the default run (an unknown switch) and for a run without arguments.
const std::vector<Command>& commands();

/// Names a test after the command, which is its first parameter.
inline constexpr auto commandName = [](const auto& test) {
  return std::string(std::get<0>(test.param).name);
};

/// Returns the commands that send a request to the printer.
std::vector<Command> exchangingCommands();

/// Returns the command with that name. Throws an exception if there is none.
const Command& command(const std::string& name);

/// Creates the files that the commands name.
class CommandFiles {
 public:
  CommandFiles();

  /// Returns the program's path and the arguments of a command. `device` replaces "{}".
  std::vector<std::string> fill(const Command& command, const std::string& device) const;

 private:
  support::TemporaryFolder m_Folder;
};

}  // namespace faults
