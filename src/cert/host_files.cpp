// CertMgr's reading and writing of the host's files.

#include <cerrno>
#include <cstddef>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "cert/cert_mgr.h"
#include "util/c_text.h"
#include "util/debug_line.h"
#include "util/patience.h"
#include "util/unique_fd.h"

namespace {

constexpr int Failed = -1;
// Without waiting for the other end of a named pipe.
constexpr int OpenFlags = O_CLOEXEC | O_NONBLOCK;
constexpr mode_t NewFileMode = 0644;
/// For how long a file may answer "try again" without a byte.
constexpr std::time_t TryAgainLimitSeconds = 5;

/// How far reading or writing a file came.
struct Transfer {
  /// The diagnostic lines name trouble by its number.
  enum Trouble {
    None = 0,    ///< all was transferred, or the file gives or takes no more
    Later = 1,   ///< an error while the rest was transferred
    AtOnce = 2,  ///< the first try came short with "try again"
  };

  std::size_t done = 0;
  Trouble trouble = None;
  int error = 0;
};

/// Transfers `size` bytes. `step(done)` transfers what it can of those behind the first `done` and
/// returns what `read` and `write` return.
///
/// "Try again" ends the first try when that comes short, and only that: on the rest it is waited
/// for. An error on the first try is met again on the rest.
template <typename Step>
Transfer transferAll(std::size_t size, Step step) {
  Transfer result;
  const auto take = [&] {
    errno = 0;
    const ssize_t count = step(result.done);
    result.error = errno;
    result.done += count > 0 ? static_cast<std::size_t>(count) : 0;
    return count;
  };
  take();
  if (result.done < size && result.error == EAGAIN) {
    result.trouble = Transfer::AtOnce;
    return result;
  }
  util::Patience tryAgain(TryAgainLimitSeconds);
  while (result.done < size && !tryAgain.isOver()) {
    const ssize_t count = take();
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
  const auto size = static_cast<std::size_t>(status.st_size);
  util::debugLine("Loading file %s, %lld bytes", file.c_str(),
                  static_cast<long long>(status.st_size));
  if (size > bufSize) {
    // Left open on purpose; the run ends soon.
    descriptor.release();
    return Failed;
  }
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
