// PtyTransport: creates the pseudo-terminal, and reads and writes it without blocking.

#include "emulator/transport/pty_transport.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <span>
#include <system_error>
#include <termios.h>

namespace emulator {

namespace {

/// Returns the result of a system call. Throws `std::system_error` if the call failed.
int checked(int result, const char* what) {
  if (result < 0) {
    throw std::system_error(errno, std::generic_category(), what);
  }
  return result;
}

/// Switches off everything that would change bytes: echo, the conversion of line ends, and special
/// characters.
void makeRaw(int terminal) {
  termios attributes{};
  checked(::tcgetattr(terminal, &attributes), "tcgetattr");
  ::cfmakeraw(&attributes);
  checked(::tcsetattr(terminal, TCSANOW, &attributes), "tcsetattr");
}

/// Returns the path of the device that belongs to the master.
std::string slavePath(int master) {
  std::array<char, 64> name{};
  if (const int error = ::ptsname_r(master, name.data(), name.size()); error != 0) {
    throw std::system_error(error, std::generic_category(), "ptsname");
  }
  return name.data();
}

}  // namespace

PtyTransport::PtyTransport(Adapter& adapter)
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

void PtyTransport::receiveAll() {
  std::array<npa::Byte, 4096> buffer{};
  ssize_t count = 0;
  while ((count = ::read(m_Master.get(), buffer.data(), buffer.size())) > 0) {
    const auto now = Clock::now();
    const std::span received(buffer.data(), static_cast<std::size_t>(count));
    m_Outgoing.add(m_Adapter.receive(received), now);
  }
}

void PtyTransport::sendDue() {
  m_DeviceIsFull = false;
  while (ReplyQueue::Piece* const piece = m_Outgoing.due(Clock::now())) {
    const std::span<const npa::Byte> rest = piece->rest();
    const ssize_t count = ::write(m_Master.get(), rest.data(), rest.size());
    // A failed write means that the device is full, because no program reads. The transport waits
    // until it can write again.
    if (count < 0) {
      m_DeviceIsFull = true;
      return;
    }
    piece->sent += static_cast<std::size_t>(count);
    if (piece->rest().empty()) {
      m_Outgoing.drop();
    }
  }
}

std::vector<pollfd> PtyTransport::awaited() const {
  const short events = m_DeviceIsFull ? POLLIN | POLLOUT : POLLIN;
  return {{m_Master.get(), events, 0}};
}

std::optional<Transport::Clock::time_point> PtyTransport::nextDue() const {
  return m_DeviceIsFull ? std::nullopt : m_Outgoing.nextDue();
}

}  // namespace emulator
