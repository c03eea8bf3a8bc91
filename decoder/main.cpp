// The program zvknpa: it reads the inputs and prints one report.

#include <array>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

#include "catalogue/option_parser.h"
#include "decoder/decode.h"
#include "decoder/json_report.h"
#include "decoder/options.h"
#include "decoder/tally.h"
#include "decoder/words.h"

namespace {

using decoder::Options;

/// The exit status if the command line is invalid or the output cannot be written.
constexpr int StatusFailure = 2;

/// Prints a message on standard error.
void printMessage(std::string_view text) {
  std::fprintf(stderr, "zvknpa: %.*s\n", static_cast<int>(text.size()), text.data());
}

void print(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
}

/// Returns the whole content of a file, or of standard input if `name` is "-". Throws
/// `std::system_error` if the file cannot be opened or read.
std::string readInput(const std::string& name) {
  struct CloseFile {
    void operator()(std::FILE* file) const {
      if (file != stdin) {
        std::fclose(file);
      }
    }
  };
  const std::unique_ptr<std::FILE, CloseFile> file(name == "-" ? stdin
                                                               : std::fopen(name.c_str(), "rbe"));
  if (!file) {
    throw std::system_error(errno, std::generic_category());
  }
  std::string content;
  std::array<char, 65536> block{};
  while (std::feof(file.get()) == 0 && std::ferror(file.get()) == 0) {
    content.append(block.data(), std::fread(block.data(), 1, block.size(), file.get()));
  }
  if (std::ferror(file.get()) != 0) {
    throw std::system_error(errno, std::generic_category());
  }
  return content;
}

/// Decodes one input into the report. Prints a message on standard error if the input cannot be
/// read or contains no packet.
void decodeInput(const std::string& name, const Options& options, decoder::Tally& report) {
  report.beginInput(name);
  try {
    const std::string content = readInput(name);
    decoder::decode(content, options, report);
    if (!report.hasFound()) {
      printMessage(name + ": " + decoder::nothingFoundText(content, options));
    }
  } catch (const std::system_error& error) {
    const std::string reason = error.code().message();
    printMessage(name + ": " + reason);
    report.unreadable(reason);
  } catch (const std::exception& error) {
    printMessage(name + ": " + error.what());
    report.unreadable(error.what());
  }
}

/// Decodes all inputs into the report. Returns the exit status.
int decodeInputs(const Options& options, decoder::Report& report) {
  decoder::Tally tally(report);
  for (const std::string& name : options.inputs) {
    decodeInput(name, options, tally);
  }
  if (tally.packets() == 0 && !options.json) {
    print("no packets\n");
  }
  return tally.status();
}

int decodeAll(const Options& options) {
  if (options.json) {
    decoder::JsonReport report(print, options.showSecrets);
    const int status = decodeInputs(options, report);
    report.finish();
    return status;
  }
  decoder::WordsReport report(print, options.showSecrets, options.inputs.size() > 1);
  return decodeInputs(options, report);
}

int run(const Options& options) {
  switch (options.action) {
    case Options::Action::Help:
      print(decoder::helpText());
      return 0;
    case Options::Action::Objects:
      print(decoder::objectsText());
      return 0;
    case Options::Action::Decode:
      return decodeAll(options);
  }
  return StatusFailure;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const int status = run(decoder::parseOptions({argv + 1, argv + argc}));
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
      printMessage("standard output: " + std::generic_category().message(errno));
      return StatusFailure;
    }
    return status;
  } catch (const catalogue::UsageError& error) {
    printMessage(std::string(error.what()) + "\nTry 'zvknpa --help'.");
  } catch (const std::exception& error) {
    printMessage(error.what());
  }
  return StatusFailure;
}
