// Measures the CPU time and the peak memory of "zvkwifi set", from the check of the settings to the
// confirmation, in real time.
//
// Usage, with the emulated printer in another network:
// zvkprinter run --ssid=old -- wifi_set ZVKWIFI {}

#include <cstdio>
#include <memory>
#include <string>

#include "process_run.h"
#include "results.h"

namespace {

// The bars: the largest allowed costs.
constexpr double CpuBarPercent = 0.5;
constexpr double PeakBarMebibytes = 12;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

/// Returns an open file with a passphrase. The measured program inherits its descriptor.
File passphraseFile() {
  File file(std::tmpfile());
  if (file) {
    std::fputs("correct horse\n", file.get());
    std::rewind(file.get());
  }
  return file;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("usage: wifi_set ZVKWIFI DEVICE\n", stderr);
    return 2;
  }
  const File passphrase = passphraseFile();
  if (!passphrase) {
    std::perror("wifi_set");
    return 1;
  }
  const bench::ProcessCost cost = bench::runProcess(
      {argv[1], "set", "--ssid=home", "--security=wpa",
       "--password-from=fd:" + std::to_string(::fileno(passphrase.get())), argv[2]});
  if (!cost.ended) {
    std::fputs("zvkwifi set failed\n", stderr);
    return 1;
  }
  const std::string work = "zvkwifi set";
  bench::addRow({work, "whole run; CPU, % of the time", bench::timeText(cost.cpuSeconds * 1e9),
                 bench::timeText(cost.wallSeconds * 1e9), cost.cpuSeconds / cost.wallSeconds * 100,
                 CpuBarPercent});
  bench::addRow({work, "peak memory, MiB", "", "", static_cast<double>(cost.peakKibibytes) / 1024,
                 PeakBarMebibytes});
  return 0;
}
