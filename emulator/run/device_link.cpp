// Creates and removes links to the emulated device, and the folder /dev/usb.

#include "emulator/run/device_link.h"

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "emulator/usb/printer_folder.h"

namespace emulator {

namespace {

namespace fs = std::filesystem;

constexpr int LargestNumber = 16;
constexpr int LargestTries = 100;

/// Removes the folder if it is empty. The kernel creates this folder with its first device file,
/// and removes it with its last device file. So if the folder is empty, an emulated printer created
/// it.
void removeEmptyFolder() {
  ::rmdir(PrinterFolder);
}

}  // namespace

DeviceLink::DeviceLink(std::string path, std::string target)
    : m_Path(std::move(path)), m_Target(std::move(target)) {
  if (::symlink(m_Target.c_str(), m_Path.c_str()) != 0) {
    throw std::system_error(errno, std::generic_category(), m_Path);
  }
}

DeviceLink::~DeviceLink() {
  std::error_code error;
  if (fs::read_symlink(m_Path, error) == m_Target) {
    fs::remove(m_Path, error);
  }
}

FreeDeviceLink::FreeDeviceLink(const std::string& target) {
  int number = LargestNumber;
  int tries = LargestTries;
  while (!m_Link) {
    // Creates the folder in each attempt, because another emulated printer may have just removed
    // it.
    fs::create_directory(PrinterFolder);
    try {
      m_Link.emplace(PrinterFolder + std::string("/lp") + std::to_string(number), target);
    } catch (const std::system_error& error) {
      const bool isTaken = error.code() == std::errc::file_exists && number > 0;
      const bool isFolderGone = error.code() == std::errc::no_such_file_or_directory && --tries > 0;
      if (!isTaken && !isFolderGone) {
        removeEmptyFolder();
        throw;
      }
      number -= isTaken ? 1 : 0;
    }
  }
}

FreeDeviceLink::~FreeDeviceLink() {
  m_Link.reset();
  removeEmptyFolder();
}

}  // namespace emulator
