// zvkwifi list

#include "session/discovery.h"
#include "wifi/commands.h"
#include "wifi/console.h"
#include "wifi/json_report.h"
#include "wifi/results.h"
#include "wifi/text_report.h"
#include "wifi/translation.h"

namespace wifi {

int listCommand(const Arguments& arguments) {
  const std::vector<session::Printer> printers = session::findPrinters();
  if (arguments.json) {
    std::vector<JsonEntry> entries;
    for (const session::Printer& printer : printers) {
      entries.push_back(listEntry(printer));
    }
    print(documentText(entries));
  } else if (printers.empty()) {
    print(tr("There is no USB printer on this machine.\n"));
  } else {
    print(listText(printers));
  }
  return StatusDone;
}

}  // namespace wifi
