#include "util/clock.h"

#include <gtest/gtest.h>

#include "testing/virtual_system.h"

using virtual_system::Second;
using virtual_system::System;

TEST(PauseSeconds, SleepsOnceForTheWholeTime) {
  System system;
  util::pauseSeconds(50);
  EXPECT_EQ(system.sleeps, std::vector<unsigned int>{50});
  EXPECT_EQ(system.now(), 50 * Second);
}

TEST(PauseSeconds, DoesNotSleepForZeroSeconds) {
  System system;
  util::pauseSeconds(0);
  EXPECT_TRUE(system.sleeps.empty());
}

TEST(PauseBriefly, WaitsOneMillisecond) {
  System system;
  util::pauseBriefly();
  EXPECT_EQ(system.briefPauses, std::vector<unsigned int>{1000});
}

TEST(NowInSeconds, CountsWholeSeconds) {
  System system;
  const std::time_t start = util::nowInSeconds();
  system.advance(Second - 1);
  EXPECT_EQ(util::nowInSeconds() - start, 0);
  system.advance(1);
  EXPECT_EQ(util::nowInSeconds() - start, 1);
}

TEST(NowInSeconds, CountsAfter2038) {
  System system;
  constexpr std::time_t after2038 = 4'102'444'800;
  system.advance((after2038 - util::nowInSeconds()) * Second);
  EXPECT_EQ(util::nowInSeconds(), after2038);
}

TEST(SteadyTime, DoesNotDependOnTheClock) {
  System system;
  std::time_t start = 0;
  {
    const util::SteadyTime outer;
    start = util::nowInSeconds();
    {
      const util::SteadyTime inner;
      system.advance(Second);
    }
    system.clockShift = -3600;
    EXPECT_EQ(util::nowInSeconds() - start, 1);
    EXPECT_EQ(util::timeOfDay(), system.wallClock());
  }
  EXPECT_EQ(util::nowInSeconds(), system.wallClock());
}

TEST(ObservePauses, ReportsEachPauseBeforeItBeginsAndLeavesItUnchanged) {
  System system;
  std::vector<unsigned int> seen;
  util::observePauses([&](unsigned int seconds) {
    EXPECT_EQ(system.sleeps.size(), seen.size());
    seen.push_back(seconds);
  });
  util::pauseSeconds(5);
  util::pauseSeconds(0);
  util::pauseSeconds(50);
  util::observePauses({});
  util::pauseSeconds(2);
  EXPECT_EQ(seen, (std::vector<unsigned int>{5, 50}));
  EXPECT_EQ(system.sleeps, (std::vector<unsigned int>{5, 50, 2}));
}
