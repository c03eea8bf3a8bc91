#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "session/machine.h"
#include "session/printer.h"

namespace session {

/// Whether discovery opens the device file of each printer for a moment. While a printer on usblp
/// is open, no other process can open it.
enum class StateTest { Open, None };

/// Returns the USB printers of this machine, ordered by bus and device number. A printer is a
/// device with an interface of the printer class (7). It is reached through usblp if usblp has
/// bound the interface, otherwise through libusb. If another driver or process has claimed the
/// interface, the state is `Busy`. Otherwise the function opens the device file for a moment to
/// find out the state, or returns the state `Ready` if `test` is `None`.
[[nodiscard]] std::vector<Printer> findPrinters(const Machine& machine = {},
                                                StateTest test = StateTest::Open);

/// The printer that the user means, or the reason why no printer was chosen.
struct Choice {
  enum class Problem {
    None,
    NoPrinters,  ///< the given text is empty, and the machine has no printer
    NoMatch,     ///< no printer fits the given text
    Several,     ///< the given text fits several printers, or it is empty and there are several
  };

  Problem problem = Problem::None;
  Printer printer;                  ///< valid if there is no problem
  std::vector<Printer> candidates;  ///< the printers to choose from if there is a problem
};

/// Finds the printer that `wanted` names: the path of a device file, an address "BUS:DEVICE", a
/// serial number, or a part of make and model in upper or lower case. The text must fit only one
/// printer. An empty text means the only printer of the machine. If discovery does not find a path
/// "/dev/usb/lpN", the result is a printer that has only this path. Any other unknown path is no
/// match.
[[nodiscard]] Choice choosePrinter(std::string_view wanted, const Machine& machine = {});

/// Returns true if another printer of this machine has the same serial number.
[[nodiscard]] bool hasTwin(const Printer& printer, const Machine& machine = {});

/// Finds a printer again after it was gone from the bus. Its address may have changed, so its
/// serial number identifies it. If several printers have this number, the order is: the printer
/// with the same address, the printer at the same port, any other. If `hadTwin` is true, the
/// function takes no other: another printer had the same number before, so the printer must have
/// kept its address or its port. A printer without a serial number is looked for at its port, and
/// one that is known only by its path at its device. Returns nothing while the printer is gone.
/// Does not test the state, because another process may be about to open another printer.
[[nodiscard]] std::optional<Printer> findAgain(const Printer& printer, bool hadTwin,
                                               const Machine& machine = {});

}  // namespace session
