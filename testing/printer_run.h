#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "testing/process.h"

/// The real program against the emulated printer.
namespace support {

/// What came of one run.
struct PrinterRun {
  int status = 0;
  std::string out;  ///< the program's standard output, and behind it what the printer then holds
  /// The program's standard error. If the printer itself fails (status 125), its lines as well.
  std::string err;
  std::vector<std::string> received;  ///< each message that reached the printer, in hex
  std::vector<std::string> calls;     ///< each method call that it understood, in words
};

/// Runs zvkconfig with `arguments` against a printer with `options`. Time goes 10 times as fast for
/// both, so that the protocol's pauses take their course without being waited for.
///
/// "{}" in an argument stands for the printer's path: "/dev/usb/lp0" where the system permits a
/// private one.
///
/// The environment's ZVK_RUN_UNDER is a command that the program is run by, such as a debugger.
PrinterRun runWithPrinter(std::vector<std::string> options, std::vector<std::string> arguments,
                          std::string_view input = {});

/// The same in real time.
PrinterRun runWithPrinterInRealTime(std::vector<std::string> options,
                                    std::vector<std::string> arguments);

/// The command line of such a run, without a log.
std::vector<std::string> printerCommand(const std::vector<std::string>& options,
                                        const std::vector<std::string>& arguments);

/// A program's command line with that command in front of it.
std::vector<std::string> supervised(const std::vector<std::string>& command);

/// Each line with its end.
std::string lines(const std::vector<std::string>& texts);

}  // namespace support
