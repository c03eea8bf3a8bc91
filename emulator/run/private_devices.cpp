// Namespaces and mounts that show a process the emulated printer as its only printer.

#include "emulator/run/private_devices.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "emulator/usb/printer_folder.h"
#include "util/unique_fd.h"

namespace emulator {

namespace {

namespace fs = std::filesystem;

constexpr mode_t FolderMode = 0755;
constexpr mode_t FileMode = 0600;

/// Throws `std::system_error` with the name of the step if `result` shows that a system call
/// failed.
void check(int result, const std::string& step) {
  if (result < 0) {
    throw std::system_error(errno, std::generic_category(), step);
  }
}

void writeFile(const char* path, const std::string& text) {
  std::ofstream file(path);
  file << text << std::flush;
  if (!file) {
    throw std::system_error(errno, std::generic_category(), path);
  }
}

/// Enters the namespaces. The user and the group stay the same inside.
void enterNamespaces() {
  const uid_t user = ::geteuid();
  const gid_t group = ::getegid();
  if (user == 0) {
    check(::unshare(CLONE_NEWNS), "unshare (mount namespace)");
    return;
  }
  check(::unshare(CLONE_NEWUSER | CLONE_NEWNS), "unshare (user and mount namespace)");
  writeFile("/proc/self/setgroups", "deny");
  writeFile("/proc/self/uid_map", std::to_string(user) + " " + std::to_string(user) + " 1\n");
  writeFile("/proc/self/gid_map", std::to_string(group) + " " + std::to_string(group) + " 1\n");
}

void mountTmpfs(const char* folder) {
  check(::mount("tmpfs", folder, "tmpfs", MS_NOSUID | MS_NOEXEC, "mode=755"),
        std::string("mount of a tmpfs on ") + folder);
}

void makeFile(const fs::path& path) {
  const util::UniqueFd file(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, FileMode));
  check(file.get(), path.string());
}

void bindMount(const fs::path& from, const fs::path& to) {
  check(::mount(from.c_str(), to.c_str(), nullptr, MS_BIND | MS_REC, nullptr),
        "bind of " + to.string());
}

/// Mounts a new folder over /dev, with a link to each entry of the old folder. An entry that is
/// added to the old /dev would be visible to all processes. The new folder has links and not mounts
/// of the single entries, because /dev/ptmx works only next to the folder "pts".
void coverDev() {
  // Copy the mount of /dev before the new folder covers it.
  const util::UniqueFd old(
      ::open_tree(AT_FDCWD, "/dev", OPEN_TREE_CLONE | OPEN_TREE_CLOEXEC | AT_RECURSIVE));
  check(old.get(), "copy of /dev");
  mountTmpfs("/dev");
  const fs::path all = "/dev/.all";
  check(::mkdir(all.c_str(), FolderMode), all);
  check(::move_mount(old.get(), "", AT_FDCWD, all.c_str(), MOVE_MOUNT_F_EMPTY_PATH), all);
  for (const fs::directory_entry& entry : fs::directory_iterator(all)) {
    const fs::path name = entry.path().filename();
    fs::create_symlink(all.filename() / name, "/dev" / name);
  }
}

}  // namespace

void enterPrivateDevices(const std::string& device) {
  enterNamespaces();
  check(::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr), "making mounts private");
  if (!fs::is_directory(PrinterFolder)) {
    coverDev();
    check(::mkdir(PrinterFolder, FolderMode), PrinterFolder);
  }
  mountTmpfs(PrinterFolder);
  makeFile(PrivateDevicePath);
  bindMount(device, PrivateDevicePath);
}

}  // namespace emulator
