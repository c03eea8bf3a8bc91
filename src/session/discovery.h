#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "session/machine.h"
#include "session/printer.h"

namespace session {

/// Returns the USB printers of this machine, ordered by bus and device number: each device with an
/// interface of the printer class (7). It is reached through usblp if usblp has bound it, otherwise
/// through libusb. The state is found by opening the device file for a moment.
[[nodiscard]] std::vector<Printer> findPrinters(const Machine& machine = {});

/// The printer that the user means, or the reason why there is none.
struct Choice {
  enum class Problem {
    None,
    NoPrinters,  ///< none was named, and the machine has none
    NoMatch,     ///< none is the named one
    Several,     ///< none was named and there are several, or the text fits several
  };

  Problem problem = Problem::None;
  Printer printer;                  ///< if there is no problem
  std::vector<Printer> candidates;  ///< the printers to choose from, otherwise
};

/// Finds the printer that `wanted` names: a path "/dev/usb/lpN", an address "BUS:DEVICE", a serial
/// number, or a part of make and model in any case that fits one printer. An empty text means the
/// only printer there is. A path "/dev/usb/lpN" needs no discovery: if discovery does not know it,
/// the printer has the path alone. Any other unknown path is no match.
[[nodiscard]] Choice choosePrinter(std::string_view wanted, const Machine& machine = {});

/// Finds a printer again after it was gone from the bus: by its serial number, which stays the same
/// while its address changes. Returns nothing while it is gone. A printer without a serial number
/// is looked for at its old device.
[[nodiscard]] std::optional<Printer> findAgain(const Printer& printer, const Machine& machine = {});

}  // namespace session
