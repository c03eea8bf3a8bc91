#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/command_mode.h"
#include "settings/config_details.h"
#include "wireless/wnpa_generator.h"

/// One run of the program: fills the settings from the command line, runs the one command that the
/// first argument names, and keeps its result.
class zvkSetup {
 public:
  /// Copies the arguments and does the whole run. Throws `std::out_of_range`, which nobody catches,
  /// when the command needs an argument that is not there.
  zvkSetup(int argumentCount, char** arguments);
  ~zvkSetup() = default;
  zvkSetup(const zvkSetup&) = delete;
  zvkSetup& operator=(const zvkSetup&) = delete;

  /// Fills the settings for the command and runs it; returns the command's status.
  int setDevice();

  /// Returns what `setDevice` returned in the constructor: the process's exit status.
  int getReturnCode() const { return m_ReturnCode; }

  /// Writes the help text to standard output; returns 0.
  static int showHelp();

 private:
  void readSettings();
  void readOptions();
  void readNpaFile();
  bool wantsFile() const;

  /// Runs the generator's operation, and once more with bare packets if it was refused and the
  /// command is one to be repeated.
  int runGenerator();
  /// Sends the bytes of the NPA data as they stand.
  int sendNpaData();

  int m_ArgumentCount;
  std::vector<std::string> m_Arguments;
  std::string m_Command;
  const CommandMode& m_Mode;
  std::unique_ptr<configDetails> m_Configuration;
  // After the settings, which the generator reads: destroyed before them.
  std::unique_ptr<wnpaGenerator> m_Generator;
  int m_ReturnCode;
};
