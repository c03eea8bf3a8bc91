#include "testing/files.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

namespace support {

TemporaryFolder::TemporaryFolder()
    : m_Path((std::filesystem::temp_directory_path() / "zvk_test_XXXXXX").string()) {
  if (::mkdtemp(m_Path.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), m_Path);
  }
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(m_Path, ignored);
}

std::string TemporaryFolder::write(std::string_view name, std::string_view content) const {
  const std::string file = path(name);
  std::ofstream(file, std::ios::binary) << content;
  return file;
}

std::string fileContent(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace support
