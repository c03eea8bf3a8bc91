#include "wifi/workers.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace wifi {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto Tick = std::chrono::seconds(1);

[[noreturn]] void fail(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

bool writeAll(int descriptor, const std::string& bytes) {
  std::size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t count = ::write(descriptor, bytes.data() + written, bytes.size() - written);
    if (count < 0 && errno != EINTR) {
      return false;
    }
    written += count < 0 ? 0 : static_cast<std::size_t>(count);
  }
  return true;
}

/// Runs in the process of a worker and ends this process with `_exit`. So the worker does not run
/// destructors, and does not write buffers, that belong to its parent.
[[noreturn]] void run(const std::function<std::string()>& work, pid_t parent, int pipe) {
  ::prctl(PR_SET_PDEATHSIG, SIGTERM);
  bool done = false;
  // If the parent died before prctl, the kernel sends no SIGTERM.
  if (::getppid() == parent) {
    try {
      done = writeAll(pipe, work());
    } catch (...) {
      // The parent sees that the bytes are missing.
    }
  }
  ::_exit(done ? EXIT_SUCCESS : EXIT_FAILURE);
}

}  // namespace

Workers::~Workers() {
  try {
    signal(SIGTERM);
    while (next([] {})) {
    }
  } catch (...) {
    // Memory has run out.
    signal(SIGKILL);
  }
  reap();
}

std::size_t Workers::start(const std::function<std::string()>& work) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
    fail("pipe");
  }
  util::UniqueFd readEnd(ends[0]);
  const util::UniqueFd writeEnd(ends[1]);
  std::fflush(nullptr);
  const pid_t parent = ::getpid();
  const pid_t process = ::fork();
  if (process < 0) {
    fail("fork");
  }
  if (process == 0) {
    run(work, parent, writeEnd.get());
  }
  m_Workers.push_back({m_Count, process, std::move(readEnd), {}, Clock::now() + m_Limit});
  return m_Count++;
}

std::optional<Workers::Finished> Workers::next(const std::function<void()>& onTick) {
  std::optional<Finished> finished;
  while (!finished && running() > 0) {
    finished = nextWithin(Tick, -1);
    onTick();
  }
  return finished;
}

std::optional<Workers::Finished> Workers::nextWithin(std::chrono::milliseconds limit,
                                                     int descriptor) {
  reap();
  std::vector<pollfd> polled;
  for (const Worker& worker : m_Workers) {
    polled.push_back({worker.pipe.get(), POLLIN, 0});
  }
  polled.push_back({descriptor, POLLIN, 0});
  if (::poll(polled.data(), polled.size(), millisecondsToWait(limit)) < 0) {
    return std::nullopt;
  }
  const Clock::time_point now = Clock::now();
  for (std::size_t i = 0; i < m_Workers.size(); ++i) {
    Worker& worker = m_Workers[i];
    const bool isReadable = polled[i].revents != 0;
    // If this process was held up, the result of an overdue worker may be complete.
    const bool overdue = !isReadable && now >= worker.end;
    if (overdue || (isReadable && !readSome(worker))) {
      return finish(m_Workers.begin() + static_cast<std::ptrdiff_t>(i), overdue);
    }
  }
  return std::nullopt;
}

int Workers::millisecondsToWait(std::chrono::milliseconds limit) const {
  auto wait = limit;
  for (const Worker& worker : m_Workers) {
    wait = std::min(wait, std::chrono::ceil<std::chrono::milliseconds>(worker.end - Clock::now()));
  }
  return static_cast<int>(std::max(wait, std::chrono::milliseconds(0)).count());
}

void Workers::signal(int number) const {
  for (const Worker& worker : m_Workers) {
    ::kill(worker.process, number);
  }
}

bool Workers::readSome(Worker& worker) {
  std::array<char, 4096> buffer{};
  const ssize_t count = ::read(worker.pipe.get(), buffer.data(), buffer.size());
  if (count > 0) {
    worker.bytes.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return count > 0 || (count < 0 && errno == EINTR);
}

Workers::Finished Workers::finish(std::vector<Worker>::iterator worker, bool overdue) {
  using How = Finished::How;
  Finished finished{worker->index, How::Overdue, std::move(worker->bytes)};
  const pid_t process = worker->process;
  if (overdue) {
    // A process that hangs in the kernel does not end, so do not wait for it.
    ::kill(process, SIGKILL);
    m_Killed.push_back(process);
  } else {
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    finished.how = status == 0 ? How::Returned : How::Died;
  }
  m_Workers.erase(worker);
  return finished;
}

void Workers::reap() {
  std::erase_if(m_Killed, [](pid_t process) { return ::waitpid(process, nullptr, WNOHANG) != 0; });
}

}  // namespace wifi
