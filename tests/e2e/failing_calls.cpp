// A library that an end-to-end test preloads into its programs. It makes calls of zvkconfig or
// zvkwifi fail. The environment variable ZVK_FAULT selects the calls: with "write 2 5" the second
// write fails with errno 5, with "write 2+ 5" all later writes fail too. The library counts every
// call of select. It counts other calls only if they open a file with "open", or use a file that
// the program has opened with "open". It does not count calls on the files of /sys, because the
// number of these files depends on the machine. At the end of the program the library reports a
// device that is still open.

#include <bitset>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <string_view>
#include <sys/select.h>
#include <unistd.h>

namespace {

/// Returns true in the programs whose calls can fail.
bool isTested() {
  const std::string_view name = ::program_invocation_short_name;
  return name == "zvkconfig" || name == "zvkwifi";
}

struct Plan {
  std::string_view call;
  long first = 0;
  bool lasting = false;
  int error = 0;
};

Plan planOfEnvironment() {
  const char* const text = std::getenv("ZVK_FAULT");
  if (text == nullptr || !isTested()) {
    return {};
  }
  const char* const space = std::strchr(text, ' ');
  if (space == nullptr) {
    return {};
  }
  Plan plan;
  plan.call = std::string_view(text, static_cast<std::size_t>(space - text));
  char* end = nullptr;
  plan.first = std::strtol(space, &end, 10);
  plan.lasting = *end == '+';
  plan.error = std::atoi(plan.lasting ? end + 1 : end);  // NOLINT(cert-err34-c): set by the test
  return plan;
}

/// Counts a call. Returns true and sets errno if the call must fail.
bool fails(std::string_view call) {
  static const Plan plan = planOfEnvironment();
  static long count = 0;
  if (call != plan.call) {
    return false;
  }
  ++count;
  if (count < plan.first || (count > plan.first && !plan.lasting)) {
    return false;
  }
  errno = plan.error;
  return true;
}

/// The descriptors of the open files on which the library counts calls, and the descriptors of open
/// devices. Neither set contains a standard descriptor, or a descriptor of `Limit` or more.
struct OpenFiles {
  static constexpr int Limit = 1024;

  std::bitset<Limit> counted;
  std::bitset<Limit> devices;

  ~OpenFiles() {
    if (isTested() && devices.any()) {
      ::dprintf(STDERR_FILENO, "A device is still open.\n");
    }
  }

  static bool holds(int descriptor) { return descriptor > STDERR_FILENO && descriptor < Limit; }

  bool counts(int descriptor) const {
    return holds(descriptor) && counted.test(static_cast<std::size_t>(descriptor));
  }

  void add(int descriptor, std::string_view path) {
    if (holds(descriptor)) {
      counted.set(static_cast<std::size_t>(descriptor), !path.starts_with("/sys/"));
      devices.set(static_cast<std::size_t>(descriptor), path.starts_with("/dev/usb/"));
    }
  }

  void remove(int descriptor) {
    if (holds(descriptor)) {
      counted.reset(static_cast<std::size_t>(descriptor));
      devices.reset(static_cast<std::size_t>(descriptor));
    }
  }
};

OpenFiles openFiles;

/// Returns the C library's function `name`, which a function in this file replaces.
template <typename Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
  mode_t mode = 0;
  if ((flags & (O_CREAT | O_TMPFILE)) != 0) {
    std::va_list arguments;
    va_start(arguments, flags);
    mode = va_arg(arguments, mode_t);
    va_end(arguments);
  }
  if (!std::string_view(path).starts_with("/sys/") && fails("open")) {
    return -1;
  }
  const int descriptor = next<int(const char*, int, ...)>("open")(path, flags, mode);
  openFiles.add(descriptor, path);
  return descriptor;
}

int close(int descriptor) {
  const bool counts = openFiles.counts(descriptor);
  openFiles.remove(descriptor);
  const int result = next<int(int)>("close")(descriptor);
  return counts && fails("close") ? -1 : result;
}

ssize_t read(int descriptor, void* buffer, std::size_t size) {
  if (openFiles.counts(descriptor) && fails("read")) {
    return -1;
  }
  return next<ssize_t(int, void*, std::size_t)>("read")(descriptor, buffer, size);
}

ssize_t write(int descriptor, const void* buffer, std::size_t size) {
  if (openFiles.counts(descriptor) && fails("write")) {
    return -1;
  }
  return next<ssize_t(int, const void*, std::size_t)>("write")(descriptor, buffer, size);
}

int select(int count, fd_set* reading, fd_set* writing, fd_set* failing, timeval* limit) {
  if (fails("select")) {
    return -1;
  }
  return next<int(int, fd_set*, fd_set*, fd_set*, timeval*)>("select")(count, reading, writing,
                                                                       failing, limit);
}

}  // extern "C"
