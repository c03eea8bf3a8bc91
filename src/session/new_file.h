#pragma once

#include <stdexcept>
#include <string>

#include "util/unique_fd.h"

namespace session {

/// Thrown if a file of the user cannot be written. `what()` is the path of the file.
struct FileError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A file that appears under its name only when it is complete, and never replaces another file.
///
///     NewFile file("request.pem");  // a temporary file in the same folder
///     ... write to file.temporaryPath() ...
///     file.publish();
class NewFile {
 public:
  /// Creates the temporary file. Throws `ProfileError` if there already is a file at `path`, or if
  /// the temporary file cannot be created. `subject` names the option in errors.
  NewFile(std::string path, const std::string& subject);
  /// Removes the temporary file.
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  [[nodiscard]] const std::string& path() const { return m_Path; }
  [[nodiscard]] const std::string& temporaryPath() const { return m_TemporaryPath; }

  /// Returns true if nothing was written.
  [[nodiscard]] bool isEmpty() const;

  /// Gives the file its name. Throws `std::system_error` if the file cannot be stored, or if there
  /// is another file of that name by now.
  void publish();

 private:
  std::string m_Path;
  std::string m_TemporaryPath;
  util::UniqueFd m_File;
};

}  // namespace session
