// The commands and options of zvkprinter. catalogue/option_parser.h explains the columns.

#include "emulator/run/option_table.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "emulator/run/option_values.h"

namespace emulator {

namespace {

using catalogue::UsageError;
using catalogue::ValueKind;

constexpr std::size_t LargestPacketCount = 100;
constexpr std::size_t LargestPort = 65535;

constexpr std::array<std::string_view, 2> Directions = {"in", "out"};
constexpr std::array<std::string_view, 2> Speeds = {"full", "high"};

/// Returns a member of `Options` or of its personality.
template <auto Member>
auto& memberOf(Options& options) {
  if constexpr (std::is_invocable_v<decltype(Member), Options&>) {
    return options.*Member;
  } else {
    return options.personality.*Member;
  }
}

// Functions for the column `apply` that parse nothing. They set a member to true, to false, or to
// the value as it is.

template <auto Member>
void enable(Options& options, const std::string& /*value*/) {
  memberOf<Member>(options) = true;
}

template <auto Member>
void disable(Options& options, const std::string& /*value*/) {
  memberOf<Member>(options) = false;
}

template <auto Member>
void assign(Options& options, const std::string& value) {
  memberOf<Member>(options) = value;
}

template <UsbFault::Kind Kind>
void addUsbFault(Options& options, const std::string& value) {
  options.usb.faults.push_back(parseUsbFault(Kind, value));
}

constexpr std::array Commands = {
    Command{.name = "run",
            .action = Options::Action::Run,
            .usages = {"[OPTION...] -- COMMAND [ARGUMENT...]"},
            .help = "run COMMAND with the emulated printer at /dev/usb/lp0",
            .details =
                "_COMMAND_ runs in a separate mount namespace, in which _/dev/usb_ has no other "
                "printer. If the system does not permit that, *zvkprinter* makes a link to the "
                "printer: _/dev/usb/lp16_ or, if that exists, the path with the next lower free "
                "number. It removes the link when _COMMAND_ ends. In both cases {} in an argument "
                "stands for the path of the printer. The device is a pseudo-terminal.",
            .check =
                [](const Options& options) {
                  if (options.command.empty()) {
                    throw UsageError("run", "-- and a command");
                  }
                }},
    Command{.name = "serve",
            .action = Options::Action::Serve,
            .usages = {"--link=PATH [OPTION...]"},
            .help = "keep the printer running, with a link to it at PATH",
            .details =
                "*zvkprinter* runs until SIGINT, SIGTERM or SIGHUP ends it. The link must not "
                "exist yet. The device is a pseudo-terminal.",
            .check =
                [](const Options& options) {
                  if (options.link.empty()) {
                    throw UsageError("serve", "--link=PATH");
                  }
                }},
    Command{.name = "usb",
            .action = Options::Action::Usb,
            .usages = {"--attach [OPTION...] [-- COMMAND [ARGUMENT...]]",
                       "--port=N [OPTION...] [-- COMMAND [ARGUMENT...]]"},
            .help = "emulate a USB printer, plugged into this machine or served for 'usbip attach'",
            .details =
                "*--attach* plugs the printer into this machine. This needs root and the kernel "
                "module vhci-hcd. {} in an argument stands for the device node that the kernel "
                "creates. *--port=* serves the printer for *usbip attach* instead. The printer "
                "stays until _COMMAND_ ends. Without a _COMMAND_ it stays until a signal ends "
                "*zvkprinter*. SIGUSR1 unplugs the printer, or plugs it in again.",
            .check =
                [](const Options& options) {
                  if (options.attach == options.port.has_value()) {
                    throw UsageError("usb", "either --attach or --port=N");
                  }
                }},
    Command{.name = "show",
            .action = Options::Action::Show,
            .usages = {"--state=DIR [OPTION...]"},
            .help = "print what the printer with the state folder DIR holds",
            .check =
                [](const Options& options) {
                  if (!options.stateFolder) {
                    throw UsageError("show", "--state=DIR");
                  }
                }},
    Command{.name = "help",
            .otherNames = {"--help", "-h"},
            .action = Options::Action::Help,
            .help = "print a help text, as zvkprinter does without arguments"},
};

constexpr std::array PersonalityOptions = {
    Option{.name = "--refuse-wrapped",
           .help = "refuse wrapped packets",
           .apply = enable<&Personality::refuseWrapped>},
    Option{.name = "--refuse-all",
           .help = "refuse every packet",
           .apply = enable<&Personality::refuseAll>},
    Option{.name = "--silent", .help = "never reply", .apply = enable<&Personality::silent>},
    Option{.name = "--garbage",
           .help = "reply with bytes that are not a packet",
           .apply = enable<&Personality::garbage>},
    Option{.name = "--late",
           .valueName = "SECONDS",
           .help = "delay each reply",
           .apply =
               [](Options& o, const std::string& value) {
                 o.personality.replyDelay = parseSeconds(value);
               }},
    Option{.name = "--cut",
           .valueName = "BYTES",
           .help = "cut each reply to this size",
           .apply =
               [](Options& o, const std::string& value) {
                 o.personality.cutAt = parseNumber(value, LargestCount, "bytes");
               }},
    Option{.name = "--pieces",
           .valueName = "BYTES",
           .help = "send replies in pieces of this size",
           .apply =
               [](Options& o, const std::string& value) {
                 o.personality.pieceSize = parseNumber(value, LargestCount, "bytes");
               }},
    Option{.name = "--result",
           .valueName = "HEX",
           .help = "last byte of the reply to settings (01: accepted)",
           .apply =
               [](Options& o, const std::string& value) {
                 o.personality.settingsResult = parseHexByte(value);
               }},
    Option{.name = "--ip",
           .valueName = "A.B.C.D",
           .help = "IP address (default: 192.168.1.20)",
           .apply =
               [](Options& o, const std::string& value) {
                 o.personality.ipAddress = parseAddress(value);
               }},
    Option{.name = "--ip-after",
           .valueName = "N[s]",
           .help = "get the address only after N queries for the address or, with s, N seconds",
           .details = "Until then the address is 0.0.0.0.",
           .apply =
               [](Options& o, const std::string& value) {
                 o.personality.addressAcquired = parseReadiness(value);
               }},
    Option{.name = "--trouble-code",
           .valueName = "N",
           .help = "trouble code (default: 0, no trouble)",
           .apply =
               [](Options& o, const std::string& value) {
                 o.personality.troubleCode = parseByte(value);
               }},
    Option{.name = "--trouble-over-after",
           .valueName = "N[s]",
           .help = "set the trouble code to 0 after N queries for the code or, with s, N seconds",
           .apply =
               [](Options& o, const std::string& value) {
                 o.personality.troubleCleared = parseReadiness(value);
               }},
    Option{.name = "--ssid",
           .valueName = "TEXT",
           .help = "SSID that the adapter holds from the start",
           .apply = assign<&Personality::ssid>},
    Option{.name = "--setting",
           .valueName = "GROUP:OBJECT=VALUE",
           .isSecret = true,
           .help = "any setting that the adapter holds from the start; may be given several times",
           .details =
               "_GROUP_ and _OBJECT_ are hex numbers, such as 28:08 for the SSID. _VALUE_ is a "
               "text, a number up to 255 or an IPv4 address; *zvknpa --objects* lists the kind of "
               "each setting. An unknown setting is a text. A text gets a zero byte at its end. "
               "The other options take precedence. A query returns no key and no password.",
           .apply =
               [](Options& o, const std::string& value) {
                 o.personality.settings.push_back(parseInitialSetting(value));
               }},
    Option{
        .name = "--network",
        .valueName = "SSID:KEY",
        .isSecret = true,
        .help = "join only this network and only with its key; may be given several times",
        .details =
            "The last colon separates SSID and key, so the key cannot contain a colon. An empty "
            "key means an open network. With 802.1x the printer compares the key with the stored "
            "password. Outside these networks the address is 0.0.0.0, and the trouble code is 2 "
            "(no such SSID), 3 (wrong key or security) or 4 (802.1x without the CA certificate "
            "that it needs). Real adapters have other trouble codes. Until a host stores a "
            "network, the adapter is in the network of *--ssid=*.",
        .apply =
            [](Options& o, const std::string& value) {
              o.personality.networks.push_back(parseNetwork(value));
            }},
    Option{.name = "--radio",
           .valueName = "INTERFACE",
           .help = "join real networks with this wireless interface (root only)",
           .details =
               "The adapter writes a configuration of *wpa_supplicant*(8) from what it holds, runs "
               "*wpa_supplicant* and *udhcpc*, and reports their results: the address, the 802.1x "
               "status, and a trouble code (the codes of *--network=*, 5 authentication refused, 6 "
               "no address, 7 unusable settings, 8 no result yet). It replaces *--network=*, "
               "*--ip=* and *--trouble-code=*.",
           .apply =
               [](Options& o, const std::string& value) {
                 o.radio = parseInterface(value);
               }},
    Option{.name = "--restart-after-store",
           .valueName = "SECONDS",
           .help = "after each reply to stored settings, answer nothing for this long",
           .details =
               "A USB printer stays on the bus for 6 more seconds, so that the host can read the "
               "reply. Then it is unplugged for this long.",
           .apply =
               [](Options& o, const std::string& value) {
                 o.personality.restartAfterStore = parseSeconds(value);
               }},
    Option{.name = "--descriptor",
           .valueName = "TEXT",
           .help = "adapter descriptor; programs expect it to end in '-'",
           .apply = assign<&Personality::descriptor>},
    Option{.name = "--auth-status",
           .valueName = "N[,N...]",
           .help = "802.1x status to send instead of the computed one, in one record per number",
           .apply =
               [](Options& o, const std::string& value) {
                 o.personality.authStatus = parseBytes(value);
               }},
    Option{.name = "--other-first",
           .help = "802.1x: put the record of another setting first",
           .apply = enable<&Personality::otherRecordFirst>},
    Option{.name = "--cut-record",
           .valueName = "BYTES",
           .help = "802.1x: cut the last record to this size; the packet around it is complete",
           .apply =
               [](Options& o, const std::string& value) {
                 o.personality.cutRecordAt = parseNumber(value, LargestCount, "bytes");
               }},
    Option{.name = "--packets",
           .valueName = "N",
           .help = "802.1x and method calls: reply in N packets, at most 100",
           .apply =
               [](Options& o, const std::string& value) {
                 o.personality.replyPackets = parseNumber(value, LargestPacketCount, "packets");
               }},
    Option{.name = "--object-reply",
           .valueName = "[METHOD:]FILE",
           .kind = ValueKind::File,
           .help = "method calls: reply with FILE's bytes after the flag byte",
           .details =
               "The reply is one packet. This option and *--object-status=* may be given several "
               "times. The last one for a method takes precedence over the last one for all "
               "methods.",
           .apply =
               [](Options& o, const std::string& value) {
                 o.personality.objectReplies.push_back(parseObjectReply(value));
               }},
    Option{.name = "--object-status",
           .valueName = "[METHOD:]CODE",
           .help = "method calls: do nothing and reply with this status",
           .apply =
               [](Options& o, const std::string& value) {
                 o.personality.objectReplies.push_back(parseObjectStatus(value));
               }},
    Option{.name = "--cert-default",
           .valueName = "NAME=TEXT",
           .help = "default of certificate requests; NAME is O, OU, C, ST, L, CN or AN",
           .apply =
               [](Options& o, const std::string& value) {
                 parseSubjectText(o.personality.certificates.defaults, value);
               }},
    Option{.name = "--key-bits",
           .valueName = "N",
           .help = "make RSA keys of 1024 to 4096 bits (default: 0, keys on curve P-256)",
           .apply =
               [](Options& o, const std::string& value) {
                 o.personality.certificates.rsaBits = parseKeyBits(value);
               }},
    Option{.name = "--no-factory-certificate",
           .help = "hold no certificate from the factory",
           .apply =
               [](Options& o, const std::string&) {
                 o.personality.certificates.factoryCertificate = false;
               }},
};

constexpr std::array UsbOptions = {
    Option{.name = "--attach",
           .help = "plug the printer into this machine (module vhci-hcd)",
           .apply = enable<&Options::attach>},
    Option{.name = "--port",
           .valueName = "N",
           .help = "serve the printer at TCP port N of 127.0.0.1 for 'usbip attach'",
           .details = "With 0 the system chooses the port, and *zvkprinter* prints its number.",
           .apply =
               [](Options& o, const std::string& value) {
                 o.port = static_cast<std::uint16_t>(parseNumber(value, LargestPort));
               }},
    Option{.name = "--speed",
           .kind = ValueKind::Words,
           .words = Speeds,
           .help = "speed of the device (default: high)",
           .details = "USB packets have 64 bytes with *full* and 512 bytes with *high*.",
           .apply =
               [](Options& o, const std::string& value) {
                 o.usb.speed = value == Speeds.front() ? UsbSpeed::Full : UsbSpeed::High;
               }},
    Option{
        .name = "--alternates",
        .valueName = "N",
        .help = "number of alternate settings, 1 to 4 (default: 1)",
        .details =
            "A single alternate setting is bidirectional (protocol 2). Two to four are the first "
            "ones of this list: unidirectional (1), bidirectional (2), IEEE 1284.4 (3), "
            "vendor-specific (255).",
        .apply =
            [](Options& o, const std::string& value) {
              o.usb.alternates = parseAlternates(value);
            }},
    Option{.name = "--serial",
           .valueName = "TEXT",
           .help = "serial number (default: 0001)",
           .apply =
               [](Options& o, const std::string& value) {
                 o.usb.serial = parseSerial(value);
               }},
    Option{.name = "--usb-stall",
           .valueName = "in|out[:BYTES]",
           .words = Directions,
           .help = "halt the endpoint after this number of bytes",
           .details = "The host can clear the halt. The default is 0 bytes.",
           .apply = addUsbFault<UsbFault::Kind::Stall>},
    Option{.name = "--usb-protocol-error",
           .valueName = "in|out[:BYTES]",
           .words = Directions,
           .help = "fail every transfer after this number of bytes",
           .apply = addUsbFault<UsbFault::Kind::ProtocolError>},
    Option{.name = "--usb-hold",
           .valueName = "in|out[:BYTES]",
           .words = Directions,
           .help = "complete no transfer after this number of bytes",
           .apply = addUsbFault<UsbFault::Kind::Hold>},
    Option{.name = "--usb-slow",
           .valueName = "N",
           .help = "accept at most N bytes per second",
           .apply =
               [](Options& o, const std::string& value) {
                 o.usb.outBytesPerSecond = parseNumber(value, LargestUsbCount, "bytes");
               }},
    Option{.name = "--usb-unplug-after",
           .valueName = "in|out:BYTES",
           .words = Directions,
           .help = "unplug the printer after this number of bytes",
           .apply = addUsbFault<UsbFault::Kind::Unplug>},
    Option{.name = "--usb-replug-after",
           .valueName = "SECONDS",
           .help = "plug the printer in again this long after --usb-unplug-after unplugs it",
           .apply =
               [](Options& o, const std::string& value) {
                 o.usb.replugAfter = parseSeconds(value);
               }},
};

constexpr std::array GeneralOptions = {
    Option{.name = "--log",
           .valueName = "FILE",
           .kind = ValueKind::File,
           .help = "log to a file instead of standard error",
           .details = "The former content of the file is lost.",
           .apply =
               [](Options& options, const std::string& value) {
                 options.logFile = value;
                 options.appendsLog = false;
               }},
    Option{.name = "--log-append",
           .valueName = "FILE",
           .kind = ValueKind::File,
           .help = "log to the end of a file and keep its content",
           .details = "One file can hold the logs of several runs. Of this option and *--log=* the "
                      "last one counts.",
           .apply =
               [](Options& options, const std::string& value) {
                 options.logFile = value;
                 options.appendsLog = true;
               }},
    Option{.name = "--show",
           .help = "at the end, print what the printer holds",
           .apply = enable<&Options::showSettings>},
    Option{.name = "--state",
           .valueName = "DIR",
           .kind = ValueKind::Folder,
           .help = "keep settings and certificates in this folder from run to run",
           .details = "The folder must exist.",
           .apply = assign<&Options::stateFolder>},
    Option{.name = "--show-secrets",
           .help = "do not mask keys and passwords",
           .apply = enable<&Options::showSecrets>},
    Option{.name = "--no-namespace",
           .help = "link the printer at a free /dev/usb/lpN, without a namespace (run)",
           .apply = disable<&Options::namespaces>},
    Option{.name = "--link",
           .valueName = "PATH",
           .kind = ValueKind::File,
           .help = "path of the link to the device (serve)",
           .details = "*zvkconfig*(1) opens only _/dev/usb/lp0_ to _/dev/usb/lp16_.",
           .apply = assign<&Options::link>},
};

constexpr std::array Groups = {
    OptionGroup{"How the printer behaves", PersonalityOptions},
    OptionGroup{"How the USB device behaves (usb only)", UsbOptions},
    OptionGroup{"General options", GeneralOptions},
};

}  // namespace

std::span<const Command> commands() {
  return Commands;
}

std::span<const OptionGroup> optionGroups() {
  return Groups;
}

}  // namespace emulator
