// Appends rows to the file of results, and formats times and sizes.

#include "results.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace bench {

namespace {

/// Returns a number with `places` decimal places, followed by its unit.
std::string number(double value, int places, const char* unit) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.*f %s", places, value, unit);
  return text.data();
}

}  // namespace

Spread::Spread(std::vector<double> figures) : Spread(0) {
  std::ranges::sort(figures);
  const std::size_t cut = figures.size() / 10;
  low = figures[cut];
  median = figures[figures.size() / 2];
  high = figures[figures.size() - 1 - cut];
}

void addRow(const Row& row) {
  const char* const path = std::getenv("ZVK_BENCH_ROWS");
  if (path == nullptr) {
    return;
  }
  std::ofstream file(path, std::ios::app);
  file << row.work << '\t' << row.peer << '\t' << row.ours << '\t' << row.theirs << '\t'
       << row.value.low << '\t' << row.value.median << '\t' << row.value.high << '\t' << row.limit
       << '\n';
}

std::string timeText(double nanoseconds) {
  if (nanoseconds < 1e3) {
    return number(nanoseconds, 1, "ns");
  }
  return nanoseconds < 1e6 ? number(nanoseconds / 1e3, 2, "us")
                           : number(nanoseconds / 1e6, 2, "ms");
}

std::string countText(double count) {
  if (count < 1e3) {
    return number(count, 0, "");
  }
  return count < 1e6 ? number(count / 1e3, 1, "thousand") : number(count / 1e6, 2, "million");
}

std::string sizeText(std::size_t bytes) {
  constexpr std::size_t kibi = 1024;
  if (bytes >= kibi * kibi && bytes % (kibi * kibi) == 0) {
    return std::to_string(bytes / (kibi * kibi)) + " MiB";
  }
  return bytes >= kibi && bytes % kibi == 0 ? std::to_string(bytes / kibi) + " KiB"
                                            : std::to_string(bytes) + " B";
}

}  // namespace bench
