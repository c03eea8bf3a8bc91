// zvkwifi reset

#include "util/format.h"
#include "wifi/commands.h"
#include "wifi/explanation.h"
#include "wifi/printer_command.h"
#include "wifi/translation.h"

namespace wifi {

int resetCommand(const Arguments& arguments) {
  return runOnPrinters(arguments, {.fields = Fields::ResultOnly,
                                   .run = [](session::Session& session) { return session.reset(); },
                                   .text =
                                       [](const session::Report& report) {
                                         return util::formatted(
                                             tr("The adapter of %s was reset.\n"),
                                             printerText(report.printer).c_str());
                                       }});
}

}  // namespace wifi
