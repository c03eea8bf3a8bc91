// zvkwifi status

#include "wifi/commands.h"
#include "wifi/printer_command.h"
#include "wifi/text_report.h"

namespace wifi {

int statusCommand(const Arguments& arguments) {
  return runOnPrinters(arguments,
                       {.fields = Fields::Status,
                        .run = [](session::Session& session) { return session.status(); },
                        .text = statusText});
}

}  // namespace wifi
