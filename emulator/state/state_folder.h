#pragma once

#include <string>

#include "emulator/state/state_files.h"
#include "util/unique_fd.h"

namespace emulator {

/// A folder that keeps a printer's state from one run to the next.
///
///     StateFolder folder("/var/lib/printer", StateFolder::Use::Keep);
///     PrinterState state = folder.load();
///     folder.save(settings, certificates);
///
/// All operations throw `std::system_error` if the folder does not exist or cannot be used. They
/// throw `StateError` if another printer has locked the folder, or if the files in the folder are
/// not a valid state.
class StateFolder {
 public:
  enum class Use {
    Look,  ///< only reading; allowed even while another printer uses the folder
    Keep,  ///< reading and writing; locks the folder, because only one printer may write to it
  };

  /// Opens the folder, and locks it for `Keep`.
  StateFolder(std::string path, Use use);

  /// Returns the saved state, or an empty state if none has been saved.
  PrinterState load();

  /// Replaces the saved state. Each file is written under a temporary name and then renamed. The
  /// index is written after the files that it names, so an interruption leaves the old or the new
  /// state. Only the owner can read the files.
  void save(const SettingsStore::Values& settings, const CertificateStore& certificates);

 private:
  std::string filePath(const std::string& name) const { return m_Path + "/" + name; }
  /// Returns the content of a file. Throws `StateError` or `std::system_error` unless the file can
  /// be read and is a regular file of at most 64 MiB.
  std::string readFile(const std::string& name) const;
  /// Replaces a file in one step. On failure throws `std::system_error` and leaves the old file
  /// unchanged.
  void writeFile(const std::string& name, const std::string& content) const;

  std::string m_Path;
  util::UniqueFd m_Folder;  ///< holds the lock
  StateFiles m_Kept;        ///< the files as last loaded or saved
};

}  // namespace emulator
