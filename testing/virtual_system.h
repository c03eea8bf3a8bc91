#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <sys/time.h>
#include <sys/types.h>
#include <vector>

/// A test double of the operating system: a clock that advances only during waits, and scripted
/// devices. The linker's --wrap redirects the calls open, close, read, write, select, sleep,
/// usleep, time and clock_gettime of a test program to this double. Calls that do not concern a
/// virtual device or the clock go to the real system.
///
///     System system;
///     Device& device = system.device("/dev/usb/lp0");
///     device.reply(bytes("A5 00 03 50 E0 01"), 3 * Second);  // arrives 3 seconds from now
namespace virtual_system {

using Bytes = std::vector<std::uint8_t>;
using Microseconds = std::int64_t;

inline constexpr Microseconds Second = 1'000'000;

/// A character device. As with usblp, a read returns bytes of at most one arrival, and the next
/// read returns the rest. A read fails with EAGAIN if nothing has arrived.
struct Device {
  /// Bytes that arrive at the host at a point in virtual time.
  struct Arrival {
    Microseconds at;
    Bytes bytes;
  };

  // The behaviour of the device. A hook is a `std::function` that a test can set to replace the
  // ordinary behaviour of a call.
  int openErrno = 0;                            ///< if not 0, open fails with this error
  int closeErrno = 0;                           ///< if not 0, close fails with this error
  int descriptor = -1;                          ///< the result of open; -1: the next free one
  std::function<void(const Bytes&)> onWrite;    ///< called with the bytes that a write accepted
  std::function<int(std::size_t)> writeResult;  ///< the count accepted, or a negative errno
  std::function<int()> readResult;              ///< a negative errno; 0: ordinary read
  std::function<int()> readSelectResult;        ///< select's result for reading, without a wait
  std::function<int()> writeSelectResult;       ///< select's result for writing, without a wait
  bool alwaysReadable = false;                  ///< select reports "readable" even without bytes

  /// Makes `bytes` arrive when `delay` has passed.
  void reply(Bytes bytes, Microseconds delay = 0);

  // Record of the calls.
  int opens = 0;
  int closes = 0;
  int reads = 0;
  int readSelects = 0;
  int writeSelects = 0;
  int openFlags = 0;
  bool isOpen = false;
  std::vector<Bytes> writes;
  std::vector<std::size_t> readSizes;
  std::vector<long> selectLimits;  ///< microseconds
  timeval lastLimit{};             ///< the timeout of the last select

  std::deque<Arrival> arrivals;
};

/// The virtual clock and devices of one test. While no object exists, all calls go to the real
/// system.
class System {
 public:
  System();
  ~System();
  System(const System&) = delete;
  System& operator=(const System&) = delete;

  /// Returns the device at `path`. The first call with this path creates the device. If the program
  /// opens a path below "/dev/usb/" that has no device, the call fails with ENOENT.
  Device& device(const std::string& path);

  /// Returns the virtual time since this object was created.
  Microseconds now() const { return m_Now; }
  void advance(Microseconds time) { m_Now += time; }
  /// Returns the virtual time of day, as `time` returns it: in seconds since 1970.
  std::int64_t wallClock() const { return ClockStart + m_Now / Second + clockShift; }

  /// Seconds that are added to the time of day. Change this to simulate that somebody sets the
  /// clock.
  std::int64_t clockShift = 0;
  /// For each of the next calls of sleep, the seconds after which a signal interrupts the call.
  std::deque<unsigned int> interruptedSleeps;

  /// The calls of sleep, in seconds.
  std::vector<unsigned int> sleeps;
  /// The calls of usleep, in microseconds.
  std::vector<unsigned int> briefPauses;
  /// The calls of open, write, read and close on virtual devices, and the calls of sleep, in order:
  /// "open", "write", "read", "close", "sleep 5". Consecutive reads are recorded as one. Calls of
  /// select and usleep are left out.
  std::vector<std::string> events;
  void record(const std::string& event);

  /// If this hook is set, the double calls it with the requested size before each read and write of
  /// a real file. The hook returns the size that the double passes to the system, or a negative
  /// errno value.
  std::function<ssize_t(std::size_t)> fileTransfer;

  /// How much longer than requested select waits for input and usleep pauses, as on a busy machine.
  /// If input arrives in this time, select reports it.
  Microseconds delay = 0;

  /// The count of calls of select, on any descriptor.
  int selects = 0;

  // For the wrappers of the system calls.
  Device* openedAt(int descriptor);
  bool owns(const char* path) const;
  int open(const char* path, int flags);
  int close(int descriptor);

  static System* current();

 private:
  static constexpr std::int64_t ClockStart = 1'700'000'000;

  Microseconds m_Now = 0;
  std::map<std::string, std::unique_ptr<Device>> m_Devices;
  std::map<int, Device*> m_Open;
  int m_NextDescriptor = 700;
};

}  // namespace virtual_system
