// Runs the registered contests, or measures growth, and adds the rows of the table (see results.h).
//
// Usage: zvkbench [TEXT]   runs only the tasks whose names contain TEXT
//        valgrind --tool=callgrind --collect-atstart=no --callgrind-out-file=FILE zvkbench --growth
//        FILE

#include <cstdio>
#include <string_view>

#include "contest.h"
#include "growth.h"
#include "packet_bench.h"

int main(int argc, char** argv) {
  if (argc == 3 && std::string_view(argv[1]) == "--growth") {
    if (!bench::measureGrowth(argv[2])) {
      std::fputs("zvkbench: callgrind writes no dumps\n", stderr);
      return 1;
    }
    return 0;
  }
  bench::runContests(argc > 1 ? argv[1] : "");
  bench::addPacketAllocations();
  return 0;
}
