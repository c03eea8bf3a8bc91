// The program zvkprinter: its commands `run`, `serve`, `usb` and `show`, and its exit statuses.

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <system_error>
#include <utility>
#include <vector>

#include "catalogue/option_parser.h"
#include "emulator/adapter/adapter.h"
#include "emulator/adapter/message_log.h"
#include "emulator/radio/radio.h"
#include "emulator/radio/radio_program.h"
#include "emulator/run/command_line.h"
#include "emulator/run/device_link.h"
#include "emulator/run/private_devices.h"
#include "emulator/run/reply_files.h"
#include "emulator/run/usb_command.h"
#include "emulator/state/state_folder.h"
#include "emulator/transport/command_process.h"
#include "emulator/transport/pty_transport.h"
#include "emulator/transport/signal_queue.h"

namespace {

using emulator::CommandProcess;
using emulator::FreeDeviceLink;
using emulator::Options;

// Exit statuses, the same as those of env(1) and timeout(1).
constexpr int StatusOwnFailure = 125;
constexpr int StatusNotExecutable = 126;
constexpr int StatusNotFound = 127;

using StartError = CommandProcess::StartError;
using FileStream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

/// Prints a message, which may have several lines, on standard error.
void printMessage(std::string_view text) {
  std::fprintf(stderr, "zvkprinter: %.*s\n", static_cast<int>(text.size()), text.data());
}

/// Opens the log file, or returns standard error if the options name no log file. Throws
/// `std::system_error` if the file cannot be opened.
FileStream openLog(const Options& options) {
  if (!options.logFile) {
    return {stderr, [](std::FILE*) {
              return 0;
            }};
  }
  FileStream stream(std::fopen(options.logFile->c_str(), options.appendsLog ? "ae" : "we"),
                    std::fclose);
  if (!stream) {
    throw std::system_error(errno, std::generic_category(), *options.logFile);
  }
  return stream;
}

/// A running command.
struct Started {
  std::unique_ptr<FreeDeviceLink> link;  ///< the link to the printer; null in a private namespace
  CommandProcess process;
};

/// Starts the command in a private namespace. Returns nothing if the system does not permit that.
std::optional<Started> startInNamespace(const Options& options, const std::string& device,
                                        const emulator::SignalQueue& signals) {
  try {
    return Started{
        nullptr,
        CommandProcess(emulator::withDevice(options.command, emulator::PrivateDevicePath), [&] {
          emulator::enterPrivateDevices(device);
          signals.restore();
        })};
  } catch (const StartError& error) {
    if (error.step != StartError::Step::Preparation) {
      throw;
    }
    printMessage("cannot create a private /dev/usb/lp0: " + error.text);
    return std::nullopt;
  }
}

/// Starts the command and creates a link to the printer for it.
Started startWithLink(const Options& options, const std::string& device,
                      const emulator::SignalQueue& signals) {
  std::unique_ptr<FreeDeviceLink> link;
  try {
    link = std::make_unique<FreeDeviceLink>(device);
  } catch (const std::system_error& error) {
    throw std::runtime_error(std::string("cannot create a link to the printer: ") + error.what() +
                             "\nRun zvkprinter as root, or permit user namespaces "
                             "(sysctl kernel.unprivileged_userns_clone=1).");
  }
  printMessage("the printer is at " + link->path() +
               " while the command runs; {} in the command stands for this path");
  const CommandProcess process(emulator::withDevice(options.command, link->path()),
                               [&] { signals.restore(); });
  return {std::move(link), process};
}

/// Serves the printer until the command ends. Returns the exit status of the command.
int run(const Options& options, emulator::PtyTransport& transport) {
  const emulator::SignalQueue signals;
  std::optional<Started> started;
  if (options.namespaces) {
    started = startInNamespace(options, transport.devicePath(), signals);
  }
  if (!started) {
    started = startWithLink(options, transport.devicePath(), signals);
  }
  CommandProcess& process = started->process;
  transport.carry(signals, [&](int signal) {
    if (signal == SIGCHLD) {
      return !process.hasEnded();
    }
    // The terminal sends SIGINT and SIGQUIT to the command too. The command decides whether to end.
    if (signal != SIGINT && signal != SIGQUIT) {
      process.signal(signal);
    }
    return true;
  });
  return process.exitStatus();
}

/// Serves the printer until a signal ends it.
int serve(const Options& options, emulator::PtyTransport& transport) {
  const emulator::SignalQueue signals;
  const emulator::DeviceLink link(options.link, transport.devicePath());
  std::printf("The printer is at %s\n", link.path().c_str());
  std::fflush(stdout);
  transport.carry(signals, [](int signal) { return signal == SIGCHLD; });
  return 0;
}

/// Flushes standard output. Throws `std::system_error` if any of the output was lost.
void flushOutput() {
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    throw std::system_error(errno, std::generic_category(), "standard output");
  }
}

/// Prints the settings and certificates of the printer.
void printState(const emulator::Adapter& adapter, const Options& options) {
  for (const std::string& line : adapter.describe(options.showSecrets)) {
    std::printf("%s\n", line.c_str());
  }
  flushOutput();
}

/// Loads the state that the folder holds into the adapter.
void restore(emulator::Adapter& adapter, emulator::StateFolder& folder) {
  emulator::PrinterState state = folder.load();
  adapter.restore(state.settings, std::move(state.certificates));
}

/// Prints the state of the printer that the state folder holds.
int show(const Options& options) {
  emulator::MessageLog log([](std::string_view) {}, false);
  emulator::Adapter adapter(options.personality, log);
  emulator::StateFolder folder(*options.stateFolder, emulator::StateFolder::Use::Look);
  restore(adapter, folder);
  printState(adapter, options);
  return 0;
}

/// Serves the printer over the transport that the action selects. Returns the exit status of
/// zvkprinter.
int serveOverTransport(const Options& options, emulator::Adapter& adapter,
                       emulator::MessageLog& log, emulator::Radio* radio) {
  if (options.action == Options::Action::Usb) {
    return emulator::runUsbPrinter(options, adapter, log, radio);
  }
  emulator::PtyTransport transport(adapter);
  transport.accompany(radio);
  return options.action == Options::Action::Run ? run(options, transport)
                                                : serve(options, transport);
}

/// Creates the printer with its log and its state, and serves it. Returns the exit status.
int runPrinter(const Options& options) {
  const FileStream logStream = openLog(options);
  emulator::MessageLog log(
      [&](std::string_view line) {
        std::fprintf(logStream.get(), "zvkprinter: %.*s\n", static_cast<int>(line.size()),
                     line.data());
        std::fflush(logStream.get());
      },
      options.showSecrets);
  emulator::Adapter adapter(emulator::withReplyFiles(options.personality), log);
  std::optional<emulator::StateFolder> folder;
  if (options.stateFolder) {
    folder.emplace(*options.stateFolder, emulator::StateFolder::Use::Keep);
    restore(adapter, *folder);
  }
  std::unique_ptr<emulator::Radio> radio;
  if (options.radio) {
    emulator::requireRadio(*options.radio);
    radio = std::make_unique<emulator::Radio>(*options.radio, adapter, log);
  }
  adapter.onChange([&] {
    if (folder) {
      folder->save(adapter.settings().stored(), adapter.certificates());
    }
    if (radio) {
      radio->settingsChanged();
    }
  });
  const int status = serveOverTransport(options, adapter, log, radio.get());
  if (options.showSettings) {
    printState(adapter, options);
  }
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const Options options = emulator::parseOptions({argv + 1, argv + argc});
    if (options.action == Options::Action::Help) {
      std::fputs(emulator::helpText().c_str(), stdout);
      flushOutput();
      return 0;
    }
    return options.action == Options::Action::Show ? show(options) : runPrinter(options);
  } catch (const catalogue::UsageError& error) {
    printMessage(std::string(error.what()) + "\nTry 'zvkprinter help'.");
  } catch (const StartError& error) {
    printMessage(error.text + ": " + std::generic_category().message(error.error));
    return error.error == ENOENT ? StatusNotFound : StatusNotExecutable;
  } catch (const std::exception& error) {
    printMessage(error.what());
  }
  return StatusOwnFailure;
}
