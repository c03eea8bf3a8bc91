#pragma once

#include <string>
#include <string_view>

namespace support {

/// A temporary folder for one test. The destructor removes it with its content.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  /// Returns the path of a file in the folder. The file need not exist.
  std::string path(std::string_view name) const { return m_Path + "/" + std::string(name); }

  /// Writes a file into the folder and returns its path.
  std::string write(std::string_view name, std::string_view content) const;

 private:
  std::string m_Path;
};

/// Returns the content of a file, or an empty text if it cannot be read.
std::string fileContent(const std::string& path);

}  // namespace support
