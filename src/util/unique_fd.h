#pragma once

#include <unistd.h>
#include <utility>

namespace util {

/// Owns a file descriptor; -1 is none.
class UniqueFd {
 public:
  UniqueFd() = default;
  explicit UniqueFd(int fd) : m_Fd(fd) {}
  UniqueFd(UniqueFd&& other) noexcept : m_Fd(other.release()) {}
  UniqueFd& operator=(UniqueFd&& other) noexcept {
    if (this != &other) {
      reset();
      m_Fd = other.release();
    }
    return *this;
  }
  UniqueFd(const UniqueFd&) = delete;
  UniqueFd& operator=(const UniqueFd&) = delete;
  ~UniqueFd() { reset(); }

  int get() const { return m_Fd; }
  explicit operator bool() const { return m_Fd >= 0; }

  /// Gives the descriptor away, open.
  int release() { return std::exchange(m_Fd, -1); }

  void reset() {
    if (m_Fd >= 0) {
      ::close(release());
    }
  }

 private:
  int m_Fd = -1;
};

}  // namespace util
