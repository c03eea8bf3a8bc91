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
  signal(SIGKILL);
}

void Workers::start(const std::function<std::string()>& work) {
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
  m_Workers.push_back({process, std::move(readEnd), {}, Clock::now() + m_Limit});
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
  std::vector<pollfd> polled;
  std::vector<std::size_t> indices;
  for (std::size_t i = 0; i < m_Workers.size(); ++i) {
    if (m_Workers[i].process > 0) {
      polled.push_back({m_Workers[i].pipe.get(), POLLIN, 0});
      indices.push_back(i);
    }
  }
  polled.push_back({descriptor, POLLIN, 0});
  ::poll(polled.data(), polled.size(), millisecondsToWait(limit));
  for (std::size_t k = 0; k < indices.size(); ++k) {
    Worker& worker = m_Workers[indices[k]];
    const bool atEnd = polled[k].revents != 0 && !readSome(worker);
    const bool overdue = !atEnd && Clock::now() >= worker.end;
    if (atEnd || overdue) {
      return finish(indices[k], overdue);
    }
  }
  return std::nullopt;
}

std::size_t Workers::running() const {
  return static_cast<std::size_t>(
      std::ranges::count_if(m_Workers, [](const Worker& worker) { return worker.process > 0; }));
}

int Workers::millisecondsToWait(std::chrono::milliseconds limit) const {
  auto wait = limit;
  for (const Worker& worker : m_Workers) {
    if (worker.process > 0) {
      wait =
          std::min(wait, std::chrono::ceil<std::chrono::milliseconds>(worker.end - Clock::now()));
    }
  }
  return static_cast<int>(std::max(wait, std::chrono::milliseconds(0)).count());
}

void Workers::signal(int number) const {
  for (const Worker& worker : m_Workers) {
    if (worker.process > 0) {
      ::kill(worker.process, number);
    }
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

Workers::Finished Workers::finish(std::size_t index, bool overdue) {
  using How = Finished::How;
  Worker& worker = m_Workers[index];
  Finished finished{index, How::Overdue, std::move(worker.bytes)};
  if (overdue) {
    // A process that hangs in the kernel does not end, so do not wait for it.
    ::kill(worker.process, SIGKILL);
    ::waitpid(worker.process, nullptr, WNOHANG);
  } else {
    int status = 0;
    while (::waitpid(worker.process, &status, 0) < 0 && errno == EINTR) {
    }
    finished.how = status == 0 ? How::Returned : How::Died;
  }
  worker.process = -1;
  worker.pipe.reset();
  return finished;
}

}  // namespace wifi
