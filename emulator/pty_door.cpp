#include "emulator/pty_door.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <span>
#include <system_error>
#include <termios.h>
#include <utility>

namespace emulator {

namespace {

int checked(int result, const char* what) {
  if (result < 0) {
    throw std::system_error(errno, std::generic_category(), what);
  }
  return result;
}

void makeRaw(int terminal) {
  termios attributes{};
  checked(::tcgetattr(terminal, &attributes), "tcgetattr");
  ::cfmakeraw(&attributes);
  checked(::tcsetattr(terminal, TCSANOW, &attributes), "tcsetattr");
}

std::string slavePath(int master) {
  std::array<char, 64> name{};
  if (const int error = ::ptsname_r(master, name.data(), name.size()); error != 0) {
    throw std::system_error(error, std::generic_category(), "ptsname");
  }
  return name.data();
}

}  // namespace

PtyDoor::PtyDoor(Adapter& adapter)
    : m_Adapter(adapter), m_Master(checked(::posix_openpt(O_RDWR | O_NOCTTY), "posix_openpt")) {
  checked(::fcntl(m_Master.get(), F_SETFD, FD_CLOEXEC), "fcntl");
  checked(::fcntl(m_Master.get(), F_SETFL, O_NONBLOCK), "fcntl");
  checked(::grantpt(m_Master.get()), "grantpt");
  checked(::unlockpt(m_Master.get()), "unlockpt");
  m_DevicePath = slavePath(m_Master.get());
  m_Slave = util::UniqueFd(
      checked(::open(m_DevicePath.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC), m_DevicePath.c_str()));
  makeRaw(m_Slave.get());
}

void PtyDoor::carry(const SignalQueue& signals, const std::function<bool(int signal)>& goOn) {
  while (true) {
    sendDue();
    const short masterEvents = m_DeviceIsFull ? POLLIN | POLLOUT : POLLIN;
    std::array<pollfd, 2> polled = {
        {{m_Master.get(), masterEvents, 0}, {signals.descriptor(), POLLIN, 0}}};
    if (::poll(polled.data(), polled.size(), timeToNext()) < 0 && errno != EINTR) {
      throw std::system_error(errno, std::generic_category(), "poll");
    }
    receiveAll();
    while (const int signal = signals.next()) {
      if (!goOn(signal)) {
        receiveAll();
        return;
      }
    }
  }
}

void PtyDoor::receiveAll() {
  std::array<npa::Byte, 4096> buffer{};
  ssize_t count = 0;
  while ((count = ::read(m_Master.get(), buffer.data(), buffer.size())) > 0) {
    const auto now = Clock::now();
    const std::span received(buffer.data(), static_cast<std::size_t>(count));
    for (Adapter::Reply& reply : m_Adapter.receive(received)) {
      m_Outgoing.push_back({now + reply.delay, std::move(reply.bytes)});
    }
  }
}

void PtyDoor::sendDue() {
  m_DeviceIsFull = false;
  while (!m_Outgoing.empty() && m_Outgoing.front().due <= Clock::now()) {
    Bytes& bytes = m_Outgoing.front().bytes;
    const ssize_t count = ::write(m_Master.get(), bytes.data(), bytes.size());
    if (count < 0) {
      m_DeviceIsFull = true;
      return;
    }
    bytes.erase(bytes.begin(), bytes.begin() + count);
    if (bytes.empty()) {
      m_Outgoing.pop_front();
    }
  }
}

int PtyDoor::timeToNext() const {
  using std::chrono::milliseconds;
  if (m_Outgoing.empty() || m_DeviceIsFull) {
    return -1;
  }
  const auto wait = std::chrono::ceil<milliseconds>(m_Outgoing.front().due - Clock::now());
  return static_cast<int>(std::max<milliseconds::rep>(wait.count(), 0));
}

}  // namespace emulator
