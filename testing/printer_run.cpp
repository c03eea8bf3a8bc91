#include "testing/printer_run.h"

#include <cstdlib>
#include <iterator>
#include <sstream>

#include "testing/files.h"

namespace support {

namespace {

using Words = std::vector<std::string>;

Words joined(Words first, const Words& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

Words splitLines(const std::string& text) {
  Words result;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    result.push_back(line);
  }
  return result;
}

Words splitWords(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), {}};
}

/// The exit status if zvkprinter itself fails.
constexpr int OwnFailure = 125;

/// Removes the lines that zvkprinter prints if it cannot create a private device.
std::string withoutPrinterLines(const std::string& text) {
  std::string result;
  for (const std::string& line : splitLines(text)) {
    if (!line.starts_with("zvkprinter: ")) {
      result.append(line).append("\n");
    }
  }
  return result;
}

/// Returns the command line that runs `program` with the printer.
Words commandOf(const Words& options, const char* program, const Words& arguments) {
  Words command = joined({ZVKPRINTER, "run"}, options);
  command.emplace_back("--");
  return joined(command, supervised(joined({program}, arguments)));
}

enum class Clock { Real, Faster };

PrinterRun run(Clock clock, const Words& options, const char* program, const Words& arguments,
               std::string_view input) {
  const TemporaryFolder folder;
  const std::string log = folder.path("log");
  const Words logging = joined({"--show-secrets", "--log=" + log}, options);
  const Words command = commandOf(logging, program, arguments);
  const ProcessResult result =
      runProcess(clock == Clock::Real ? command : withFasterClock(command), input);
  // If zvkprinter fails, its lines state the reason.
  PrinterRun outcome{result.status,
                     result.out,
                     result.status == OwnFailure ? result.err : withoutPrinterLines(result.err),
                     {},
                     {}};
  for (const std::string& line : splitLines(fileContent(log))) {
    const auto take = [&line](std::string_view mark, Words& destination) {
      if (line.starts_with(mark)) {
        destination.push_back(line.substr(mark.size()));
      }
    };
    take("zvkprinter: <- ", outcome.received);
    take("zvkprinter:    method call: ", outcome.calls);
  }
  return outcome;
}

}  // namespace

Words printerCommand(const Words& options, const Words& arguments, const char* program) {
  return commandOf(options, program == nullptr ? ZVKCONFIG : program, arguments);
}

Words withFasterClock(const Words& command, int factor) {
  return joined({FASTER_CLOCK, std::to_string(factor)}, command);
}

Words supervised(const Words& command) {
  const char* const supervisor = std::getenv("ZVK_RUN_UNDER");
  return joined(splitWords(supervisor == nullptr ? "" : supervisor), command);
}

PrinterRun runWithPrinter(Words options, Words arguments, std::string_view input) {
  return run(Clock::Faster, options, ZVKCONFIG, arguments, input);
}

PrinterRun runWifiWithPrinter(Words options, Words arguments, std::string_view input) {
  return run(Clock::Faster, options, ZVKWIFI, arguments, input);
}

PrinterRun runWithPrinterInRealTime(Words options, Words arguments) {
  return run(Clock::Real, options, ZVKCONFIG, arguments, {});
}

std::string lines(const Words& texts) {
  std::string result;
  for (const std::string& text : texts) {
    result.append(text).append("\n");
  }
  return result;
}

}  // namespace support
