// Runs the registered benchmarks and adds the rows of the table (see results.h).

#include <benchmark/benchmark.h>

#include "packet_bench.h"
#include "summary.h"

int main(int argc, char** argv) {
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
