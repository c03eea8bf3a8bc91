#pragma once

#include <benchmark/benchmark.h>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

/// Compares contestants that do the same task, for example:
///
///     bench::contest("Base64 encode", "GLib", {48, 12288}, [](std::size_t size) {
///       return [job = Job(size)]() mutable { encodeGlib(job); };
///     });
namespace bench {

/// The name of our own contestant. Every task must have a contestant with this name.
inline constexpr const char* Ours = "zvkconfig";

using Sizes = std::vector<std::size_t>;

/// Registers the benchmark of a contestant for one size.
benchmark::internal::Benchmark* addContestant(
    const std::string& task, const std::string& contestant, std::size_t size,
    const std::function<void(benchmark::State&)>& measure);

/// Registers a contestant. `prepare` gets a size, makes everything that the task needs, and returns
/// a function that does the task. Google Benchmark measures only the time of this function: its CPU
/// time, or the seconds that it returns if it returns a double.
template <typename Prepare>
void contest(const std::string& task, const std::string& contestant, const Sizes& sizes,
             Prepare prepare) {
  constexpr bool returnsSeconds = std::is_same_v<decltype(prepare(0)()), double>;
  for (const std::size_t size : sizes) {
    auto* const added = addContestant(task, contestant, size, [=](benchmark::State& state) {
      auto run = prepare(size);
      // The first run may do something that the others need not do, for example take memory.
      run();
      for ([[maybe_unused]] auto _ : state) {
        if constexpr (returnsSeconds) {
          state.SetIterationTime(run());
        } else {
          run();
          benchmark::ClobberMemory();
        }
      }
    });
    if constexpr (returnsSeconds) {
      added->UseManualTime();
    }
  }
}

/// Runs the contests of all tasks whose names contain `filter`, and adds the rows of the table: our
/// time and each peer's time for each task and size. The repetitions of all contestants are mixed
/// at random, so that a change of the machine's load affects all of them. A ratio is that of two
/// repetitions with the same number.
void runContests(std::string_view filter);

}  // namespace bench
