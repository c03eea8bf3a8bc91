#pragma once

#include <string>
#include <string_view>

namespace emulator {

/// A folder that only its owner can enter (mode 0700). The destructor removes it with its files.
class PrivateFolder {
 public:
  /// Creates the folder in the folder that TMPDIR names, or in /tmp. Throws `std::system_error` on
  /// failure.
  PrivateFolder();
  ~PrivateFolder();
  PrivateFolder(const PrivateFolder&) = delete;
  PrivateFolder& operator=(const PrivateFolder&) = delete;

  const std::string& path() const { return m_Path; }
  /// Returns the path of a file in the folder.
  std::string path(std::string_view name) const;

  /// Writes a file of mode 0600. Replaces an existing file. Throws `std::system_error` on failure.
  void write(std::string_view name, std::string_view content) const;
  /// Removes a file if it exists.
  void remove(std::string_view name) const;

 private:
  std::string m_Path;
};

}  // namespace emulator
