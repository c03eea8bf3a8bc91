#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "cli/command_mode.h"
#include "npa/status_texts.h"

/// A range of exit statuses, from `lowest` to `highest`, and their meaning. The meaning is a phrase
/// without a full stop. It is empty if the command has only this status.
///
///     ExitStatus{255, 255, "refused"}
struct ExitStatus {
  int lowest = 0;
  int highest = 0;
  std::string_view meaning;
};

/// One row of the command table: what a switch runs, and its description. The build generates the
/// manual page and the shells' completions from these rows.
struct CommandRow {
  /// What the program does for the switch. The program contains only this column; the other columns
  /// are for the build and the tests.
  CommandMode mode;
  /// The possible exit statuses, in ascending order. Tests fail if the command returns an exit
  /// status outside these ranges.
  std::span<const ExitStatus> statuses;
  /// One line: an imperative or a noun, without a full stop.
  std::string_view help;
  /// Further sentences for the manual page, in the markup of scdoc.
  std::string_view details = {};
};

/// The exit statuses of the commands: lowest, highest, meaning. A result of -1 becomes the exit
/// status 255.
namespace exit_statuses {

/// For commands whose exit status is always 0.
inline constexpr std::array Always = {ExitStatus{0, 0, ""}};
/// For the commands that store settings (-c, -ca).
inline constexpr std::array Configured = {
    ExitStatus{0, 0, "accepted"},
    ExitStatus{1, 1, "not accepted"},
    ExitStatus{255, 255, "refused, or no answer"},
};
/// For -s.
inline constexpr std::array TextRead = {
    ExitStatus{0, 0, "printed"},
    ExitStatus{1, 1, "no answer, or no text in it"},
    ExitStatus{255, 255, "refused"},
};
/// For -ip.
inline constexpr std::array AddressRead = {
    ExitStatus{0, 0, "printed"},
    ExitStatus{1, 1, "no address yet, or no answer"},
    ExitStatus{255, 255, "refused"},
};
/// For -t: the trouble code itself is the exit status. So the exit statuses 1 and 255 have two
/// meanings each.
inline constexpr std::array TroubleCodes = {
    ExitStatus{0, 0, "no trouble"},
    ExitStatus{1, 255, "the trouble code (1 may also mean no answer, 255 refused)"},
};
/// For -a.
inline constexpr std::array DescriptorRead = {
    ExitStatus{0, 0, "received"},
    ExitStatus{1, 1, "no answer, or a descriptor that does not end in \"-\""},
};
/// For -802s: a row for each status that has a text, a row for the other statuses up to 254, and a
/// row for 255, which is also the exit status if no status arrives.
inline constexpr auto AuthStatuses = [] {
  constexpr std::size_t named = npa::AuthStatusTexts.size();
  std::array<ExitStatus, named + 2> statuses{};
  for (std::size_t i = 0; i < named; ++i) {
    const int status = static_cast<int>(i);
    statuses[i] = {status, status, npa::AuthStatusTexts[i]};
  }
  statuses[named] = {static_cast<int>(named), 254, "unknown status"};
  statuses[named + 1] = {255, 255, "no answer, or refused"};
  return statuses;
}();
/// For -rcerdefs.
inline constexpr std::array DefaultsRead = {
    ExitStatus{0, 0, "printed"},
    ExitStatus{1, 1, "the printer returns no subject"},
};
/// For -csr.
inline constexpr std::array RequestMade = {
    ExitStatus{0, 0, "saved"},
    ExitStatus{1, 1, "not made, or not saved"},
};
/// For -icer.
inline constexpr std::array Installed = {
    ExitStatus{0, 0, "installed"},
    ExitStatus{1, 1, "not installed, or no file named"},
    ExitStatus{2, 2, "the file does not exist"},
};
/// For -r.
inline constexpr std::array ResetDone = {
    ExitStatus{0, 0, "confirmed"},
    ExitStatus{1, 1, "not confirmed"},
};

}  // namespace exit_statuses

/// All command switches, in the order of the manual page. No switch occurs twice.
inline constexpr std::array CommandTable = {
    CommandRow{.mode = {.name = "-c",
                        .input = CommandMode::Input::Options,
                        .operation = &wnpaGenerator::configBasic,
                        .retriesBare = true},
               .statuses = exit_statuses::Configured,
               .help = "store mode, security, channel, SSID and password",
               .details = "This is the basic configuration. It uses the options under *Networks*."},
    CommandRow{.mode = {.name = "-ca",
                        .input = CommandMode::Input::Options,
                        .operation = &wnpaGenerator::configAdvanced,
                        .retriesBare = true},
               .statuses = exit_statuses::Configured,
               .help = "store WEP keys, a pre-shared key or 802.1x settings",
               .details = "This is the advanced configuration. *--security=* selects what is "
                          "stored; see *OPTIONS*. If the security is unknown, nothing is sent, "
                          "and the exit status is 0. The exit status is also 0 if the adapter "
                          "refuses the options of 802.1x, does not accept them or does not answer "
                          "them. *-802s* shows the result of 802.1x."},
    CommandRow{.mode = {.name = "-s", .operation = &wnpaGenerator::getSSID, .retriesBare = true},
               .statuses = exit_statuses::TextRead,
               .help = "print the SSID"},
    CommandRow{.mode = {.name = "-ip", .operation = &wnpaGenerator::getIP, .retriesBare = true},
               .statuses = exit_statuses::AddressRead,
               .help = "wait for the IP address and print it"},
    CommandRow{
        .mode = {.name = "-t", .operation = &wnpaGenerator::getTroubleCode, .retriesBare = true},
        .statuses = exit_statuses::TroubleCodes,
        .help = "return the trouble code as exit status"},
    CommandRow{.mode = {.name = "-a", .operation = &wnpaGenerator::getAdapterDescriptor},
               .statuses = exit_statuses::DescriptorRead,
               .help = "check that the adapter answers with its descriptor"},
    CommandRow{.mode = {.name = "-802s",
                        .operation = &wnpaGenerator::get802AuthStatus,
                        .retriesBare = true},
               .statuses = exit_statuses::AuthStatuses,
               .help = "return the status of 802.1x authentication as exit status",
               .details = "The status is also written to standard error, in words."},
    CommandRow{.mode = {.name = "-cer",
                        .input = CommandMode::Input::Options,
                        .operation = &wnpaGenerator::getCertSettings,
                        .retriesBare = true},
               .statuses = exit_statuses::Always,
               .help = "log organisation and common name of the adapter's certificate",
               .details = "The organisation is written to standard error as text. The common name "
                          "is there only in the dump of the reply."},
    CommandRow{.mode = {.name = "-rcerdefs",
                        .input = CommandMode::Input::Options,
                        .worker = CommandMode::Worker::Certificates},
               .statuses = exit_statuses::DefaultsRead,
               .help = "print the subject that the printer proposes for a certificate request",
               .details = "Each line is an option of *-csr* without the \"--\", and its value."},
    CommandRow{.mode = {.name = "-csr",
                        .input = CommandMode::Input::Options,
                        .worker = CommandMode::Worker::Certificates},
               .statuses = exit_statuses::RequestMade,
               .help = "make a key pair and a certificate request",
               .details =
                   "The printer makes both. The options *--cer-...* are the subject of the "
                   "request. *zvkconfig* writes the request to the file that *--cer-path=* names. "
                   "The printer's earlier key and certificate are deleted first."},
    CommandRow{.mode = {.name = "-icer",
                        .input = CommandMode::Input::Options,
                        .worker = CommandMode::Worker::Certificates},
               .statuses = exit_statuses::Installed,
               .help = "install a CA certificate or the signed certificate",
               .details = "If *--802-CA-cer-file=* names a file, *-icer* installs the CA "
                          "certificate in this file. Otherwise it installs the printer's signed "
                          "certificate in the file of *--802-signed-cer-file=*."},
    CommandRow{.mode = {.name = "-npa",
                        .input = CommandMode::Input::NpaFile,
                        .worker = CommandMode::Worker::RawSender},
               .statuses = exit_statuses::Always,
               .help = "send a packet from a file of hex text",
               .details = "The reply is dumped to standard error. _DEVICE_ must follow _FILE_. See "
                          "*zvkconfig-arguments*(5)."},
    CommandRow{.mode = {.name = "-r", .operation = &wnpaGenerator::reset},
               .statuses = exit_statuses::ResetDone,
               .help = "reset the adapter"},
    CommandRow{.mode = {.name = "-h", .worker = CommandMode::Worker::Help},
               .statuses = exit_statuses::Always,
               .help = "print a help text, as zvkconfig does without arguments"},
};

/// The row for any text that is not a switch. Neither the manual page nor the completions list this
/// row.
inline constexpr CommandRow DefaultRunRow = {
    .mode = {.name = {}, .worker = CommandMode::Worker::DefaultRun},
    .statuses = exit_statuses::Always,
    .help = "store the defaults of the options, then report trouble code and IP address"};
