#include "emulator/run/usb_command.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <optional>
#include <stdexcept>
#include <string>
#include <sys/time.h>

#include "emulator/run/command_process.h"
#include "emulator/transport/signal_queue.h"
#include "emulator/usb/usb_device.h"
#include "emulator/usb/usb_transport.h"

namespace emulator {

namespace {

constexpr suseconds_t TickMicroseconds = 20'000;
constexpr int MostTicks = 1000;

/// Sends SIGALRM again and again; 0 ends that.
void tickEvery(suseconds_t microseconds) {
  itimerval timer{};
  timer.it_interval.tv_usec = microseconds;
  timer.it_value.tv_usec = microseconds;
  ::setitimer(ITIMER_REAL, &timer, nullptr);
}

/// A USB printer and the command that uses it, if there is one.
class UsbRun {
 public:
  UsbRun(const Options& options, UsbTransport& transport, const SignalQueue& signals)
      : m_Options(options), m_Door(transport), m_Signals(signals) {}

  /// Starts the command, or waits for the printer's node first where the command names it.
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

  /// Handles a signal; returns whether to go on.
  bool handle(int signal) {
    switch (signal) {
      case SIGUSR1:
        if (m_Door.isPluggedIn()) {
          m_Door.unplug();
        } else {
          m_Door.plugIn();
        }
        return true;
      case SIGALRM:
        startAtNode();
        return true;
      case SIGCHLD:
        return !m_Process || !m_Process->hasEnded();
      case SIGINT:
      case SIGQUIT:
        // The terminal sends these to the command as well, which decides what they mean.
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

  void startAtNode() {
    if (m_Process) {
      return;
    }
    if (const std::optional<std::string> node = m_Door.printerNode()) {
      tickEvery(0);
      start(withDevice(m_Options.command, *node));
    } else if (++m_Ticks == MostTicks) {
      throw std::runtime_error(
          "the kernel has made no /dev/usb/lpN for the printer"
          "\nLoad its printer driver (modprobe usblp), or name the device in the command "
          "yourself.");
    }
  }

  const Options& m_Options;
  UsbTransport& m_Door;
  const SignalQueue& m_Signals;
  std::optional<CommandProcess> m_Process;
  int m_Ticks = 0;
};

void tellPlace(const UsbTransport& transport) {
  if (transport.port() != 0) {
    std::printf("The printer is at port %u of 127.0.0.1, bus id %s\n", unsigned{transport.port()},
                UsbipBusId.data());
  } else {
    std::puts("The printer is plugged in");
  }
  std::fflush(stdout);
}

}  // namespace

int beUsbPrinter(const Options& options, Adapter& adapter, MessageLog& log) {
  const SignalQueue signals({SIGUSR1, SIGALRM});
  UsbDevice device(adapter, options.usb, log);
  UsbTransport transport =
      options.attach ? UsbTransport(device, log) : UsbTransport(device, log, *options.port);
  if (options.command.empty() || options.port) {
    tellPlace(transport);
  }
  UsbRun run(options, transport, signals);
  run.begin();
  transport.carry(signals, [&](int signal) { return run.handle(signal); });
  return run.exitStatus();
}

}  // namespace emulator
