#pragma once

#include <optional>
#include <string>
#include <sys/types.h>

#include "session/machine.h"
#include "session/printer.h"
#include "util/unique_fd.h"

namespace session {

/// A process that uses a device.
struct Process {
  pid_t pid;
  std::string name;  ///< from /proc/PID/comm
};

/// Why a printer cannot be opened, and the data that helps the user to solve the problem.
struct OpenFailure {
  enum class Kind {
    NoSuchPrinter,  ///< there is no such device file, or nothing is plugged in
    NoPermission,   ///< this user may not open the device file
    Busy,           ///< another process uses the device
    Failed,         ///< any other error
  };

  Kind kind;
  int error;                    ///< errno
  std::string node;             ///< the device file
  std::string owner;            ///< name or number of the file's owner; empty if there is no file
  std::string group;            ///< name or number of the file's group; empty if there is no file
  bool groupMayUse = false;     ///< true if members of the group may read and write the file
  std::optional<Process> user;  ///< the process that uses a busy device, if /proc shows one
};

/// Returns the kind of failure for the errno of opening a device file.
[[nodiscard]] OpenFailure::Kind kindOfError(int error);

/// Opens a device file for reading and writing, without waiting. On failure returns no descriptor,
/// and errno says why.
[[nodiscard]] util::UniqueFd openDevice(const std::string& node);

/// Returns false if there is no device file `node`. Otherwise returns true, also after an error
/// such as a missing permission. Does not open the device.
[[nodiscard]] bool deviceExists(const std::string& node);

/// Opens the printer for a moment and discards the bytes that an earlier request left in it.
/// Returns nothing on success, otherwise the reason of the failure. Closes the device in both
/// cases.
[[nodiscard]] std::optional<OpenFailure> tryOpen(const Printer& printer,
                                                 const Machine& machine = {});

/// Returns another process that has the file `node` open, or nothing if /proc shows none. If there
/// are several, returns the one with the lowest process ID. The processes of other users are hidden
/// from users without privileges.
[[nodiscard]] std::optional<Process> findUser(const std::string& node, const Machine& machine = {});

}  // namespace session
