#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "testing/process.h"

/// Functions that run the real programs with the emulated printer.
namespace support {

/// The result of one run.
struct PrinterRun {
  int status = 0;   ///< exit status of the program; 125 if zvkprinter itself fails
  std::string out;  ///< the program's standard output; with --show, also the printer's settings
  /// The program's standard error. If the status is 125, zvkprinter's own lines are included.
  std::string err;
  std::vector<std::string> received;  ///< each packet that reached the printer, in hex
  std::vector<std::string> calls;     ///< each method call, as the printer's log describes it
};

/// Runs zvkconfig with `arguments` and a printer with `options`. For both programs time passes 10
/// times as fast, so the pauses of the protocol take a tenth of their usual time.
///
/// "{}" in an argument stands for the printer's path. The path is "/dev/usb/lp0" if the system
/// permits a private device, which only the command of zvkprinter can see. Otherwise the path has
/// another number.
///
/// If the environment variable ZVK_RUN_UNDER is set, it is a command that runs the program, such as
/// a debugger.
PrinterRun runWithPrinter(std::vector<std::string> options, std::vector<std::string> arguments,
                          std::string_view input = {});

/// Does what `runWithPrinter` does, but runs zvkwifi.
PrinterRun runWifiWithPrinter(std::vector<std::string> options, std::vector<std::string> arguments,
                              std::string_view input = {});

/// Does what `runWithPrinter` does, but in real time.
PrinterRun runWithPrinterInRealTime(std::vector<std::string> options,
                                    std::vector<std::string> arguments);

/// Returns the command line that runs `program` with a printer, without the option --log. If
/// `program` is null, the command line runs zvkconfig.
std::vector<std::string> printerCommand(const std::vector<std::string>& options,
                                        const std::vector<std::string>& arguments,
                                        const char* program = nullptr);

/// Returns a command line that runs `command` with a clock that is `factor` times as fast.
std::vector<std::string> withFasterClock(const std::vector<std::string>& command, int factor = 10);

/// Returns a program's command line, preceded by the command in ZVK_RUN_UNDER.
std::vector<std::string> supervised(const std::vector<std::string>& command);

/// Returns the texts, each followed by a line end.
std::string lines(const std::vector<std::string>& texts);

}  // namespace support
