// Counts instructions with callgrind, and fits the exponents of growth.

#include "growth.h"

#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <utility>
#include <valgrind/callgrind.h>
#include <vector>

#include "results.h"

namespace bench {

namespace {

constexpr unsigned int Doublings = 5;

struct Growth {
  std::string name;
  std::size_t smallest;
  double bar;
  std::function<Task(std::size_t)> make;
};

std::vector<Growth>& growths() {
  static std::vector<Growth> all;
  return all;
}

/// Counts instructions, with one dump of callgrind for each count.
class Counter {
 public:
  explicit Counter(std::string dumps) : m_Dumps(std::move(dumps)) {}

  /// Returns how many instructions a task takes, or 0 if callgrind has not written a dump.
  double instructionsOf(const Task& task) {
    CALLGRIND_TOGGLE_COLLECT;
    task();
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS;
    const std::string path = m_Dumps + "." + std::to_string(++m_Count);
    const double total = totalIn(path);
    std::remove(path.c_str());
    return total;
  }

 private:
  /// Returns the number in the line "totals: NUMBER" of a dump.
  static double totalIn(const std::string& path) {
    std::ifstream dump(path);
    const std::string key = "totals: ";
    for (std::string line; std::getline(dump, line);) {
      if (line.starts_with(key)) {
        return std::stod(line.substr(key.size()));
      }
    }
    return 0;
  }

  std::string m_Dumps;
  int m_Count = 0;
};

/// Returns the exponent of the power function of the size that fits the counts best. Uses the
/// method of least squares on the logarithms.
double fittedExponent(const std::map<std::size_t, double>& counts) {
  const auto points = static_cast<double>(counts.size());
  double sumX = 0;
  double sumY = 0;
  double sumXX = 0;
  double sumXY = 0;
  for (const auto& [size, count] : counts) {
    const double x = std::log2(static_cast<double>(size));
    const double y = std::log2(count);
    sumX += x;
    sumY += y;
    sumXX += x * x;
    sumXY += x * y;
  }
  return (points * sumXY - sumX * sumY) / (points * sumXX - sumX * sumX);
}

}  // namespace

void addGrowth(const std::string& name, std::size_t smallest, double bar,
               std::function<Task(std::size_t)> make) {
  growths().push_back({name, smallest, bar, std::move(make)});
}

bool measureGrowth(const std::string& dumps) {
  Counter counter(dumps);
  for (const Growth& growth : growths()) {
    // The first run of a task may do something that the others need not do, for example resolve
    // the addresses of functions.
    growth.make(growth.smallest)();
    std::map<std::size_t, double> counts;
    for (unsigned int i = 0; i <= Doublings; ++i) {
      const std::size_t size = growth.smallest << i;
      const double count = counter.instructionsOf(growth.make(size));
      if (count <= 0) {
        return false;
      }
      counts[size] = count;
    }
    addRow({"growth: " + growth.name, "from " + sizeText(growth.smallest) + ", exponent",
            countText(counts.begin()->second), "", fittedExponent(counts), growth.bar});
  }
  return true;
}

}  // namespace bench
