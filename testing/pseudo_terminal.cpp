#include "testing/pseudo_terminal.h"

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sched.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace support {

namespace {

/// The time limit for a wait for input or output. Without it, a child that hangs would block the
/// test for ever.
constexpr int GiveUpMilliseconds = 20'000;

void require(bool condition, const char* what) {
  if (!condition) {
    throw std::runtime_error(what);
  }
}

bool isReadable(int descriptor, int milliseconds) {
  pollfd wanted{.fd = descriptor, .events = POLLIN, .revents = 0};
  return ::poll(&wanted, 1, milliseconds) == 1;
}

[[noreturn]] void beChild(int terminal, int outputEnd, const std::function<void()>& action) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP}) {
    std::signal(number, SIG_DFL);
  }
  const rlimit noCore{.rlim_cur = 0, .rlim_max = 0};
  ::setrlimit(RLIMIT_CORE, &noCore);
  // The kernel ignores a terminal's stop signal in an orphaned process group. The child's new group
  // is not orphaned, because the child's parent is in another group.
  ::setpgid(0, 0);
  ::dup2(terminal, STDIN_FILENO);
  ::dup2(outputEnd, STDOUT_FILENO);
  action();
  std::fflush(stdout);
  std::_Exit(EXIT_SUCCESS);
}

}  // namespace

PseudoTerminal::PseudoTerminal() {
  require(::openpty(&m_Master, &m_Terminal, nullptr, nullptr, nullptr) == 0,
          "cannot open a pseudo-terminal");
  require(::fcntl(m_Master, F_SETFL, O_NONBLOCK) == 0, "cannot make the terminal non-blocking");
}

PseudoTerminal::~PseudoTerminal() {
  if (m_Child > 0) {
    ::kill(m_Child, SIGKILL);
    ::waitpid(m_Child, nullptr, 0);
  }
  for (const int descriptor : {m_Master, m_Terminal, m_OutputEnd}) {
    if (descriptor >= 0) {
      ::close(descriptor);
    }
  }
}

void PseudoTerminal::run(const std::function<void()>& action) {
  std::array<int, 2> ends{};
  require(::pipe(ends.data()) == 0, "cannot create a pipe");
  std::fflush(nullptr);
  m_Child = ::fork();
  require(m_Child >= 0, "cannot create a child process");
  if (m_Child == 0) {
    beChild(m_Terminal, ends[1], action);
  }
  ::close(ends[1]);
  m_OutputEnd = ends[0];
}

void PseudoTerminal::type(const std::string& text) const {
  require(::write(m_Master, text.data(), text.size()) == static_cast<ssize_t>(text.size()),
          "cannot type on the terminal");
}

void PseudoTerminal::typeAhead(const std::string& line) const {
  type(line);
  require(isReadable(m_Terminal, GiveUpMilliseconds), "the typed line cannot be read");
}

termios PseudoTerminal::attributes() const {
  termios result{};
  require(::tcgetattr(m_Terminal, &result) == 0, "cannot read the terminal's attributes");
  return result;
}

bool PseudoTerminal::waitForEchoOff() const {
  while (echoes()) {
    siginfo_t ended{};
    ::waitid(P_PID, static_cast<id_t>(m_Child), &ended, WEXITED | WNOHANG | WNOWAIT);
    if (ended.si_pid == m_Child) {
      return false;
    }
    ::sched_yield();
  }
  return true;
}

void PseudoTerminal::switchEchoOff() const {
  termios silent = attributes();
  silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  require(::tcsetattr(m_Terminal, TCSANOW, &silent) == 0, "cannot switch the echo off");
  // In packet mode a read from the master end reports that the input was flushed.
  const int on = 1;
  require(::ioctl(m_Master, TIOCPKT, &on) == 0, "cannot set packet mode");
}

bool PseudoTerminal::waitForDiscardedInput() const {
  unsigned char event = 0;
  return isReadable(m_Master, GiveUpMilliseconds) && ::read(m_Master, &event, 1) == 1 &&
         (event & TIOCPKT_FLUSHREAD) != 0;
}

bool PseudoTerminal::waitForOutput(const std::string& text) {
  std::array<char, 512> buffer{};
  while (m_Output.find(text) == std::string::npos) {
    if (!isReadable(m_OutputEnd, GiveUpMilliseconds)) {
      return false;
    }
    const ssize_t count = ::read(m_OutputEnd, buffer.data(), buffer.size());
    if (count <= 0) {
      return false;
    }
    m_Output.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return true;
}

void PseudoTerminal::signal(int number) const {
  require(::kill(m_Child, number) == 0, "no child to signal");
}

bool PseudoTerminal::waitForStop() const {
  int status = 0;
  return ::waitpid(m_Child, &status, WUNTRACED) == m_Child && WIFSTOPPED(status);
}

int PseudoTerminal::wait() {
  // The pipe reports end-of-file when the child ends.
  std::array<char, 512> buffer{};
  while (isReadable(m_OutputEnd, GiveUpMilliseconds)) {
    const ssize_t count = ::read(m_OutputEnd, buffer.data(), buffer.size());
    if (count <= 0) {
      break;
    }
    m_Output.append(buffer.data(), static_cast<std::size_t>(count));
  }
  int status = -1;
  require(::waitpid(m_Child, &status, 0) == m_Child, "no child to wait for");
  m_Child = -1;
  return status;
}

std::string PseudoTerminal::shown() const {
  std::string result;
  std::array<char, 512> buffer{};
  for (ssize_t count = 0; (count = ::read(m_Master, buffer.data(), buffer.size())) > 0;) {
    result.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return result;
}

}  // namespace support
