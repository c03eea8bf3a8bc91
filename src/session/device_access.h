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

/// Why a printer cannot be opened, with what the user needs to know in order to change that.
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
  std::string owner;            ///< name of its owner, or the number; empty if there is no file
  std::string group;            ///< name of its group, or the number; empty if there is no file
  bool groupMayUse = false;     ///< true if members of the group may read and write it
  std::optional<Process> user;  ///< the user of a busy device, if /proc shows one
};

/// Returns the kind of failure for the errno of opening a device file.
[[nodiscard]] OpenFailure::Kind kindOfError(int error);

/// Opens a device file for reading and writing, without waiting. On failure returns no descriptor,
/// and errno says why.
[[nodiscard]] util::UniqueFd openDevice(const std::string& node);

/// Returns false if there is no device file of this name. After any other error, such as a missing
/// permission, returns true. Does not open the device.
[[nodiscard]] bool deviceExists(const std::string& node);

/// Opens the printer for a moment and discards the bytes that an earlier request left in it.
/// Returns nothing if that worked, otherwise the reason. Afterwards the device is closed.
[[nodiscard]] std::optional<OpenFailure> tryOpen(const Printer& printer,
                                                 const Machine& machine = {});

/// Returns the process, other than this one, that has the file `node` open, or nothing if /proc
/// shows none. The processes of other users are hidden from users without privileges.
[[nodiscard]] std::optional<Process> findUser(const std::string& node, const Machine& machine = {});

}  // namespace session
