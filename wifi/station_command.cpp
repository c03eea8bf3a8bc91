// zvkwifi station

#include <memory>
#include <system_error>

#include "wifi/commands.h"
#include "wifi/printer_command.h"
#include "wifi/profile_arguments.h"
#include "wifi/results.h"
#include "wifi/station.h"
#include "wifi/translation.h"
#include "wifi/usb_monitor.h"

namespace wifi {

namespace {

std::unique_ptr<UsbMonitor> openMonitor() {
  try {
    return openUsbMonitor();
  } catch (const std::system_error& error) {
    throw CommandError(StatusInternalError,
                       {error.what(), tr("Check that this system reports USB devices.")});
  }
}

}  // namespace

int stationCommand(const Arguments& arguments) {
  const std::unique_ptr<session::Profile> profile = readProfile(arguments);
  const std::unique_ptr<UsbMonitor> monitor = openMonitor();
  return runStation(arguments, setOf(arguments, *profile), *monitor);
}

}  // namespace wifi
