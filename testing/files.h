#pragma once

#include <string>
#include <string_view>

namespace support {

/// A folder of the test's own, removed with all that is in it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string path(std::string_view name) const { return m_Path + "/" + std::string(name); }

  /// Writes a file into the folder and returns its path.
  std::string write(std::string_view name, std::string_view content) const;

 private:
  std::string m_Path;
};

/// The whole content of a file; empty when there is none.
std::string fileContent(const std::string& path);

}  // namespace support
