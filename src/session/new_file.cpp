#include "session/new_file.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "session/profile.h"
#include "session/translatable.h"

namespace session {

namespace {

/// Everybody may read the file: it holds no secret.
constexpr mode_t Mode = 0644;

/// Renames a file. Returns false and sets errno on failure, also if a file with the new name
/// exists.
bool renameToNew(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
    return true;
  }
  // Some file systems do not support RENAME_NOREPLACE. There the file gets the new name as a second
  // name, and the destructor of `NewFile` removes the temporary name.
  return (errno == EINVAL || errno == ENOSYS) && ::link(from.c_str(), to.c_str()) == 0;
}

}  // namespace

NewFile::NewFile(std::string path, const std::string& subject)
    : m_Path(std::move(path)), m_TemporaryPath(m_Path + ".XXXXXX") {
  struct stat status = {};
  if (::lstat(m_Path.c_str(), &status) == 0) {
    throw ProfileError(subject, m_Path, translatable("a file that does not exist yet"));
  }
  m_File = util::UniqueFd(::mkostemp(m_TemporaryPath.data(), O_CLOEXEC));
  if (!m_File) {
    throw ProfileError::ofLastCall(subject, translatable("a file that can be created"));
  }
}

NewFile::~NewFile() {
  ::unlink(m_TemporaryPath.c_str());
}

bool NewFile::isEmpty() const {
  struct stat status = {};
  return ::fstat(m_File.get(), &status) != 0 || status.st_size == 0;
}

void NewFile::publish() {
  if (::fchmod(m_File.get(), Mode) != 0 || ::fsync(m_File.get()) != 0 ||
      !renameToNew(m_TemporaryPath, m_Path)) {
    throw std::system_error(errno, std::generic_category(), m_Path);
  }
}

}  // namespace session
