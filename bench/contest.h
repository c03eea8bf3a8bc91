#pragma once

#include <benchmark/benchmark.h>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace bench {

/// Our own name among the contestants.
inline constexpr const char* Ours = "zvkconfig";

using Sizes = std::vector<std::int64_t>;

/// Registers a contestant of a work. `prepare` gets a size, makes everything that the work needs
/// and is not part of it, and returns the work, to be called any number of times.
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

inline constexpr const char* GrowthMark = "growth: ";

/// Registers a work of which is told how its cost grows over six doublings of its size.
template <typename Prepare>
void growth(const std::string& work, std::size_t smallest, Prepare prepare) {
  constexpr unsigned int doublings = 6;
  Sizes sizes;
  for (unsigned int i = 0; i <= doublings; ++i) {
    sizes.push_back(static_cast<std::int64_t>(smallest << i));
  }
  contest(GrowthMark + work, Ours, sizes, std::move(prepare))->MinTime(0.02);
}

}  // namespace bench
