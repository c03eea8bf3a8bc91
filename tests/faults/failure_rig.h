#pragma once

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "faults/commands.h"
#include "testing/emulated_printer.h"
#include "testing/fake_libusb.h"
#include "testing/fault_injection.h"
#include "testing/output.h"
#include "testing/virtual_system.h"

namespace faults {

/// How the program reaches the printer.
enum class Wiring { Usblp, LibUsb };

/// The result of one run of the program.
struct Outcome {
  int status = -1;           ///< exit status, 0 to 255
  support::Output output;    ///< what the program wrote
  double seconds = 0;        ///< virtual time of the run
  bool ended = true;         ///< false if the run was stopped because it made too many calls
  bool echoes = true;        ///< true if the terminal echoes after the run
  int openDevices = 0;       ///< devices left open
  long openDescriptors = 0;  ///< descriptors left open
};

/// The `main` of a program.
using Program = int (*)(int argc, char** argv);

/// Runs a whole program in this process, with the emulated printer as the device. Use a new object
/// for each run.
class FailureRig {
 public:
  explicit FailureRig(Wiring wiring);

  /// Runs a command of zvkconfig to its end. `plan` selects the calls that fail. By default no call
  /// fails.
  Outcome run(const Command& command, const CommandFiles& files,
              const support::FaultInjection::Plan& plan = NoFailure);

  /// Runs `program` to its end. The first of `arguments` is the path of the program. `input` is
  /// typed on the terminal.
  Outcome run(Program program, const std::vector<std::string>& arguments, const std::string& input,
              const support::FaultInjection::Plan& plan = NoFailure);

  static constexpr support::FaultInjection::Plan NoFailure = {.call = "", .fault = {"", 0}};

  /// After a run: how many calls of the plan's function were counted, and whether one of them had
  /// the plan's fault.
  int callCount = 0;
  bool wasReached = false;

  virtual_system::System system;
  virtual_system::Device& device = system.device("/dev/usb/lp0");
  fake_libusb::Library libusb;
  support::EmulatedPrinter printer;

 private:
  /// Sends bytes to the printer and returns its reply, which may be empty.
  support::Bytes replyTo(const support::Bytes& request);

  Wiring m_Wiring;
};

/// Returns the longest time in seconds that the command may take.
double longestWait(const Command& command, Wiring wiring);

/// Expects that the run ended "in order": by itself, in time, with one of the command's exit
/// statuses, with no device or descriptor left open and with the terminal's echo on.
void expectOrderlyEnd(const Command& command, Wiring wiring, const Outcome& outcome);

}  // namespace faults
