// Runs the contests with Google Benchmark, compares the ratios with the bars, and adds the rows of
// the table.

#include "contest.h"

#include <algorithm>
#include <array>
#include <map>

#include "results.h"

namespace bench {

namespace {

constexpr int Repetitions = 21;
/// The shortest time of one repetition. A faster task runs several times in a repetition.
constexpr double RepetitionSeconds = 0.01;
constexpr double NoBar = 0;

/// A task with one size.
struct Contest {
  std::string task;
  std::size_t size;
  std::vector<std::string> peers;

  std::string name() const { return task + ", " + sizeText(size); }
};

std::vector<Contest>& contests() {
  static std::vector<Contest> all;
  return all;
}

/// Returns the name of the benchmark of a contestant.
std::string benchmarkName(const Contest& contest, const std::string& contestant) {
  return contest.name() + "/" + contestant;
}

/// The largest allowed ratio of our time to a peer's.
struct Bar {
  std::string_view task;  ///< the start of the task's name
  std::string_view peer;
  double ratio;
  std::size_t smallest = 0;  ///< the smallest size to which the bar applies
  std::size_t largest = static_cast<std::size_t>(-1);  ///< the largest size
};

constexpr Bar Bars[] = {
    {"SAX parse", "expat", 1},
    {"SAX parse", "expat, reused", 1},
    {"SAX parse", "libxml2", 1},
    {"SAX parse", "pugixml, tree", 2},
    {"path query", "libxml2", 1},
    {"path query", "pugixml", 1},
    {"Base64", "OpenSSL", 1},
    {"hex text", "OpenSSL", 1},
    {"packet dump", "xxd", 0.1},
    {"packet building", "its log lines alone", 3},
    // From 4 KiB on, most of the time is for the copies of the bytes.
    {"ring buffer", "lock calls alone", 1.5, 1, 512},
    {"symbolToEntities", "one memcpy pass", 12},
    {"replaceEntities", "one memcpy pass", 12},
    {"getXmlResponse", "one memcpy pass", 12},
};

/// Returns the bar of a comparison, or `NoBar`.
double limitOf(std::string_view task, std::string_view peer, std::size_t size) {
  const auto* const bar = std::ranges::find_if(Bars, [&](const Bar& candidate) {
    return task.starts_with(candidate.task) && peer == candidate.peer &&
           size >= candidate.smallest && size <= candidate.largest;
  });
  return bar == std::end(Bars) ? NoBar : bar->ratio;
}

/// Collects the times of the repetitions, in nanoseconds.
class Times : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& /*context*/) override { return true; }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type == Run::RT_Iteration) {
        auto& times = m_Times[run.run_name.function_name];
        times.resize(Repetitions);
        times.at(static_cast<std::size_t>(run.repetition_index)) =
            run.run_name.time_type == "manual_time" ? run.GetAdjustedRealTime()
                                                    : run.GetAdjustedCPUTime();
      }
    }
  }

  /// Returns the times of a benchmark, in the order of the repetitions.
  const std::vector<double>& of(const std::string& name) const { return m_Times.at(name); }

 private:
  std::map<std::string, std::vector<double>> m_Times;
};

void addRows(const Contest& contest) {
  Times times;
  // The names of the tasks have no characters with a meaning in regular expressions.
  benchmark::RunSpecifiedBenchmarks(&times, "^" + benchmarkName(contest, ""));
  const std::vector<double>& ours = times.of(benchmarkName(contest, Ours));
  const Spread ourTimes(ours);
  for (const std::string& peer : contest.peers) {
    const std::vector<double>& theirs = times.of(benchmarkName(contest, peer));
    std::vector<double> ratios(Repetitions);
    std::ranges::transform(ours, theirs, ratios.begin(), std::divides<>());
    addRow({contest.name(), peer, timeText(ourTimes.median), timeText(Spread(theirs).median),
            Spread(ratios), limitOf(contest.task, peer, contest.size)});
  }
}

}  // namespace

benchmark::internal::Benchmark* addContestant(
    const std::string& task, const std::string& contestant, std::size_t size,
    const std::function<void(benchmark::State&)>& measure) {
  auto place = std::ranges::find_if(contests(), [&](const Contest& contest) {
    return contest.task == task && contest.size == size;
  });
  if (place == contests().end()) {
    place = contests().insert(place, {task, size, {}});
  }
  if (contestant != Ours) {
    place->peers.push_back(contestant);
  }
  return benchmark::RegisterBenchmark(benchmarkName(*place, contestant).c_str(), measure)
      ->Repetitions(Repetitions)
      ->MinTime(RepetitionSeconds);
}

void runContests(std::string_view filter) {
  std::string program = "zvkbench";
  std::string option = "--benchmark_enable_random_interleaving=true";
  std::array<char*, 3> arguments = {program.data(), option.data(), nullptr};
  int count = arguments.size() - 1;
  benchmark::Initialize(&count, arguments.data());
  for (const Contest& contest : contests()) {
    if (contest.task.find(filter) != std::string::npos) {
      addRows(contest);
    }
  }
}

}  // namespace bench
