// Locks the folder of a state, and reads and writes the files in it. An interruption during a write
// does not damage the saved state.

#include "emulator/state/state_folder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace emulator {

namespace {

/// Returns the result of a system call. Throws `std::system_error` with the path if the call
/// failed.
int checked(int result, const std::string& path) {
  if (result < 0) {
    throw std::system_error(errno, std::generic_category(), path);
  }
  return result;
}

/// Writes all of the content. Throws `std::system_error` on failure.
void writeAll(int descriptor, std::string_view content, const std::string& path) {
  while (!content.empty()) {
    const ssize_t count = ::write(descriptor, content.data(), content.size());
    if (count < 0 && errno == EINTR) {
      continue;
    }
    checked(count < 0 ? -1 : 0, path);
    content.remove_prefix(static_cast<std::size_t>(count));
  }
}

}  // namespace

StateFolder::StateFolder(std::string path, Use use)
    : m_Path(std::move(path)),
      m_Folder(checked(::open(m_Path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), m_Path)) {
  if (use == Use::Keep) {
    checked(::access(m_Path.c_str(), W_OK | X_OK), m_Path);
    if (::flock(m_Folder.get(), LOCK_EX | LOCK_NB) < 0) {
      throw StateError(m_Path + ": another zvkprinter uses this folder");
    }
  }
}

PrinterState StateFolder::load() {
  try {
    const std::string index(StateIndexName);
    struct stat about {};
    if (::lstat(filePath(index).c_str(), &about) < 0 && errno == ENOENT) {
      return {};
    }
    PrinterState state =
        parseState(readFile(index), [this](const std::string& name) { return readFile(name); });
    m_Kept = stateFiles(state.settings, state.certificates);
    return state;
  } catch (const StateError& error) {
    throw StateError(m_Path + "/" + error.what());
  }
}

void StateFolder::save(const SettingsStore::Values& settings,
                       const CertificateStore& certificates) {
  StateFiles files = stateFiles(settings, certificates);
  const std::string indexName(StateIndexName);
  for (const auto& [name, content] : files) {
    const auto kept = m_Kept.find(name);
    if (name != indexName && (kept == m_Kept.end() || kept->second != content)) {
      writeFile(name, content);
    }
  }
  // Writes the index after the files that it names, and before the removal of the files that it no
  // longer names.
  writeFile(indexName, files[indexName]);
  for (const auto& [name, content] : m_Kept) {
    if (!files.contains(name)) {
      ::unlink(filePath(name).c_str());
    }
  }
  m_Kept = std::move(files);
}

std::string StateFolder::readFile(const std::string& name) const {
  // The limit keeps a wrong file from using up the memory. The files of a state are much smaller.
  constexpr off_t largest = 64L * 1024 * 1024;
  const std::string path = filePath(name);
  const util::UniqueFd file(
      checked(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC), path));
  struct stat about {};
  checked(::fstat(file.get(), &about), path);
  if (!S_ISREG(about.st_mode) || about.st_size > largest) {
    throw StateError(name + ": expected a regular file of at most 64 MiB");
  }
  std::string content;
  std::array<char, 4096> buffer{};
  while (const ssize_t count = ::read(file.get(), buffer.data(), buffer.size())) {
    checked(count < 0 ? -1 : 0, path);
    content.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return content;
}

void StateFolder::writeFile(const std::string& name, const std::string& content) const {
  const std::string path = filePath(name);
  std::string temporary = filePath("new-XXXXXX");
  // mkostemp creates the file with mode 0600.
  const util::UniqueFd file(checked(::mkostemp(temporary.data(), O_CLOEXEC), path));
  try {
    writeAll(file.get(), content, path);
    checked(::fsync(file.get()), path);
    checked(::rename(temporary.c_str(), path.c_str()), path);
  } catch (const std::system_error&) {
    ::unlink(temporary.c_str());
    throw;
  }
}

}  // namespace emulator
