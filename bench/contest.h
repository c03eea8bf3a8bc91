#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Compares contestants that do the same work, for example:
///
///     bench::contest("Base64 encode", "GLib", {48, 12288}, [](std::size_t size) {
///       return [job = Job(size)]() mutable { encodeGlib(job); };
///     });
namespace bench {

/// The name of our own contestant.
inline constexpr const char* Ours = "zvkconfig";

using Sizes = std::vector<std::size_t>;

/// Runs a work a number of times and returns the CPU time in seconds.
using TimedWork = std::function<double(long count)>;

/// Registers a contestant. `prepare` gets a size and makes everything that the work needs.
void addContestant(const std::string& work, const std::string& contestant, const Sizes& sizes,
                   std::function<TimedWork(std::size_t)> prepare);

/// Returns the CPU time of this process in seconds.
double cpuSeconds();

/// Makes the compiler store `value` in memory, so that it cannot leave out the computation.
template <typename Value>
void keep(const Value& value) {
  asm volatile("" : : "r,m"(value) : "memory");
}

/// Registers a contestant. `prepare` gets a size, makes everything that the work needs, and returns
/// the work as a function. Only the time of this function is measured.
template <typename Prepare>
void contest(const std::string& work, const std::string& contestant, const Sizes& sizes,
             Prepare prepare) {
  addContestant(work, contestant, sizes, [prepare](std::size_t size) -> TimedWork {
    // A function object must be copyable, and a work need not be.
    auto run = std::make_shared<decltype(prepare(size))>(prepare(size));
    return [run](long count) {
      const double start = cpuSeconds();
      for (long i = 0; i < count; ++i) {
        (*run)();
        asm volatile("" : : : "memory");
      }
      return cpuSeconds() - start;
    };
  });
}

/// Runs the contests of all works whose names contain `filter`, and adds the rows of the table: our
/// time and each peer's time for each work and size. In each round, every contestant does its work,
/// so that a change of the machine's load affects all of them. A ratio is that of two times of the
/// same round.
void runContests(std::string_view filter);

}  // namespace bench
