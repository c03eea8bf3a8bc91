#include "wifi/signals.h"

#include <csignal>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using wifi::Interruption;

/// Raises a signal in a separate process, because a noted signal stays noted. `before` is what the
/// process did with the signal. Returns the signal that was noted, or 0.
int noted(int signal, sighandler_t before) {
  const pid_t process = ::fork();
  if (process == 0) {
    ::signal(signal, before);
    const Interruption interruption;
    ::raise(signal);
    ::_exit(Interruption::signal());
  }
  int status = 0;
  ::waitpid(process, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(Interruption, NotesTheSignals) {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    EXPECT_EQ(noted(signal, SIG_DFL), signal);
  }
}

TEST(Interruption, LeavesOnlyAnIgnoredHangupIgnored) {
  EXPECT_EQ(noted(SIGHUP, SIG_IGN), 0);
  EXPECT_EQ(noted(SIGINT, SIG_IGN), SIGINT);
}

}  // namespace
