// Starts a child process. If the child cannot run its program, it reports this through a pipe.

#include "emulator/transport/command_process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

#include "util/unique_fd.h"

namespace emulator {

namespace {

using StartError = CommandProcess::StartError;

constexpr int SignalStatusBase = 128;

/// The message that the child writes to the pipe if it cannot run its program. If the program
/// starts, the pipe is closed without a message.
struct Report {
  StartError::Step step;
  int error;
  std::array<char, 256> text;
};

[[noreturn]] void reportAndEnd(int pipe, StartError::Step step, int error, const char* text) {
  Report report{.step = step, .error = error, .text = {}};
  std::strncpy(report.text.data(), text, report.text.size() - 1);
  [[maybe_unused]] const ssize_t count = ::write(pipe, &report, sizeof report);
  ::_exit(1);
}

[[noreturn]] void runChild(int pipe, const std::vector<std::string>& command,
                           const std::function<void()>& prepare) {
  try {
    prepare();
  } catch (const std::system_error& error) {
    reportAndEnd(pipe, StartError::Step::Preparation, error.code().value(), error.what());
  }
  std::vector<std::string> copies(command);
  std::vector<char*> arguments(copies.size() + 1, nullptr);
  std::ranges::transform(copies, arguments.begin(), [](std::string& text) { return text.data(); });
  ::execvp(arguments[0], arguments.data());
  reportAndEnd(pipe, StartError::Step::Execution, errno, arguments[0]);
}

}  // namespace

std::vector<std::string> withDevice(std::vector<std::string> command, const std::string& path) {
  constexpr std::string_view mark = "{}";
  for (std::string& argument : command) {
    for (std::size_t at = argument.find(mark); at != std::string::npos;
         at = argument.find(mark, at + path.size())) {
      argument.replace(at, mark.size(), path);
    }
  }
  return command;
}

CommandProcess::CommandProcess(const std::vector<std::string>& command,
                               const std::function<void()>& prepare) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
    throw StartError{StartError::Step::Preparation, errno, "pipe"};
  }
  const util::UniqueFd readEnd(ends[0]);
  util::UniqueFd writeEnd(ends[1]);
  m_Pid = ::fork();
  if (m_Pid < 0) {
    throw StartError{StartError::Step::Preparation, errno, "fork"};
  }
  if (m_Pid == 0) {
    runChild(writeEnd.get(), command, prepare);
  }
  writeEnd.reset();
  Report report{};
  if (::read(readEnd.get(), &report, sizeof report) == static_cast<ssize_t>(sizeof report)) {
    ::waitpid(m_Pid, nullptr, 0);
    throw StartError{report.step, report.error, report.text.data()};
  }
}

void CommandProcess::signal(int number) const {
  ::kill(m_Pid, number);
}

bool CommandProcess::hasEnded() {
  int status = 0;
  const pid_t ended = ::waitpid(m_Pid, &status, WNOHANG);
  if (ended < 0) {
    // Another part of this program has already waited for the child, so the child's status is lost.
    return true;
  }
  if (ended != m_Pid) {
    return false;
  }
  m_ExitStatus = WIFSIGNALED(status) ? SignalStatusBase + WTERMSIG(status) : WEXITSTATUS(status);
  return true;
}

}  // namespace emulator
