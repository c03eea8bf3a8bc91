#pragma once

#include <unistd.h>
#include <utility>

namespace emulator {

/// Owns a file descriptor; -1 is none.
class UniqueFd {
 public:
  UniqueFd() = default;
  explicit UniqueFd(int fd) : m_Fd(fd) {}
  UniqueFd(UniqueFd&& other) noexcept : m_Fd(std::exchange(other.m_Fd, -1)) {}
  UniqueFd& operator=(UniqueFd&& other) noexcept {
    if (this != &other) {
      reset();
      m_Fd = std::exchange(other.m_Fd, -1);
    }
    return *this;
  }
  UniqueFd(const UniqueFd&) = delete;
  UniqueFd& operator=(const UniqueFd&) = delete;
  ~UniqueFd() { reset(); }

  int get() const { return m_Fd; }
  explicit operator bool() const { return m_Fd >= 0; }

  void reset() {
    if (m_Fd >= 0) {
      ::close(std::exchange(m_Fd, -1));
    }
  }

 private:
  int m_Fd = -1;
};

}  // namespace emulator
