#pragma once

#include <fcntl.h>
#include <unistd.h>

namespace bench {

/// Redirects standard error to /dev/null during the object's lifetime.
class Silence {
 public:
  Silence() : m_Saved(::dup(STDERR_FILENO)) {
    const int null = ::open("/dev/null", O_WRONLY);
    ::dup2(null, STDERR_FILENO);
    ::close(null);
  }
  ~Silence() {
    ::dup2(m_Saved, STDERR_FILENO);
    ::close(m_Saved);
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

 private:
  int m_Saved;
};

}  // namespace bench
