// Runs the registered benchmarks and adds the rows of the table (see results.h).
//
// Usage: zvkbench [OPTION...]
//        valgrind --tool=callgrind --collect-atstart=no --callgrind-out-file=FILE zvkbench --growth
//        FILE

#include <benchmark/benchmark.h>
#include <cstdio>
#include <string_view>

#include "growth.h"
#include "packet_bench.h"
#include "summary.h"

int main(int argc, char** argv) {
  if (argc == 3 && std::string_view(argv[1]) == "--growth") {
    if (!bench::measureGrowth(argv[2])) {
      std::fputs("zvkbench: callgrind writes no dumps\n", stderr);
      return 1;
    }
    return 0;
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 1;
  }
  bench::Summary summary;
  benchmark::RunSpecifiedBenchmarks(&summary);
  summary.addRows();
  bench::addPacketAllocations();
  return 0;
}
