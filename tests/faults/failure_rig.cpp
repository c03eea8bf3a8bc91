#include "faults/failure_rig.h"

#include <algorithm>
#include <chrono>

#include "faults/virtual_terminal.h"
#include "testing/command_line.h"
#include "testing/open_descriptors.h"

/// The program's `main`. The build renames it for the tests.
int programMain(int argc, char** argv);

namespace faults {

namespace {

/// The program looks for a reply every millisecond, and waits a millisecond after a failed read.
/// With this delay it does so ten times a second, and a run takes a small part of the time.
constexpr virtual_system::Microseconds Delay = 99'000;

/// Returns a printer that accepts everything, even a certificate for another key.
emulator::Personality acceptingPrinter() {
  emulator::Personality personality;
  personality.ssid = "home";
  personality.authStatus = {3};
  personality.objectReplies = {{.method = "uploadSignedCertFile", .file = {}, .status = 1}};
  return personality;
}

}  // namespace

FailureRig::FailureRig(Wiring wiring) : printer(acceptingPrinter()), m_Wiring(wiring) {
  system.delay = Delay;
  device.onWrite = [this](const support::Bytes& request) {
    if (support::Bytes reply = replyTo(request); !reply.empty()) {
      device.reply(std::move(reply));
    }
  };
  libusb.addPrinter("001", "005");
  libusb.bulkWrite = [this](const support::Bytes& request) {
    const support::Bytes reply = replyTo(request);
    libusb.incoming.insert(libusb.incoming.end(), reply.begin(), reply.end());
    return static_cast<int>(request.size());
  };
}

support::Bytes FailureRig::replyTo(const support::Bytes& request) {
  printer.now = emulator::Adapter::Clock::time_point(std::chrono::microseconds(system.now()));
  return printer.ask(request);
}

Outcome FailureRig::run(const Command& command, const CommandFiles& files,
                        const support::FaultInjection::Plan& plan) {
  const bool atUsblp = m_Wiring == Wiring::Usblp;
  return run(programMain, files.fill(command, atUsblp ? "/dev/usb/lp0" : "1:5"), command.input,
             plan);
}

Outcome FailureRig::run(Program program, const std::vector<std::string>& arguments,
                        const std::string& input, const support::FaultInjection::Plan& plan) {
  Outcome outcome;
  support::CommandLine line(arguments);
  const VirtualTerminal terminal(input);
  const long before = support::openDescriptors();
  outcome.output = support::outputOf([&] {
    support::FaultInjection injection(plan);
    try {
      outcome.status = program(line.count(), line.vector()) & 0xFF;
    } catch (const support::EndlessRun&) {
      outcome.ended = false;
    }
    callCount = injection.count();
    wasReached = injection.wasReached();
  });
  outcome.openDescriptors = support::openDescriptors() - before;
  outcome.openDevices = libusb.openHandles + (device.isOpen ? 1 : 0);
  outcome.seconds = static_cast<double>(system.now()) / virtual_system::Second;
  outcome.echoes = terminal.echoes();
  return outcome;
}

double longestWait(const Command& command, Wiring wiring) {
  // A write takes up to 5 seconds over usblp, and 25 times 5 seconds over libusb. A read ends after
  // 5 seconds of silence. Before the silence, select may report for 5 seconds that bytes can be
  // read although none can. Over libusb a read takes up to 15 seconds more.
  const double write = wiring == Wiring::Usblp ? 5 : 125;
  const double read = wiring == Wiring::Usblp ? 11 : 26;
  const LongestWait& wait = command.longestWait;
  return wait.pauses + wait.writes * write + wait.reads * read;
}

void expectOrderlyEnd(const Command& command, Wiring wiring, const Outcome& outcome) {
  EXPECT_TRUE(outcome.ended);
  EXPECT_LE(outcome.seconds, longestWait(command, wiring));
  EXPECT_GE(std::ranges::count(command.statuses, outcome.status), 1) << outcome.status;
  EXPECT_EQ(outcome.openDevices, 0);
  EXPECT_EQ(outcome.openDescriptors, 0);
  EXPECT_TRUE(outcome.echoes);
}

}  // namespace faults
