#include "testing/virtual_system.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <ctime>
#include <fcntl.h>
#include <string_view>
#include <sys/select.h>
#include <unistd.h>

#include "testing/fault_injection.h"
#include "testing/wrapped_names.h"

namespace virtual_system {

namespace {

// The variable is thread-local, because libFuzzer watches the memory in another thread, and that
// thread needs the real clock.
thread_local System* currentSystem = nullptr;

constexpr std::string_view DeviceFolder = "/dev/usb/";

}  // namespace

void Device::reply(Bytes bytes, Microseconds delay) {
  arrivals.push_back({System::current()->now() + delay, std::move(bytes)});
}

System::System() {
  currentSystem = this;
}

System::~System() {
  currentSystem = nullptr;
}

System* System::current() {
  return currentSystem;
}

Device& System::device(const std::string& path) {
  auto& device = m_Devices[path];
  if (!device) {
    device = std::make_unique<Device>();
  }
  return *device;
}

Device* System::openedAt(int descriptor) {
  const auto found = m_Open.find(descriptor);
  return found == m_Open.end() ? nullptr : found->second;
}

void System::record(const std::string& event) {
  if (event != "read" || events.empty() || events.back() != event) {
    events.push_back(event);
  }
}

bool System::owns(const char* path) const {
  return std::string_view(path).starts_with(DeviceFolder) || m_Devices.contains(path);
}

int System::open(const char* path, int flags) {
  record("open");
  const auto found = m_Devices.find(path);
  if (found == m_Devices.end()) {
    errno = ENOENT;
    return -1;
  }
  Device& device = *found->second;
  ++device.opens;
  device.openFlags = flags;
  // usblp permits one user at a time.
  if (const int error = device.isOpen ? EBUSY : device.openErrno; error != 0) {
    errno = error;
    return -1;
  }
  device.isOpen = true;
  const int descriptor = device.descriptor >= 0 ? device.descriptor : m_NextDescriptor++;
  m_Open[descriptor] = &device;
  return descriptor;
}

int System::close(int descriptor) {
  record("close");
  Device& device = *m_Open.at(descriptor);
  ++device.closes;
  if (device.closeErrno != 0) {
    errno = device.closeErrno;
    return -1;
  }
  device.isOpen = false;
  m_Open.erase(descriptor);
  return 0;
}

namespace {

ssize_t readDevice(Device& device, void* buffer, std::size_t size) {
  currentSystem->record("read");
  ++device.reads;
  device.readSizes.push_back(size);
  if (const int error = device.readResult ? device.readResult() : 0; error != 0) {
    errno = -error;
    return -1;
  }
  if (device.arrivals.empty() || device.arrivals.front().at > currentSystem->now()) {
    errno = EAGAIN;
    return -1;
  }
  Bytes& piece = device.arrivals.front().bytes;
  const std::size_t count = std::min(size, piece.size());
  std::copy_n(piece.begin(), count, static_cast<std::uint8_t*>(buffer));
  piece.erase(piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(count));
  if (piece.empty()) {
    device.arrivals.pop_front();
  }
  return static_cast<ssize_t>(count);
}

ssize_t writeDevice(Device& device, const void* buffer, std::size_t size) {
  currentSystem->record("write");
  const int result = device.writeResult ? device.writeResult(size) : static_cast<int>(size);
  if (result < 0) {
    errno = -result;
    return -1;
  }
  const auto* bytes = static_cast<const std::uint8_t*>(buffer);
  device.writes.emplace_back(bytes, bytes + result);
  if (device.onWrite) {
    device.onWrite(device.writes.back());
  }
  return result;
}

/// Returns how many of `size` bytes the call may transfer to or from a real file, or -1 with errno
/// set.
ssize_t permittedTransfer(std::size_t size) {
  if (currentSystem == nullptr || !currentSystem->fileTransfer) {
    return static_cast<ssize_t>(size);
  }
  const ssize_t result = currentSystem->fileTransfer(size);
  if (result >= 0) {
    return result;
  }
  errno = static_cast<int>(-result);
  return -1;
}

int selectForReading(Device& device, Microseconds limit) {
  ++device.readSelects;
  device.selectLimits.push_back(static_cast<long>(limit));
  if (device.readSelectResult) {
    return device.readSelectResult();
  }
  if (device.alwaysReadable) {
    return 1;
  }
  const Microseconds wait = limit + currentSystem->delay;
  if (device.arrivals.empty() || device.arrivals.front().at > currentSystem->now() + wait) {
    currentSystem->advance(wait);
    return 0;
  }
  currentSystem->advance(
      std::max<Microseconds>(device.arrivals.front().at - currentSystem->now(), 0));
  return 1;
}

int selectForWriting(Device& device, Microseconds limit) {
  ++device.writeSelects;
  device.selectLimits.push_back(static_cast<long>(limit));
  return device.writeSelectResult ? device.writeSelectResult() : 1;
}

}  // namespace
}  // namespace virtual_system

// --- The wrapped calls --------------------------------------------------------------------------

using support::InterceptedCall;
using virtual_system::Device;
using virtual_system::System;

namespace {

Device* virtualDevice(int descriptor) {
  return System::current() == nullptr ? nullptr : System::current()->openedAt(descriptor);
}

}  // namespace

// The linker's --wrap requires these names.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c)
extern "C" {

ZVK_CALL_WITH_FILE_OFFSET(int, open, (const char* path, int flags, ...))
ZVK_CALL_WITH_TIME(int, select,
                   (int count, fd_set* reading, fd_set* writing, fd_set* failing, timeval* limit))
ZVK_CALL_WITH_TIME(std::time_t, time, (std::time_t * result))
ZVK_CALL_WITH_TIME(int, clock_gettime, (clockid_t clock, timespec* result))

int __real_close(int descriptor);
ssize_t __real_read(int descriptor, void* buffer, std::size_t size);
ssize_t __real_write(int descriptor, const void* buffer, std::size_t size);
unsigned int __real_sleep(unsigned int seconds);
int __real_usleep(useconds_t microseconds);

int __wrap_open(const char* path, int flags, ...) {
  const InterceptedCall call("open");
  if (call.fails()) {
    return -1;
  }
  if (System::current() != nullptr && System::current()->owns(path)) {
    return System::current()->open(path, flags);
  }
  mode_t mode = 0;
  if ((flags & (O_CREAT | O_TMPFILE)) != 0) {
    std::va_list arguments;
    va_start(arguments, flags);
    mode = va_arg(arguments, mode_t);
    va_end(arguments);
  }
  return __real_open(path, flags, mode);
}

int __wrap_close(int descriptor) {
  const InterceptedCall call("close");
  const int result = virtualDevice(descriptor) != nullptr ? System::current()->close(descriptor)
                                                          : __real_close(descriptor);
  // Linux closes the descriptor even if close fails.
  return call.fails() ? -1 : result;
}

ssize_t __wrap_read(int descriptor, void* buffer, std::size_t size) {
  const InterceptedCall call("read");
  if (const auto failure = call.cut(size)) {
    return *failure;
  }
  Device* const device = virtualDevice(descriptor);
  if (device != nullptr) {
    return virtual_system::readDevice(*device, buffer, size);
  }
  const ssize_t permitted = virtual_system::permittedTransfer(size);
  return permitted < 0 ? -1 : __real_read(descriptor, buffer, static_cast<std::size_t>(permitted));
}

ssize_t __wrap_write(int descriptor, const void* buffer, std::size_t size) {
  // The linker cannot redirect the C library's own writes to standard output. So no write to it
  // fails, in whatever way the program writes.
  if (descriptor == STDOUT_FILENO) {
    return __real_write(descriptor, buffer, size);
  }
  const InterceptedCall call("write");
  if (const auto failure = call.cut(size)) {
    return *failure;
  }
  Device* const device = virtualDevice(descriptor);
  if (device != nullptr) {
    return virtual_system::writeDevice(*device, buffer, size);
  }
  const ssize_t permitted = virtual_system::permittedTransfer(size);
  return permitted < 0 ? -1 : __real_write(descriptor, buffer, static_cast<std::size_t>(permitted));
}

int __wrap_select(int count, fd_set* reading, fd_set* writing, fd_set* failing, timeval* limit) {
  const InterceptedCall call("select");
  if (call.fails()) {
    return -1;
  }
  if (System::current() != nullptr) {
    ++System::current()->selects;
  }
  const fd_set* const set = reading != nullptr ? reading : writing;
  Device* const device =
      set != nullptr && count > 0 && FD_ISSET(count - 1, set) ? virtualDevice(count - 1) : nullptr;
  if (device == nullptr) {
    return __real_select(count, reading, writing, failing, limit);
  }
  device->lastLimit = *limit;
  System& system = *System::current();
  const auto time = limit->tv_sec * virtual_system::Second + limit->tv_usec;
  const auto start = system.now();
  int result = 0;
  if (call.fault() != nullptr) {
    system.advance(time);
  } else {
    result = reading != nullptr ? virtual_system::selectForReading(*device, time)
                                : virtual_system::selectForWriting(*device, time);
  }
  // Like Linux, this function stores the remaining time in `limit`.
  const auto rest = std::max<virtual_system::Microseconds>(time - (system.now() - start), 0);
  *limit = {.tv_sec = rest / virtual_system::Second,
            .tv_usec = static_cast<suseconds_t>(rest % virtual_system::Second)};
  return result;
}

unsigned int __wrap_sleep(unsigned int seconds) {
  const InterceptedCall call("sleep");
  if (System::current() == nullptr) {
    return __real_sleep(seconds);
  }
  System& system = *System::current();
  system.sleeps.push_back(seconds);
  system.record("sleep " + std::to_string(seconds));
  unsigned int slept = seconds;
  if (!system.interruptedSleeps.empty()) {
    slept = std::min(seconds, system.interruptedSleeps.front());
    system.interruptedSleeps.pop_front();
  }
  system.advance(slept * virtual_system::Second);
  return seconds - slept;
}

int __wrap_usleep(useconds_t microseconds) {
  const InterceptedCall call("usleep");
  if (System::current() == nullptr) {
    return __real_usleep(microseconds);
  }
  System::current()->briefPauses.push_back(microseconds);
  System::current()->advance(microseconds + System::current()->delay);
  return 0;
}

std::time_t __wrap_time(std::time_t* result) {
  if (System::current() == nullptr) {
    return __real_time(result);
  }
  const std::time_t now = System::current()->wallClock();
  if (result != nullptr) {
    *result = now;
  }
  return now;
}

int __wrap_clock_gettime(clockid_t clock, timespec* result) {
  if (System::current() == nullptr || clock != CLOCK_MONOTONIC) {
    return __real_clock_gettime(clock, result);
  }
  const virtual_system::Microseconds now = System::current()->now();
  *result = {.tv_sec = now / virtual_system::Second,
             .tv_nsec = static_cast<long>(now % virtual_system::Second * 1000)};
  return 0;
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c)
