#include "testing/sysfs_tree.h"

#include <filesystem>
#include <fstream>

namespace support {

namespace {

void writeFile(const std::string& path, std::string_view content) {
  std::ofstream(path, std::ios::binary) << content;
}

}  // namespace

SysfsTree::SysfsTree()
    : m_Machine{m_Folder.path("sys"), m_Folder.path("dev"), m_Folder.path("proc")} {
  std::filesystem::create_directories(m_Machine.sysfs + "/bus/usb/devices");
}

std::string SysfsTree::folder(std::string_view name) const {
  const std::string device = m_Machine.sysfs + "/devices/usb1/";
  const std::size_t colon = name.find(':');
  return device + (colon == std::string_view::npos
                       ? std::string(name)
                       : std::string(name.substr(0, colon)) + "/" + std::string(name));
}

void SysfsTree::link(std::string_view name) const {
  std::filesystem::create_directories(folder(name));
  std::filesystem::create_directory_symlink(
      folder(name), m_Machine.sysfs + "/bus/usb/devices/" + std::string(name));
}

std::string SysfsTree::file(std::string_view name, std::string_view attribute) const {
  return folder(name) + "/" + std::string(attribute);
}

void SysfsTree::write(std::string_view name, std::string_view attribute,
                      std::string_view content) const {
  writeFile(file(name, attribute), content);
}

void SysfsTree::remove(std::string_view name) const {
  std::filesystem::remove_all(folder(name));
}

void SysfsTree::addDevice(std::string_view name, const Device& device) const {
  link(name);
  const auto add = [&](const char* attribute, const std::optional<std::string>& text) {
    if (text) {
      write(name, attribute, *text + "\n");
    }
  };
  add("busnum", device.bus);
  add("devnum", device.number);
  add("serial", device.serial);
  add("manufacturer", device.manufacturer);
  add("product", device.product);
}

void SysfsTree::addInterface(std::string_view name, const Interface& interface) const {
  link(name);
  if (interface.interfaceClass) {
    write(name, "bInterfaceClass", *interface.interfaceClass + "\n");
  }
  if (!interface.driver.empty()) {
    const std::string driver = m_Machine.sysfs + "/bus/usb/drivers/" + interface.driver;
    std::filesystem::create_directories(driver);
    std::filesystem::create_directory_symlink(driver, file(name, "driver"));
  }
  if (!interface.usblp.empty()) {
    std::filesystem::create_directories(file(name, interface.usblp));
  }
  if (interface.deviceId) {
    write(name, "ieee1284_id", *interface.deviceId);
  }
}

void SysfsTree::addUsblpPrinter(int n, const std::string& serial,
                                const std::string& deviceId) const {
  const std::string number = std::to_string(n);
  addDevice("1-" + number, {.bus = "1", .number = number, .serial = serial});
  addInterface("1-" + number + ":1.0",
               {.driver = "usblp", .usblp = "usbmisc/lp" + number, .deviceId = deviceId});
}

std::string SysfsTree::node(std::string_view name) const {
  return m_Machine.devices + "/" + std::string(name);
}

std::string SysfsTree::addNode(std::string_view name) const {
  const std::filesystem::path path = node(name);
  std::filesystem::create_directories(path.parent_path());
  writeFile(path, "");
  return path;
}

void SysfsTree::addProcess(std::string_view id, const std::optional<std::string>& name,
                           const std::string& file) const {
  const std::string process = m_Machine.processes + "/" + std::string(id);
  std::filesystem::create_directories(process + "/fd");
  std::filesystem::create_symlink("/dev/null", process + "/fd/0");
  std::filesystem::create_symlink(file, process + "/fd/3");
  if (name) {
    writeFile(process + "/comm", *name + "\n");
  }
}

}  // namespace support
