// CertMgr's operations on files of the host.

#include <cerrno>
#include <cstddef>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

#include "cert/cert_mgr.h"
#include "util/c_text.h"
#include "util/deadline.h"
#include "util/debug_line.h"
#include "util/unique_fd.h"

namespace {

/// With O_NONBLOCK, opening a named pipe does not wait for a program at the other end.
constexpr int OpenFlags = O_CLOEXEC | O_NONBLOCK;
constexpr mode_t NewFileMode = 0644;
/// How many seconds consecutive reads or writes may fail with EAGAIN before the transfer ends.
constexpr std::time_t TryAgainLimitSeconds = 5;

/// The result of reading or writing a file in steps. A step is one call of `read` or `write`.
struct Transfer {
  /// The kind of error. The diagnostic lines print it as a number.
  enum Trouble {
    None = 0,    ///< no error; fewer bytes than wanted may have been transferred
    Later = 1,   ///< an error after the first step
    AtOnce = 2,  ///< the first step failed with EAGAIN
  };

  std::size_t done = 0;  ///< bytes transferred
  Trouble trouble = None;
  int error = 0;  ///< errno of the last step
};

/// Transfers `size` bytes. `step(done)` transfers some of the bytes that follow the first `done`
/// bytes, and returns the result of `read` or `write`.
///
/// If the first step fails with EAGAIN, the transfer ends. If a later step fails with EAGAIN, the
/// step is repeated until a byte is transferred, for at most 5 s. After any other error of the
/// first step a second step is tried. The second step usually fails with the same error and ends
/// the transfer.
template <typename Step>
Transfer transferAll(std::size_t size, Step step) {
  Transfer result;
  const auto runStep = [&] {
    errno = 0;
    const ssize_t count = step(result.done);
    result.error = errno;
    result.done += count > 0 ? static_cast<std::size_t>(count) : 0;
    return count;
  };
  runStep();
  if (result.done < size && result.error == EAGAIN) {
    result.trouble = Transfer::AtOnce;
    return result;
  }
  util::Deadline tryAgain(TryAgainLimitSeconds);
  while (result.done < size && !tryAgain.hasPassed()) {
    const ssize_t count = runStep();
    if (count > 0) {
      tryAgain.restart();
    } else if (count < 0 && result.error == EAGAIN) {
      tryAgain.pause();
    } else {
      result.trouble = count < 0 ? Transfer::Later : Transfer::None;
      break;
    }
  }
  return result;
}

}  // namespace

int CertMgr::loadFromFile(unsigned char* buf, unsigned int bufSize, const char* path) {
  const std::string file(util::textOf(path));
  util::UniqueFd descriptor(::open(file.c_str(), O_RDONLY | OpenFlags));
  struct stat status = {};
  if (!descriptor || ::fstat(descriptor.get(), &status) != 0) {
    return Failed;
  }
  util::debugLine("Loading file %s, %lld bytes", file.c_str(),
                  static_cast<long long>(status.st_size));
  // On 32-bit machines a file can be larger than a std::size_t.
  if (std::cmp_greater(status.st_size, bufSize)) {
    // The descriptor stays open on purpose. The program ends soon.
    descriptor.release();
    return Failed;
  }
  const auto size = static_cast<std::size_t>(status.st_size);
  const Transfer transfer = transferAll(
      size, [&](std::size_t done) { return ::read(descriptor.get(), buf + done, size - done); });
  if (transfer.trouble != Transfer::None) {
    util::debugLine("loadFromFile error (%d): %d, bytes=%zu, size=%zu",
                    static_cast<int>(transfer.trouble), transfer.error, transfer.done, size);
  }
  return transfer.done == size ? static_cast<int>(size) : Failed;
}

bool CertMgr::saveToFile(unsigned char* buf, unsigned int size, const char* path) {
  const std::string file(util::textOf(path));
  const util::UniqueFd descriptor(
      ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | OpenFlags, NewFileMode));
  if (!descriptor) {
    return false;
  }
  const Transfer transfer = transferAll(
      size, [&](std::size_t done) { return ::write(descriptor.get(), buf + done, size - done); });
  if (transfer.trouble != Transfer::None) {
    util::debugLine("saveToFile error (%d): %d, bytes=%zu\n", static_cast<int>(transfer.trouble),
                    transfer.error, transfer.done);
  }
  return transfer.done == size;
}
