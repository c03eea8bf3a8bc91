// The first line of the input has a letter for each fault of the printer: "s" sends nothing, "r"
// refuses all packets, "w" refuses wrapped packets, "g" sends garbage, "c" cuts its replies. Each
// further line up to an empty one is an argument. The rest is the content of a memory file, here
// called the input file. The path of the input file replaces the argument after "-file". The
// argument "@ca" stands for --802-CA-cer-file= with the path of the input file, "@signed" for
// --802-signed-cer-file= with the path of the input file, and "@csr" for --cer-path= with the path
// of another memory file. The target skips inputs that contain "cer-file=" or "cer-path=", because
// the paths after them could name files of this machine.
//
// Each command must end within a time limit and with one of its exit statuses. A second run must
// have the same effects.

#include "testing/command_line.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/command_table.h"
#include "cli/zvk_setup.h"
#include "emulator/adapter/adapter.h"
#include "emulator/adapter/message_log.h"
#include "fuzz_target.h"
#include "memory_file.h"
#include "outputs.h"
#include "scripted_printer.h"
#include "testing/fake_libusb.h"

namespace {

using fuzz::MemoryFile;
using Arguments = std::vector<std::string>;

/// Returns true if the command called `name` may end with this result. The system keeps only the
/// low byte of a result.
bool isStatusOf(const std::string& name, int result) {
  const auto* const found = std::ranges::find_if(
      CommandTable, [&](const CommandRow& row) { return row.mode.name == name; });
  const CommandRow& row = found == CommandTable.end() ? DefaultRunRow : *found;
  const int status = result & 0xFF;
  return std::ranges::any_of(row.statuses, [&](const ExitStatus& range) {
    return range.lowest <= status && status <= range.highest;
  });
}

/// The status of a run that an exception ended. An exception is allowed if an argument is missing
/// or empty.
constexpr int EndedByException = 1000;

/// The parts of the input.
struct Input {
  std::string traits;
  Arguments arguments = {"zvkconfig"};
  std::string file;
};

Input takeApart(const std::string& text) {
  Input input;
  std::istringstream stream(text);
  std::getline(stream, input.traits);
  for (std::string line; std::getline(stream, line) && !line.empty();) {
    input.arguments.push_back(line.substr(0, line.find('\0')));
  }
  std::getline(stream, input.file, '\xFF');
  return input;
}

/// Returns the properties of a printer with the faults whose letters are in `traits`.
emulator::Personality personality(const std::string& traits) {
  const auto has = [&traits](char trait) {
    return traits.find(trait) != std::string::npos;
  };
  emulator::Personality result;
  result.ssid = "Home";
  result.silent = has('s');
  result.refuseAll = has('r');
  result.refuseWrapped = has('w');
  result.garbage = has('g');
  if (has('c')) {
    result.cutAt = 11;
  }
  return result;
}

/// Returns the arguments with the paths of memory files inserted.
Arguments withPaths(Arguments arguments, const std::string& path, const std::string& otherPath) {
  for (std::string& argument : arguments) {
    if (argument == "@ca") {
      argument = "--802-CA-cer-file=" + path;
    } else if (argument == "@signed") {
      argument = "--802-signed-cer-file=" + path;
    } else if (argument == "@csr") {
      argument = "--cer-path=" + otherPath;
    }
  }
  if (arguments.size() > 3 && arguments[2] == "-file") {
    arguments[3] = path;
  }
  return arguments;
}

/// Runs the program with these arguments and returns its exit status.
int statusOf(const Arguments& arguments) {
  support::CommandLine line(arguments);
  try {
    return zvkSetup(line.count(), line.vector()).getReturnCode();
  } catch (const std::out_of_range&) {
    fuzz::require(arguments.size() <= 4);
  } catch (const char* reason) {
    fuzz::require(std::string_view(reason) == "Error: No USB device is specified!");
    fuzz::require(std::ranges::find(arguments, "") != arguments.end());
  }
  return EndedByException;
}

/// The observable effects of a run.
struct Outcome {
  int status = 0;
  fuzz::Output output;
  std::size_t requests = 0;
  virtual_system::Microseconds time = 0;

  bool operator==(const Outcome&) const = default;
};

Outcome run(const Input& input) {
  fuzz::ScriptedPrinter printer;
  emulator::MessageLog log([](std::string_view) {}, false);
  emulator::Adapter adapter(personality(input.traits), log,
                            [] { return emulator::Adapter::Clock::time_point(); });
  printer.device.onWrite = [&](const fuzz::Bytes& request) {
    for (emulator::Adapter::ReplyPiece& piece : adapter.receive(request)) {
      printer.device.reply(std::move(piece.bytes));
    }
  };
  fake_libusb::Library libusb;
  libusb.addPrinter("001", "002");
  const MemoryFile file(input.file);
  const MemoryFile other("");
  const Arguments arguments = withPaths(input.arguments, file.path(), other.path());
  Outcome outcome;
  outcome.output = fuzz::outputOf([&] { outcome.status = statusOf(arguments); });
  // The longest run is the default run without a reply: two configurations, then queries for
  // trouble code and address.
  constexpr std::size_t mostRequests = 13;
  constexpr virtual_system::Microseconds longest = 240;  // seconds
  printer.requireEnded(mostRequests, longest);
  fuzz::require(libusb.openHandles == 0);
  fuzz::require(file.content() == input.file);
  outcome.requests = printer.device.writes.size();
  outcome.time = printer.system.now();
  return outcome;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = fuzz::textOf(data, size);
  if (text.find("cer-path=") != std::string::npos || text.find("cer-file=") != std::string::npos) {
    return 0;
  }
  const Input input = takeApart(text);
  const Outcome outcome = run(input);
  if (outcome.status != EndedByException) {
    fuzz::require(isStatusOf(input.arguments.at(1), outcome.status));
  }
  fuzz::require(run(input) == outcome);
  return 0;
}
