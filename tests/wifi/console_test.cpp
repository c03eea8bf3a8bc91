// What zvkwifi does if it cannot write its results.

#include "wifi/console.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include "testing/files.h"
#include "util/unique_fd.h"

namespace {

/// Replaces a descriptor of this process as long as the object exists.
class Redirection {
 public:
  Redirection(int descriptor, int to) : m_Descriptor(descriptor), m_Original(::dup(descriptor)) {
    ::dup2(to, m_Descriptor);
  }
  ~Redirection() { ::dup2(m_Original.get(), m_Descriptor); }
  Redirection(const Redirection&) = delete;
  Redirection& operator=(const Redirection&) = delete;

 private:
  int m_Descriptor;
  util::UniqueFd m_Original;
};

/// The ends of a pipe that is full.
std::array<int, 2> fullPipe{};
volatile std::sig_atomic_t alarms = 0;

/// Empties the pipe at the second alarm. So the first one only interrupts the write.
extern "C" void onAlarm(int /*signal*/) {
  alarms = alarms + 1;
  if (alarms == 2) {
    std::array<char, 4096> buffer{};
    while (::read(fullPipe[0], buffer.data(), buffer.size()) > 0) {
    }
  }
}

TEST(Print, GoesOnAfterASignal) {
  ASSERT_EQ(::pipe2(fullPipe.data(), O_NONBLOCK), 0);
  while (::write(fullPipe[1], "x", 1) == 1) {
  }
  ASSERT_EQ(::fcntl(fullPipe[1], F_SETFL, 0), 0);
  struct sigaction action {};
  action.sa_handler = onAlarm;
  ASSERT_EQ(::sigaction(SIGALRM, &action, nullptr), 0);
  const timeval interval = {.tv_sec = 0, .tv_usec = 10'000};
  const itimerval timer = {.it_interval = interval, .it_value = interval};
  ASSERT_EQ(::setitimer(ITIMER_REAL, &timer, nullptr), 0);
  {
    const Redirection redirection(STDOUT_FILENO, fullPipe[1]);
    EXPECT_NO_THROW(wifi::print("result\n"));
  }
  const itimerval never{};
  ::setitimer(ITIMER_REAL, &never, nullptr);
  ::signal(SIGALRM, SIG_DFL);
  EXPECT_GE(alarms, 2);
  std::array<char, 100> buffer{};
  EXPECT_EQ(::read(fullPipe[0], buffer.data(), buffer.size()), 7);
  EXPECT_STREQ(buffer.data(), "result\n");
  ::close(fullPipe[0]);
  ::close(fullPipe[1]);
}

TEST(ResultOutput, PrintsOnStandardErrorWhatStandardOutputDoesNotTake) {
  const support::TemporaryFolder folder;
  const util::UniqueFd full(::open("/dev/full", O_WRONLY | O_CLOEXEC));
  const util::UniqueFd file(
      ::open(folder.path("err").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
  wifi::ResultOutput output;
  EXPECT_NO_THROW(output.finish());
  {
    const Redirection out(STDOUT_FILENO, full.get());
    const Redirection err(STDERR_FILENO, file.get());
    output.print("first\n");
  }
  const Redirection err(STDERR_FILENO, file.get());
  output.print("second\n");
  EXPECT_EQ(support::fileContent(folder.path("err")), "first\nsecond\n");
  EXPECT_TRUE(output.hasFailed());
  try {
    output.finish();
    FAIL();
  } catch (const wifi::OutputError& error) {
    EXPECT_EQ(error.code().value(), ENOSPC);
  }
}

}  // namespace
