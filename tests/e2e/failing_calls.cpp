// A library that an end-to-end test preloads into its programs. It makes calls of zvkconfig fail.
// The environment variable ZVK_FAULT selects the calls: with "write 2 5" the second write fails
// with errno 5, with "write 2+ 5" all later writes fail too. Calls on the three standard
// descriptors are not counted.

#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <string_view>
#include <sys/select.h>
#include <unistd.h>

namespace {

struct Plan {
  std::string_view call;
  long first = 0;
  bool lasting = false;
  int error = 0;
};

Plan planOfEnvironment() {
  const char* const text = std::getenv("ZVK_FAULT");
  if (text == nullptr || std::strcmp(::program_invocation_short_name, "zvkconfig") != 0) {
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

/// Returns the C library's function `name`. The function of that name in this file replaces it.
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
  return fails("open") ? -1 : next<int(const char*, int, ...)>("open")(path, flags, mode);
}

int close(int descriptor) {
  const int result = next<int(int)>("close")(descriptor);
  return descriptor > STDERR_FILENO && fails("close") ? -1 : result;
}

ssize_t read(int descriptor, void* buffer, std::size_t size) {
  if (descriptor > STDERR_FILENO && fails("read")) {
    return -1;
  }
  return next<ssize_t(int, void*, std::size_t)>("read")(descriptor, buffer, size);
}

ssize_t write(int descriptor, const void* buffer, std::size_t size) {
  if (descriptor > STDERR_FILENO && fails("write")) {
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
