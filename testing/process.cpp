#include "testing/process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <system_error>
#include <termios.h>
#include <thread>
#include <unistd.h>
#include <utmp.h>

#include "testing/files.h"

namespace support {

namespace {

constexpr int SignalStatusBase = 128;
constexpr int StatusNotStarted = 127;

[[noreturn]] void execute(const std::vector<std::string>& command) {
  std::vector<std::string> copies(command);
  std::vector<char*> arguments(copies.size() + 1, nullptr);
  std::ranges::transform(copies, arguments.begin(), [](std::string& text) { return text.data(); });
  ::execvp(arguments[0], arguments.data());
  ::_exit(StatusNotStarted);
}

int waitForStatus(pid_t pid) {
  int status = 0;
  ::waitpid(pid, &status, 0);
  return WIFSIGNALED(status) ? SignalStatusBase + WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

ProcessResult runProcess(const std::vector<std::string>& command, std::string_view input) {
  const TemporaryFolder folder;
  std::ofstream(folder.path("in")) << input;
  const pid_t pid = ::fork();
  if (pid == 0) {
    ::dup2(::open(folder.path("in").c_str(), O_RDONLY | O_CLOEXEC), STDIN_FILENO);
    const auto redirect = [&](const char* name, int descriptor) {
      ::dup2(::open(folder.path(name).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR),
             descriptor);
    };
    redirect("out", STDOUT_FILENO);
    redirect("err", STDERR_FILENO);
    execute(command);
  }
  ProcessResult result;
  result.status = waitForStatus(pid);
  result.out = fileContent(folder.path("out"));
  result.err = fileContent(folder.path("err"));
  return result;
}

BackgroundProcess::BackgroundProcess(const std::vector<std::string>& command) : m_Pid(::fork()) {
  if (m_Pid == 0) {
    execute(command);
  }
}

BackgroundProcess::~BackgroundProcess() {
  if (m_Pid > 0) {
    endWith(SIGKILL);
  }
}

void BackgroundProcess::signal(int number) const {
  ::kill(m_Pid, number);
}

int BackgroundProcess::endWith(int number) {
  signal(number);
  const int status = waitForStatus(m_Pid);
  m_Pid = -1;
  return status;
}

TerminalProcess::TerminalProcess(const std::vector<std::string>& command) : m_Pid(-1) {
  if (::openpty(&m_Master, &m_Slave, nullptr, nullptr, nullptr) != 0) {
    throw std::system_error(errno, std::generic_category(), "openpty");
  }
  m_Pid = ::fork();
  if (m_Pid == 0) {
    ::close(m_Master);
    ::login_tty(m_Slave);
    execute(command);
  }
}

TerminalProcess::~TerminalProcess() {
  if (m_Pid > 0) {
    ::kill(m_Pid, SIGKILL);
    waitForStatus(m_Pid);
  }
  ::close(m_Master);
  ::close(m_Slave);
}

bool TerminalProcess::readMore() {
  constexpr int limitMilliseconds = 100;
  pollfd polled = {m_Master, POLLIN, 0};
  if (::poll(&polled, 1, limitMilliseconds) <= 0) {
    return false;
  }
  std::array<char, 1024> buffer{};
  const ssize_t count = ::read(m_Master, buffer.data(), buffer.size());
  if (count <= 0) {
    return false;
  }
  m_Shown.append(buffer.data(), static_cast<std::size_t>(count));
  return true;
}

bool TerminalProcess::waitFor(std::string_view text) {
  return eventually([&] {
    readMore();
    return m_Shown.find(text) != std::string::npos;
  });
}

bool TerminalProcess::waitForNext(std::string_view text) {
  return eventually([&] {
    readMore();
    const std::size_t start = m_Shown.find(text, m_Found);
    if (start == std::string::npos) {
      return false;
    }
    m_Found = start + text.size();
    return true;
  });
}

void TerminalProcess::resize(unsigned short rows, unsigned short columns) const {
  const winsize size = {.ws_row = rows, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
  if (::ioctl(m_Master, TIOCSWINSZ, &size) != 0) {
    throw std::system_error(errno, std::generic_category(), "size of the terminal");
  }
}

void TerminalProcess::type(std::string_view text) const {
  if (::write(m_Master, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
    throw std::system_error(errno, std::generic_category(), "write to the terminal");
  }
}

bool TerminalProcess::echoes() const {
  termios attributes{};
  ::tcgetattr(m_Slave, &attributes);
  return (attributes.c_lflag & static_cast<tcflag_t>(ECHO)) != 0;
}

int TerminalProcess::waitForEnd() {
  int status = 0;
  while (::waitpid(m_Pid, &status, WNOHANG) == 0) {
    readMore();
  }
  m_Pid = -1;
  while (readMore()) {
  }
  return WIFSIGNALED(status) ? SignalStatusBase + WTERMSIG(status) : WEXITSTATUS(status);
}

void pauseBriefly() {
  std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

}  // namespace support
