#pragma once

#include <string>

#include "emulator/state/state_files.h"
#include "util/unique_fd.h"

namespace emulator {

/// A folder that keeps a printer's state from run to run. All operations throw `StateError` or
/// `std::system_error` when the folder is not there, cannot be used or holds something else.
class StateFolder {
 public:
  enum class Use {
    Look,  ///< reading what is there, even while another printer uses it
    Keep,  ///< writing as well: one printer at a time
  };

  StateFolder(std::string path, Use use);

  /// The state; an empty one where none has been kept yet.
  PrinterState load();

  /// Keeps a state in place of the last one. Each file is written under another name and then
  /// renamed, the index behind those that it speaks of, so that an interruption leaves one of the
  /// two states. Only the owner can read the files.
  void save(const SettingsStore::Values& settings, const CertificateStore& certificates);

 private:
  std::string filePath(const std::string& name) const { return m_Path + "/" + name; }
  std::string readFile(const std::string& name) const;
  void writeFile(const std::string& name, const std::string& content) const;

  std::string m_Path;
  util::UniqueFd m_Folder;
  StateFiles m_Kept;
};

}  // namespace emulator
