// Runs `zvkprinter usb`: handles its signals, and starts COMMAND.

#include "emulator/run/usb_command.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <optional>
#include <stdexcept>
#include <string>
#include <sys/time.h>

#include "emulator/transport/command_process.h"
#include "emulator/transport/signal_queue.h"
#include "emulator/usb/usb_device.h"
#include "emulator/usb/usb_transport.h"

namespace emulator {

namespace {

// The program checks at this interval, and at most this many times, whether the kernel has created
// the device node.
constexpr suseconds_t TickMicroseconds = 20'000;
constexpr int MostTicks = 1000;

/// Makes the kernel send SIGALRM at intervals of `microseconds`. 0 stops the signals.
void tickEvery(suseconds_t microseconds) {
  itimerval timer{};
  timer.it_interval.tv_usec = microseconds;
  timer.it_value.tv_usec = microseconds;
  ::setitimer(ITIMER_REAL, &timer, nullptr);
}

/// A USB printer and the command that uses it. There may be no command.
class UsbRun {
 public:
  UsbRun(const Options& options, UsbTransport& transport, const SignalQueue& signals)
      : m_Options(options), m_Transport(transport), m_Signals(signals) {}

  /// Starts the command. If the command contains {}, waits for the printer's node first.
  void begin() {
    const bool namesNode = std::ranges::any_of(m_Options.command, [](const std::string& argument) {
      return argument.find("{}") != std::string::npos;
    });
    if (m_Options.attach && namesNode) {
      tickEvery(TickMicroseconds);
    } else if (!m_Options.command.empty()) {
      start(m_Options.command);
    }
  }

  /// Handles a signal. Returns false if the program must end.
  bool handle(int signal) {
    switch (signal) {
      case SIGUSR1:
        if (m_Transport.isPluggedIn()) {
          m_Transport.unplug();
        } else {
          m_Transport.plugIn();
        }
        return true;
      case SIGALRM:
        startAtNode();
        return true;
      case SIGCHLD:
        return !m_Process || !m_Process->hasEnded();
      case SIGINT:
      case SIGQUIT:
        // The terminal sends SIGINT and SIGQUIT to the command too. The command decides whether to
        // end.
        return m_Process.has_value();
      default:
        if (m_Process) {
          m_Process->signal(signal);
        }
        return m_Process.has_value();
    }
  }

  int exitStatus() const { return m_Process ? m_Process->exitStatus() : 0; }

 private:
  void start(const std::vector<std::string>& command) {
    m_Process.emplace(command, [this] { m_Signals.restore(); });
  }

  /// Starts the command once the printer's node exists. Throws `std::runtime_error` after 20 s.
  void startAtNode() {
    if (m_Process) {
      return;
    }
    if (const std::optional<std::string> node = m_Transport.printerNode()) {
      tickEvery(0);
      start(withDevice(m_Options.command, *node));
    } else if (++m_Ticks == MostTicks) {
      throw std::runtime_error(
          "the kernel has not created /dev/usb/lpN for the printer within 20 seconds"
          "\nLoad the kernel's printer driver (modprobe usblp), or write the path of the device "
          "into the command instead of {}.");
    }
  }

  const Options& m_Options;
  UsbTransport& m_Transport;
  const SignalQueue& m_Signals;
  std::optional<CommandProcess> m_Process;
  int m_Ticks = 0;
};

/// Prints where the printer can be reached.
void printPlace(const UsbTransport& transport) {
  if (transport.port() != 0) {
    std::printf("The printer is at port %u of 127.0.0.1, bus id %s\n", unsigned{transport.port()},
                UsbipBusId.data());
  } else {
    std::puts("The printer is plugged in");
  }
  std::fflush(stdout);
}

}  // namespace

int runUsbPrinter(const Options& options, Adapter& adapter, MessageLog& log, Activity* companion) {
  const SignalQueue signals({SIGUSR1, SIGALRM});
  UsbDevice device(adapter, options.usb, log);
  UsbTransport transport =
      options.attach ? UsbTransport(device, log) : UsbTransport(device, log, *options.port);
  transport.accompany(companion);
  if (options.command.empty() || options.port) {
    printPlace(transport);
  }
  UsbRun run(options, transport, signals);
  run.begin();
  transport.carry(signals, [&](int signal) { return run.handle(signal); });
  return run.exitStatus();
}

}  // namespace emulator
