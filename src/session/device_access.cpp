// Opens device files to see whether a printer can be used, and finds the process that uses a
// printer.

#include "session/device_access.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <grp.h>
#include <pwd.h>
#include <sys/select.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

#include "session/system_files.h"
#include "session/texts.h"
#include "session/usb_address.h"
#include "transport/lib_usb_connector.h"
#include "util/deadline.h"

namespace session {

namespace {

constexpr unsigned char PrinterClass = 7;
/// How long to wait for the rest of a reply that another program requested and did not read. Such a
/// reply arrives within milliseconds after reading begins.
constexpr unsigned int DrainMilliseconds = 100;
constexpr std::size_t DrainLimit = 0x10000;
/// The largest count of bytes that the kernel's printer driver returns from one read.
constexpr std::size_t PieceSize = 1024;
/// How long bytes are discarded if a printer keeps sending. The clock counts whole seconds, so the
/// real limit is 1 to 2 seconds.
constexpr std::time_t ChatterLimitSeconds = 2;

/// Waits until `file` is readable, at most for `limit`. Subtracts the wait from `limit`, as Linux's
/// `select` does.
bool isReadable(int file, timeval& limit) {
  // An `fd_set` has room for the descriptors 0 to FD_SETSIZE - 1. For a larger descriptor FD_SET
  // would write past the end of the set.
  if (file >= FD_SETSIZE) {
    return true;
  }
  fd_set set;
  FD_ZERO(&set);
  FD_SET(file, &set);
  return ::select(file + 1, &set, nullptr, nullptr, &limit) > 0;
}

/// Discards what a printer on usblp has sent. All waits together take at most 100 ms.
void drain(int file) {
  timeval limit{.tv_sec = 0, .tv_usec = DrainMilliseconds * 1000L};
  std::array<char, PieceSize> piece{};
  std::size_t drained = 0;
  while (drained < DrainLimit && isReadable(file, limit)) {
    const ssize_t count = ::read(file, piece.data(), std::min(piece.size(), DrainLimit - drained));
    if (count <= 0) {
      return;
    }
    drained += static_cast<std::size_t>(count);
  }
}

/// Discards what a printer on libusb has sent: each call of `isReadReady` moves one USB packet to
/// the connector's ring buffer. This buffer holds 64 KiB and is freed with the connector.
void drain(LibUsbConnector& connector) {
  const util::Deadline deadline(ChatterLimitSeconds);
  while (connector.isReadReady(DrainMilliseconds) == IO_READ_READY && !deadline.hasPassed()) {
  }
}

std::string userName(uid_t id) {
  const passwd* const entry = ::getpwuid(id);
  return entry == nullptr ? std::to_string(id) : entry->pw_name;
}

std::string groupName(gid_t id) {
  const group* const entry = ::getgrgid(id);
  return entry == nullptr ? std::to_string(id) : entry->gr_name;
}

OpenFailure failure(int error, const std::string& node, const Machine& machine) {
  OpenFailure result{};
  result.kind = kindOfError(error);
  result.error = error;
  result.node = node;
  struct stat status {};
  if (::stat(node.c_str(), &status) == 0) {
    constexpr mode_t groupBits = S_IRGRP | S_IWGRP;
    result.owner = userName(status.st_uid);
    result.group = groupName(status.st_gid);
    result.groupMayUse = (status.st_mode & groupBits) == groupBits;
  }
  if (result.kind == OpenFailure::Kind::Busy) {
    result.user = findUser(node, machine);
  }
  return result;
}

/// Returns the path without symbolic links, as /proc shows the files of a process.
std::string resolved(const std::string& path) {
  std::error_code error;
  const std::filesystem::path real = std::filesystem::canonical(path, error);
  return error ? path : real.string();
}

/// Returns true if a link in the folder `descriptors` leads to `path`.
bool hasOpen(const std::string& descriptors, const std::string& path) {
  return std::ranges::any_of(namesIn(descriptors), [&](const std::string& name) {
    std::error_code error;
    return std::filesystem::read_symlink(descriptors + "/" + name, error) == path;
  });
}

}  // namespace

util::UniqueFd openDevice(const std::string& node) {
  return util::UniqueFd(::open(node.c_str(), O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

bool deviceExists(const std::string& node) {
  // O_PATH does not reach the driver: the printer notices nothing, and the open succeeds even if
  // the device is busy.
  return util::UniqueFd(::open(node.c_str(), O_PATH | O_CLOEXEC)) ||
         kindOfError(errno) != OpenFailure::Kind::NoSuchPrinter;
}

OpenFailure::Kind kindOfError(int error) {
  switch (error) {
    case ENOENT:
    case ENODEV:
    case ENXIO:
      return OpenFailure::Kind::NoSuchPrinter;
    case EACCES:
    case EPERM:
      return OpenFailure::Kind::NoPermission;
    case EBUSY:
      return OpenFailure::Kind::Busy;
    default:
      return OpenFailure::Kind::Failed;
  }
}

std::optional<OpenFailure> tryOpen(const Printer& printer, const Machine& machine) {
  util::UniqueFd file = openDevice(printer.node);
  if (!file) {
    return failure(errno, printer.node, machine);
  }
  const auto address = UsbAddress::parse(printer.device);
  if (!address) {
    drain(file.get());
    return std::nullopt;
  }
  file.reset();
  LibUsbConnector connector(PrinterClass);
  if (connector.open(address->bus, address->device) != 0) {
    return failure(EBUSY, printer.node, machine);
  }
  drain(connector);
  return std::nullopt;
}

std::optional<Process> findUser(const std::string& node, const Machine& machine) {
  std::vector<pid_t> processes;
  for (const std::string& name : namesIn(machine.processes)) {
    if (const auto id = decimalNumber(name); id && *id != ::getpid()) {
      processes.push_back(*id);
    }
  }
  std::ranges::sort(processes);
  const std::string path = resolved(node);
  for (const pid_t id : processes) {
    const std::string folder = machine.processes + "/" + std::to_string(id);
    if (!hasOpen(folder + "/fd", path)) {
      continue;
    }
    // A process that has no name any more has ended.
    if (const auto name = readText(folder + "/comm")) {
      return Process{id, printableText(*name).value_or("")};
    }
  }
  return std::nullopt;
}

}  // namespace session
