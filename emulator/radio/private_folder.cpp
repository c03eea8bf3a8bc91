// A temporary folder for files with keys and passwords.

#include "emulator/radio/private_folder.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "util/unique_fd.h"

namespace emulator {

namespace {

[[noreturn]] void fail(const std::string& path) {
  throw std::system_error(errno, std::generic_category(), path);
}

}  // namespace

PrivateFolder::PrivateFolder()
    : m_Path((std::filesystem::temp_directory_path() / "zvkprinter-XXXXXX").string()) {
  // mkdtemp creates the folder with mode 0700.
  if (::mkdtemp(m_Path.data()) == nullptr) {
    fail(m_Path);
  }
}

PrivateFolder::~PrivateFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(m_Path, ignored);
}

std::string PrivateFolder::path(std::string_view name) const {
  return std::string(m_Path).append("/").append(name);
}

void PrivateFolder::write(std::string_view name, std::string_view content) const {
  remove(name);
  const std::string file = path(name);
  const util::UniqueFd descriptor(
      ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (!descriptor) {
    fail(file);
  }
  while (!content.empty()) {
    const ssize_t count = ::write(descriptor.get(), content.data(), content.size());
    if (count < 0 && errno != EINTR) {
      fail(file);
    }
    content.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
  }
}

void PrivateFolder::remove(std::string_view name) const {
  std::error_code ignored;
  std::filesystem::remove(path(name), ignored);
}

}  // namespace emulator
