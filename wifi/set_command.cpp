// zvkwifi set

#include <algorithm>
#include <vector>

#include "catalogue/packet_text.h"
#include "util/format.h"
#include "wifi/commands.h"
#include "wifi/console.h"
#include "wifi/printer_command.h"
#include "wifi/profile_arguments.h"
#include "wifi/results.h"
#include "wifi/translation.h"
#include "wireless/wnpa_generator.h"

namespace wifi {

namespace {

/// Prints the packets that would be sent. With --json it prints a document instead, which does not
/// contain the packets. The function opens no device. So it cannot read from the printer whether
/// the printer has certificates with which it can validate the server.
int printPackets(const Arguments& arguments, const session::Profile& profile) {
  if (arguments.json) {
    // The document has one entry for each printer that the command line names. If the command line
    // names none, the document has one entry, whose name is empty.
    // The function does not look up the printers, because discovery would open the device files.
    std::vector<std::string> names = arguments.printers;
    names.resize(std::max<std::size_t>(names.size(), 1));
    std::vector<JsonEntry> entries;
    for (const std::string& name : names) {
      session::Report report;
      report.printer.device = name;
      report.result = session::Result::DryRun;
      entries.push_back(reportEntry(report, Fields::Set, 0.0, std::nullopt));
    }
    if (arguments.jsonLines) {
      for (const JsonEntry& entry : entries) {
        print(documentText({entry}));
      }
    } else {
      print(documentText(entries));
    }
    return StatusDone;
  }
  const auto settings = session::configurationOf(profile, "");
  wnpaGenerator generator(settings.get());
  generator.setServerValidation(false);
  std::string text;
  for (const npa::Bytes& packet : generator.advancedPackets()) {
    const catalogue::PacketText described = catalogue::packetText(packet);
    text.append(described.meaning).append("\n  ").append(described.hex).append("\n");
  }
  if (profile.security == session::Security::Enterprise) {
    text.append(
        tr("The flag that validates the server's certificate depends on the certificates in the "
           "printer.\n"));
  }
  print(text);
  return StatusDone;
}

}  // namespace

int setCommand(const Arguments& arguments) {
  const std::unique_ptr<session::Profile> profile = readProfile(arguments);
  if (arguments.dryRun) {
    return printPackets(arguments, *profile);
  }
  return storeProfile(arguments, *profile);
}

}  // namespace wifi
