#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/command_mode.h"
#include "settings/config_details.h"
#include "wireless/wnpa_generator.h"

/// One run of the program. The constructor does all the work: it fills the settings from the
/// command line, runs the one command that the first argument names, and stores its result.
///
///     const zvkSetup run(argc, argv);  // argv[1] is the command switch
///     return run.getReturnCode();
class zvkSetup {
 public:
  /// Copies the arguments and calls `setDevice`. Throws `std::out_of_range` if the command needs an
  /// argument that is missing, and a message of type `const char*` if a certificate command gets an
  /// empty device. `main` does not catch these exceptions.
  zvkSetup(int argumentCount, char** arguments);
  ~zvkSetup() = default;
  zvkSetup(const zvkSetup&) = delete;
  zvkSetup& operator=(const zvkSetup&) = delete;

  /// Fills the settings for the command and runs the command. Returns the command's status.
  int setDevice();

  /// Returns the result of the command. It is the process's exit status, so -1 becomes 255.
  int getReturnCode() const { return m_ReturnCode; }

  /// Writes the help text to standard output. Returns 0.
  static int showHelp();

 private:
  /// Fills the settings from the source that the command's mode names.
  void readSettings();
  /// Reads the options from the command line, or from a file after "-file".
  void readOptions();
  /// Reads the device path and the NPA data file after "-file". Reads nothing without "-file".
  void readNpaFile();
  /// Returns true if "-file" follows the command switch. Throws `std::out_of_range` if no argument
  /// follows the switch.
  bool hasFileSwitch() const;

  /// Runs the generator's operation. If the operation returns -1 and the command allows a retry,
  /// switches wrap mode off and runs the operation once more. Returns the result of the last run.
  int runGenerator();
  /// Converts the hex text of the NPA data file to bytes and sends them unchanged. Returns 0.
  int sendNpaData();

  int m_ArgumentCount;
  std::vector<std::string> m_Arguments;  ///< includes the program's path at index 0
  std::string m_Command;                 ///< the command switch
  const CommandMode& m_Mode;
  std::unique_ptr<configDetails> m_Configuration;
  // The generator has a pointer to the settings. So the generator is declared after the settings
  // and destroyed before them. It is null for the commands of `CertProc`.
  std::unique_ptr<wnpaGenerator> m_Generator;
  // Declared last, because its initialiser runs the command, which uses all other members.
  int m_ReturnCode;
};
