// Runs the contests, compares the ratios with the bars, and adds the rows of the table.

#include "contest.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <utility>

#include "results.h"

namespace bench {

namespace {

constexpr std::size_t Rounds = 21;
/// The shortest time of one round of a contestant. Faster works run several times in a round.
constexpr double RoundSeconds = 0.003;
constexpr double NoBar = 0;

struct Contestant {
  std::string name;
  std::function<TimedWork(std::size_t)> prepare;
};

struct Contest {
  std::string work;
  Sizes sizes;
  std::vector<Contestant> contestants;  ///< the first one is ours
};

std::vector<Contest>& contests() {
  static std::vector<Contest> all;
  return all;
}

/// The largest allowed ratio of our time to a peer's.
struct Bar {
  std::string_view work;  ///< the start of the work's name
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
double limitOf(std::string_view work, std::string_view peer, std::size_t size) {
  const auto* const bar = std::ranges::find_if(Bars, [&](const Bar& candidate) {
    return work.starts_with(candidate.work) && peer == candidate.peer &&
           size >= candidate.smallest && size <= candidate.largest;
  });
  return bar == std::end(Bars) ? NoBar : bar->ratio;
}

/// A contestant with everything that its work needs, and its times in nanoseconds, one per round.
struct Runner {
  TimedWork work;
  long count = 1;  ///< how often the work runs in a round
  std::vector<double> times;
};

/// Returns how often a work runs in a round.
long countFor(const TimedWork& work) {
  long count = 1;
  while (work(count) < RoundSeconds) {
    count *= 2;
  }
  return count;
}

/// Runs all rounds of a contest with one size.
std::vector<Runner> runRounds(const Contest& contest, std::size_t size) {
  std::vector<Runner> runners;
  for (const Contestant& contestant : contest.contestants) {
    runners.push_back({contestant.prepare(size), 1, {}});
    runners.back().count = countFor(runners.back().work);
  }
  for (std::size_t round = 0; round < Rounds; ++round) {
    for (Runner& runner : runners) {
      runner.times.push_back(runner.work(runner.count) / static_cast<double>(runner.count) * 1e9);
    }
    // In the next round another contestant is the first.
    std::ranges::rotate(runners, runners.begin() + 1);
  }
  std::ranges::rotate(runners, runners.end() - static_cast<long>(Rounds % runners.size()));
  return runners;
}

void addRows(const Contest& contest, std::size_t size) {
  const std::vector<Runner> runners = runRounds(contest, size);
  const std::string sized = contest.work + ", " + sizeText(size);
  const std::vector<double>& ours = runners.front().times;
  const Spread ourTimes(ours);
  for (std::size_t peer = 1; peer < runners.size(); ++peer) {
    const std::vector<double>& theirs = runners[peer].times;
    std::vector<double> ratios(Rounds);
    std::ranges::transform(ours, theirs, ratios.begin(), std::divides<>());
    const std::string& name = contest.contestants[peer].name;
    addRow({sized, name, timeText(ourTimes.median), timeText(Spread(theirs).median), Spread(ratios),
            limitOf(contest.work, name, size)});
  }
}

}  // namespace

void addContestant(const std::string& work, const std::string& contestant, const Sizes& sizes,
                   std::function<TimedWork(std::size_t)> prepare) {
  auto place = std::ranges::find(contests(), work, &Contest::work);
  if (place == contests().end()) {
    place = contests().insert(place, {work, sizes, {}});
  }
  // Our contestant is the first.
  auto& contestants = place->contestants;
  contestants.insert(contestant == Ours ? contestants.begin() : contestants.end(),
                     {contestant, std::move(prepare)});
}

double cpuSeconds() {
  timespec time{};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

void runContests(std::string_view filter) {
  for (const Contest& contest : contests()) {
    if (contest.work.find(filter) != std::string::npos) {
      for (const std::size_t size : contest.sizes) {
        addRows(contest, size);
      }
    }
  }
}

}  // namespace bench
