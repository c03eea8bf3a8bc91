#include "wifi/workers.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using wifi::Workers;
using How = Workers::Finished::How;
using std::chrono::hours;
using std::chrono::seconds;

const auto Nothing = [] {
};

/// Waits for a signal that ends the process.
std::string pauseForever() {
  for (;;) {
    ::pause();
  }
}

std::vector<Workers::Finished> allOf(Workers& workers) {
  std::vector<Workers::Finished> all;
  while (auto finished = workers.next(Nothing)) {
    all.push_back(std::move(*finished));
  }
  std::ranges::sort(all, {}, &Workers::Finished::index);
  return all;
}

TEST(Workers, ReturnTheBytesOfEachFunctionOnce) {
  Workers workers{hours(1)};
  for (const char* const text : {"first", "second", ""}) {
    workers.start([text] { return std::string(text); });
  }
  const auto all = allOf(workers);
  ASSERT_EQ(all.size(), 3U);
  for (const auto& [finished, text] :
       {std::pair(all[0], "first"), std::pair(all[1], "second"), std::pair(all[2], "")}) {
    EXPECT_EQ(finished.how, How::Returned);
    EXPECT_EQ(finished.bytes, text);
  }
}

TEST(Workers, ReturnMoreBytesThanAPipeHolds) {
  const std::string large(1 << 20, 'x');
  Workers workers{hours(1)};
  workers.start([&] { return large; });
  EXPECT_TRUE(allOf(workers).at(0).bytes == large);
}

TEST(Workers, RunAtTheSameTime) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  Workers workers{hours(1)};
  // The first worker ends only after the second worker has written.
  workers.start([&] {
    char c = 0;
    return ::read(ends[0], &c, 1) == 1 ? std::string(1, c) : std::string();
  });
  workers.start([&] { return ::write(ends[1], "b", 1) == 1 ? std::string("a") : std::string(); });
  const auto first = workers.next(Nothing);
  const auto second = workers.next(Nothing);
  EXPECT_EQ(first->bytes + second->bytes == "ab" || first->bytes + second->bytes == "ba", true);
  ::close(ends[0]);
  ::close(ends[1]);
}

TEST(Workers, ThatDieDoNotAffectOthers) {
  Workers workers{hours(1)};
  workers.start([]() -> std::string { ::_exit(3); });
  workers.start([]() -> std::string { throw std::bad_alloc(); });
  workers.start([] {
    ::kill(::getpid(), SIGKILL);
    return std::string();
  });
  workers.start([] { return std::string("done"); });
  const auto all = allOf(workers);
  ASSERT_EQ(all.size(), 4U);
  EXPECT_EQ(all[0].how, How::Died);
  EXPECT_EQ(all[1].how, How::Died);
  EXPECT_EQ(all[2].how, How::Died);
  EXPECT_EQ(all[3].how, How::Returned);
  EXPECT_EQ(all[3].bytes, "done");
}

TEST(Workers, AreKilledAfterTheLimit) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe(ends.data()), 0);
  Workers workers{seconds(0)};
  workers.start([&ends] {
    ::signal(SIGTERM, SIG_IGN);
    const pid_t process = ::getpid();
    EXPECT_EQ(::write(ends[1], &process, sizeof process), ssize_t{sizeof process});
    return pauseForever();
  });
  pid_t process = 0;
  ASSERT_EQ(::read(ends[0], &process, sizeof process), ssize_t{sizeof process});
  const auto all = allOf(workers);
  ASSERT_EQ(all.size(), 1U);
  EXPECT_EQ(all[0].how, How::Overdue);
  siginfo_t end{};
  ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(process), &end, WEXITED | WNOWAIT), 0);
  EXPECT_EQ(end.si_code, CLD_KILLED);
  EXPECT_EQ(end.si_status, SIGKILL);
  // The next call takes the process out of the system's table.
  EXPECT_FALSE(workers.nextWithin(seconds(0), -1));
  EXPECT_EQ(::kill(process, 0), -1);
  ::close(ends[0]);
  ::close(ends[1]);
}

TEST(Workers, ReturnTheirBytesEvenIfTheyAreReadAfterTheLimit) {
  const std::string bytes(10'000, 'x');
  Workers workers{seconds(0)};
  workers.start([&] { return bytes; });
  siginfo_t end{};
  ASSERT_EQ(::waitid(P_ALL, 0, &end, WEXITED | WNOWAIT), 0);
  const auto all = allOf(workers);
  ASSERT_EQ(all.size(), 1U);
  EXPECT_EQ(all[0].how, How::Returned);
  EXPECT_EQ(all[0].bytes, bytes);
}

/// Waits for SIGTERM, and then writes a "t".
std::string writeAtSigterm(int descriptor) {
  sigset_t terminations;
  ::sigemptyset(&terminations);
  ::sigaddset(&terminations, SIGTERM);
  ::sigprocmask(SIG_BLOCK, &terminations, nullptr);
  EXPECT_EQ(::write(descriptor, "r", 1), 1);
  int number = 0;
  ::sigwait(&terminations, &number);
  EXPECT_EQ(::write(descriptor, "t", 1), 1);
  return {};
}

TEST(Workers, MayFinishTheirWorkWhenTheObjectIsDestroyed) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe(ends.data()), 0);
  {
    Workers workers{hours(1)};
    workers.start([&ends] { return writeAtSigterm(ends[1]); });
    char c = 0;
    ASSERT_EQ(::read(ends[0], &c, 1), 1);
  }
  ::close(ends[1]);
  char c = 0;
  EXPECT_EQ(::read(ends[0], &c, 1), 1);
  EXPECT_EQ(c, 't');
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "the process still exists";
  ::close(ends[0]);
}

TEST(Workers, GetSignals) {
  Workers workers{hours(1)};
  workers.start(pauseForever);
  workers.start(pauseForever);
  workers.signal(SIGTERM);
  const auto all = allOf(workers);
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(all[0].how, How::Died);
  EXPECT_EQ(all[1].how, How::Died);
}

TEST(Workers, GetSigtermIfTheirParentIsKilled) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe(ends.data()), 0);
  const pid_t parent = ::fork();
  if (parent == 0) {
    Workers workers{hours(1)};
    workers.start([&ends] { return writeAtSigterm(ends[1]); });
    pauseForever();
  }
  // The test ends with a failure if the worker does not end.
  ::close(ends[1]);
  ::alarm(60);
  char c = 0;
  EXPECT_EQ(::read(ends[0], &c, 1), 1);
  EXPECT_EQ(c, 'r');
  ::kill(parent, SIGKILL);
  ::waitpid(parent, nullptr, 0);
  EXPECT_EQ(::read(ends[0], &c, 1), 1);
  EXPECT_EQ(c, 't');
  ::alarm(0);
  ::close(ends[0]);
}

TEST(Workers, EndAWaitWithinItsLimitOrWhenTheDescriptorCanBeRead) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe(ends.data()), 0);
  Workers workers{hours(1)};
  EXPECT_FALSE(workers.nextWithin(seconds(0), -1));
  workers.start(pauseForever);
  EXPECT_FALSE(workers.nextWithin(seconds(0), ends[0]));
  EXPECT_EQ(workers.running(), 1U);
  EXPECT_EQ(::write(ends[1], "x", 1), 1);
  EXPECT_FALSE(workers.nextWithin(hours(1), ends[0]));
  workers.signal(SIGTERM);
  const auto finished = workers.nextWithin(hours(1), -1);
  ASSERT_TRUE(finished);
  EXPECT_EQ(finished->how, How::Died);
  EXPECT_EQ(workers.running(), 0U);
  ::close(ends[0]);
  ::close(ends[1]);
}

}  // namespace
