#pragma once

#include <benchmark/benchmark.h>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// Registers benchmarks. In a contest several contestants do the same work, for example:
///
///     bench::contest("Base64 encode", "GLib", {48, 12288}, [](std::size_t size) {
///       return [job = Job(size)]() mutable { encodeGlib(job); };
///     });
namespace bench {

/// The name of our own contestant.
inline constexpr const char* Ours = "zvkconfig";

using Sizes = std::vector<std::int64_t>;

/// Registers a contestant. `prepare` gets a size, makes everything that the work needs, and returns
/// the work as a function. The benchmark calls the work many times, and measures only the time of
/// these calls.
template <typename Prepare>
benchmark::internal::Benchmark* contest(const std::string& work, const std::string& contestant,
                                        const Sizes& sizes, Prepare prepare) {
  auto* added = benchmark::RegisterBenchmark(
      (work + "/" + contestant).c_str(), [prepare](benchmark::State& state) {
        auto run = prepare(static_cast<std::size_t>(state.range(0)));
        while (state.KeepRunning()) {
          run();
          benchmark::ClobberMemory();
        }
      });
  for (const std::int64_t size : sizes) {
    added->Arg(size);
  }
  return added;
}

}  // namespace bench
