#pragma once

#include <unistd.h>
#include <utility>

namespace util {

/// Owns a file descriptor, and closes it in the destructor. The value -1 means that there is no
/// descriptor.
///
///     const util::UniqueFd file(::open(path, O_RDONLY | O_CLOEXEC));
///     if (file) {
///       ::read(file.get(), buffer, size);
///     }
class UniqueFd {
 public:
  UniqueFd() = default;
  /// Takes over the ownership of `fd`, which may be -1.
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

  /// Returns the descriptor, which this object still owns, or -1 if there is none.
  int get() const { return m_Fd; }
  /// Returns true if there is a descriptor.
  explicit operator bool() const { return m_Fd >= 0; }

  /// Returns the open descriptor and gives up its ownership: the caller closes it.
  int release() { return std::exchange(m_Fd, -1); }

  /// Closes the descriptor if there is one.
  void reset() {
    if (m_Fd >= 0) {
      ::close(release());
    }
  }

 private:
  int m_Fd = -1;
};

}  // namespace util
