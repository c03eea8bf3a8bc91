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

/// The operating system as the tests' programs see it: a clock that only moves when somebody
/// waits, and devices that are scripted. The calls open, close, read, write, select, sleep, usleep
/// and time of everything linked into a test go through here (by the linker's --wrap); what does
/// not concern a virtual device or the clock passes on to the system.
namespace virtual_system {

using Bytes = std::vector<std::uint8_t>;
using Microseconds = std::int64_t;

inline constexpr Microseconds Second = 1'000'000;

/// A character device. Like the kernel's printer driver it gives at most one arrived piece to a
/// read, keeps what a small read leaves, and answers EAGAIN when there is nothing.
struct Device {
  /// Bytes that arrive at the host at a point in virtual time.
  struct Arrival {
    Microseconds at;
    Bytes bytes;
  };

  // What the device does. Each hook may be left empty for the ordinary behaviour.
  int openErrno = 0;                            ///< open fails with this
  int closeErrno = 0;                           ///< close fails with this
  int descriptor = -1;                          ///< open gives this one; -1: the next free one
  std::function<void(const Bytes&)> onWrite;    ///< called with what was taken
  std::function<int(std::size_t)> writeResult;  ///< count taken, or a negative errno
  std::function<int()> readResult;              ///< non-zero: a negative errno; 0: as ordinary
  std::function<int()> readSelectResult;        ///< select's result for reading, no waiting
  std::function<int()> writeSelectResult;       ///< select's result for writing, no waiting
  bool readyForEver = false;                    ///< select says ready, whatever there is

  /// Lets `bytes` arrive `delay` after now.
  void reply(Bytes bytes, Microseconds delay = 0);

  // What was asked of it.
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
  timeval lastLimit{};             ///< as the last select was given it

  std::deque<Arrival> arrivals;
};

/// Installs the virtual clock and devices for the life of one test.
class System {
 public:
  System();
  ~System();
  System(const System&) = delete;
  System& operator=(const System&) = delete;

  /// The device at `path`, made by the first call. A path that starts with "/dev/usb/" and has no
  /// device does not exist.
  Device& device(const std::string& path);

  /// Virtual time since the test began.
  Microseconds now() const { return m_Now; }
  void advance(Microseconds time) { m_Now += time; }
  /// Virtual time as `time` gives it.
  std::int64_t wallClock() const { return ClockStart + m_Now / Second + clockShift; }

  /// Seconds by which somebody has set the clock, without time passing.
  std::int64_t clockShift = 0;
  /// Whole-second pauses that a signal cuts short: each ends after this many seconds.
  std::deque<unsigned int> interruptedSleeps;

  /// Each whole-second pause, in order.
  std::vector<unsigned int> sleeps;
  /// Short pauses (usleep), in microseconds each.
  std::vector<unsigned int> briefPauses;
  /// What was done, over all devices, in order: "open", "write", "read", "close", "sleep 5". A run
  /// of reads counts once; probes and short pauses are left out.
  std::vector<std::string> events;
  void record(const std::string& event);

  /// When set: called before each read and write of a descriptor that is no device, with the size
  /// asked for. Returns how much of it the system gets to see, or a negative errno.
  std::function<ssize_t(std::size_t)> fileTransfer;

  /// Calls of select, on any descriptor.
  int selects = 0;

  // The system calls, for the wrappers.
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
