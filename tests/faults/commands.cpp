#include "faults/commands.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>
#include <stdexcept>

#include "cli/command_table.h"
#include "testing/certificates.h"

namespace faults {

namespace {

using Statuses = std::vector<int>;

/// The exit statuses of a configuration, and of the queries -s, -ip and -t.
const Statuses AcceptedOrNot = {0, 1, 255};
const Statuses DoneOrNot = {0, 1};
const Statuses Always = {0};

// Two attempts of a configuration: one wrapped, one bare.
constexpr LongestWait Configuration = {.pauses = 10, .writes = 2, .reads = 2};
// An exchange that collects a reply pauses 2 seconds and then reads until its deadline: 5 or 10
// seconds for a method call, 10 seconds for -npa, and 3 seconds for a query. The program checks the
// deadline only between packets, and reads each packet with three reads. So the last three reads
// may end after the deadline.
constexpr LongestWait TwoQueries = {.pauses = 10, .writes = 2, .reads = 6};
// Seven wrapped and seven bare attempts, each with a pause of 3 seconds. No query waits longer.
constexpr LongestWait LongestQuery = {.pauses = 42, .writes = 14, .reads = 14};
// The command makes five exchanges: for the two lists of certificates (each with a deadline of 5
// seconds), for the options, for the network and for the status. It makes them with wrapped packets
// and then again with bare packets.
constexpr LongestWait Authentication = {.pauses = 58, .writes = 10, .reads = 22};

}  // namespace

namespace {

/// Returns the commands whose arguments, waits or inputs are not in the table of switches.
std::vector<Command> listedCommands() {
  return {
      {{"Basic"}, {"-c", "--ssid=home", "--security=None", "{}"}, AcceptedOrNot, Configuration},
      {{"BasicFile"}, {"-c", "-file", "{options}", "{}"}, AcceptedOrNot, Configuration},
      {{"Prompt"},
       {"-c", "--ssid=home", "--security=WPA", "{}"},
       AcceptedOrNot,
       Configuration,
       "correct-horse\nonce more\n"},
      {{"Open"}, {"-ca", "--security=OPEN", "--ssid=home", "{}"}, AcceptedOrNot, Configuration},
      {{"OpenWep"},
       {"-ca", "--security=OPEN", "--encryption=WEP", "--WEP-key1=0123456789", "{}"},
       AcceptedOrNot,
       Configuration},
      {{"Shared"},
       {"-ca", "--security=SHARED", "--encryption=WEP", "--WEP-key1=0123456789", "{}"},
       AcceptedOrNot,
       Configuration},
      {{"WpaPersonal"},
       {"-ca", "--security=WPA-PER", "--psk=correct-horse", "--encryption=AES", "{}"},
       AcceptedOrNot,
       Configuration},
      {{"WpaEnterprise"},
       {"-ca", "--security=WPA-ENT", "--psk=correct-horse", "{}"},
       AcceptedOrNot,
       Configuration},
      {{"Authenticated"},
       {"-ca", "--security=802.1x", "--802-user=u", "--802-pwd=p", "--802-auth-ext=PEAP", "{}"},
       AcceptedOrNot,
       Authentication},
      {{"AdvancedFile"}, {"-ca", "-file", "{advanced}", "{}"}, AcceptedOrNot, Configuration},
      {{"Ssid"}, {"-s", "{}"}, AcceptedOrNot, {.pauses = 28, .writes = 14, .reads = 14}},
      {{"Ip"}, {"-ip", "{}"}, AcceptedOrNot, LongestQuery},
      {{"TroubleCode"}, {"-t", "{}"}, AcceptedOrNot, {.pauses = 16, .writes = 8, .reads = 8}},
      {{"Descriptor"}, {"-a", "{}"}, DoneOrNot, {.pauses = 50, .writes = 6, .reads = 6}},
      // The printer's authentication status is 3.
      {{"AuthStatus"}, {"-802s", "{}"}, {3, 255}, TwoQueries},
      {{"Certificate"}, {"-cer", "{}"}, Always, TwoQueries},
      {{"CertificateFile"}, {"-cer", "-file", "{options}", "{}"}, Always, TwoQueries},
      {{"Reset"}, {"-r", "{}"}, DoneOrNot, {.pauses = 60, .writes = 2, .reads = 2}},
      {{"RawPacket"},
       {"-npa", "-file", "{packet}", "{}"},
       Always,
       {.pauses = 12, .writes = 1, .reads = 3}},
      {{"RequestDefaults"}, {"-rcerdefs", "{}"}, DoneOrNot, {.pauses = 7, .writes = 1, .reads = 3}},
      {{"Request"},
       {"-csr", "--cer-common=hall", "--cer-path={request}", "{}"},
       DoneOrNot,
       // For 5 of the 36 seconds, writing the request file may fail with EAGAIN.
       {.pauses = 36, .writes = 3, .reads = 9}},
      {{"InstallAuthority"},
       {"-icer", "--802-CA-cer-file={ca}", "{}"},
       DoneOrNot,
       {.pauses = 26, .writes = 3, .reads = 9}},
      {{"InstallSigned"},
       {"-icer", "--802-signed-cer-file={ca}", "{}"},
       DoneOrNot,
       {.pauses = 12, .writes = 1, .reads = 3}},
      {{"InstallNothing"}, {"-icer", "--802-CA-cer-file={none}", "{}"}, {2}, {}},
      {{"DefaultRun"}, {"-x", "{}"}, Always, {.pauses = 39, .writes = 13, .reads = 13}},
      {{"Help"}, {"-h", "{}"}, Always, {}},
      {{"NoArguments"}, {}, Always, {}},
  };
}

/// Returns the test command of a query: the switch, the device, and the statuses in the table.
/// `longestWait` is the longest wait of all queries.
Command queryCommand(const CommandRow& row) {
  Command command{{row.mode.name.data()}, {std::string(row.mode.name), "{}"}, {}, LongestQuery};
  ++command.name;  // the switch without its "-"
  for (const ExitStatus& range : row.statuses) {
    command.statuses.insert(command.statuses.end(), {range.lowest, range.highest});
  }
  return command;
}

}  // namespace

const std::vector<Command>& commands() {
  static const std::vector<Command> all = [] {
    std::vector<Command> result = listedCommands();
    for (const CommandRow& row : CommandTable) {
      const bool isListed = std::ranges::any_of(result, [&row](const Command& command) {
        return !command.arguments.empty() && command.arguments.front() == row.mode.name;
      });
      if (!isListed && row.mode.input == CommandMode::Input::DevicePath) {
        result.push_back(queryCommand(row));
      }
    }
    return result;
  }();
  return all;
}

std::vector<Command> exchangingCommands() {
  std::vector<Command> result;
  std::ranges::copy_if(commands(), std::back_inserter(result),
                       [](const Command& candidate) { return candidate.longestWait.writes > 0; });
  return result;
}

const Command& command(const std::string& name) {
  const auto found = std::ranges::find(commands(), name, &Command::name);
  if (found == commands().end()) {
    throw std::runtime_error("there is no command " + name);
  }
  return *found;
}

// The statuses in the rows above are literals. They must match the program's table of switches.
TEST(Commands, CoverEachSwitchAndItsExitStatuses) {
  for (const CommandRow& row : CommandTable) {
    std::vector<int> statuses;
    for (const Command& command : commands()) {
      if (!command.arguments.empty() && command.arguments.front() == row.mode.name) {
        std::ranges::copy(command.statuses, std::back_inserter(statuses));
      }
    }
    EXPECT_FALSE(statuses.empty()) << row.mode.name << " has no row in " << __FILE__;
    const auto isIn = [](const ExitStatus& range, int status) {
      return range.lowest <= status && status <= range.highest;
    };
    for (const int status : statuses) {
      EXPECT_TRUE(std::ranges::any_of(row.statuses,
                                      [&](const ExitStatus& range) { return isIn(range, status); }))
          << row.mode.name << " ends with " << status;
    }
    if (row.mode.name == "-802s") {
      continue;  // The printer sends the status, so any number is possible.
    }
    for (const ExitStatus& range : row.statuses) {
      EXPECT_TRUE(std::ranges::any_of(statuses, [&](int status) { return isIn(range, status); }))
          << row.mode.name << " never ends with " << range.lowest << " to " << range.highest;
    }
  }
}

CommandFiles::CommandFiles() {
  m_Folder.write("options", "--ssid=home\n# comment\n--security=None\n");
  m_Folder.write("advanced", "--security=\"WPA-PER\"\n--psk=correct-horse\n");
  m_Folder.write("packet", "A5 00 06 50 E0 D8 00 28 08");
  static const std::string certificate = support::certificatePem();
  m_Folder.write("ca", certificate);
}

std::vector<std::string> CommandFiles::fill(const Command& command,
                                            const std::string& device) const {
  std::vector<std::string> filled = {"zvkconfig"};
  for (std::string argument : command.arguments) {
    const std::size_t open = argument.find('{');
    if (open != std::string::npos) {
      const std::size_t close = argument.find('}', open);
      const std::string name = argument.substr(open + 1, close - open - 1);
      argument.replace(open, close - open + 1, name.empty() ? device : m_Folder.path(name));
    }
    filled.push_back(argument);
  }
  return filled;
}

}  // namespace faults
