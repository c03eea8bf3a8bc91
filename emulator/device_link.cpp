#include "emulator/device_link.h"

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace emulator {

namespace {

namespace fs = std::filesystem;

constexpr const char* PrinterFolder = "/dev/usb";
constexpr int LargestNumber = 16;

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

FreeDeviceLink::FreeDeviceLink(const std::string& target)
    : m_MadeFolder(fs::create_directory(PrinterFolder)) {
  for (int number = LargestNumber;; --number) {
    try {
      m_Link.emplace(PrinterFolder + std::string("/lp") + std::to_string(number), target);
      return;
    } catch (const std::system_error& error) {
      if (error.code() != std::errc::file_exists || number == 0) {
        if (m_MadeFolder) {
          ::rmdir(PrinterFolder);
        }
        throw;
      }
    }
  }
}

FreeDeviceLink::~FreeDeviceLink() {
  m_Link.reset();
  if (m_MadeFolder) {
    ::rmdir(PrinterFolder);
  }
}

}  // namespace emulator
