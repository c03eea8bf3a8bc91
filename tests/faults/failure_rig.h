#pragma once

#include <gtest/gtest.h>
#include <string>

#include "faults/commands.h"
#include "testing/disturbance.h"
#include "testing/emulated_printer.h"
#include "testing/fake_libusb.h"
#include "testing/output.h"
#include "testing/virtual_system.h"

namespace faults {

/// How the printer is attached.
enum class Wiring { Usblp, LibUsb };

/// What came of one run of the program.
struct Outcome {
  int status = -1;           ///< as the caller of the process sees it
  support::Output output;    ///< what it wrote
  double seconds = 0;        ///< that it waited
  bool ended = true;         ///< by itself
  bool echoes = true;        ///< whether the terminal does, at the end
  int openDevices = 0;       ///< that were left open
  long openDescriptors = 0;  ///< that were left open
};

/// The whole program in this process, with the emulated printer in place of the device. Good for
/// one run.
class FailureRig {
 public:
  explicit FailureRig(Wiring wiring);

  /// Runs the command to its end, disturbed as planned.
  Outcome run(const Command& command, const CommandFiles& files,
              const support::Disturbance::Plan& plan = {.call = "", .fault = {"", 0}});

  /// How many calls of the plan's name there were, and whether one of them failed.
  int callCount = 0;
  bool wasReached = false;

  virtual_system::System system;
  virtual_system::Device& device = system.device("/dev/usb/lp0");
  fake_libusb::Library libusb;
  support::EmulatedPrinter printer;

 private:
  /// Hands bytes to the printer and gives its reply, when it has one.
  support::Bytes reply(const support::Bytes& request);

  Wiring m_Wiring;
};

/// How long the command may wait at the most.
double longestWait(const Command& command, Wiring wiring);

/// Asserts what holds for every run: it ends by itself, in time, with a status that the command may
/// have, and leaves nothing open and the terminal as it was.
void expectOrderlyEnd(const Command& command, Wiring wiring, const Outcome& outcome);

}  // namespace faults
