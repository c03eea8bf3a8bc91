#include "emulator/run/option_table.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <initializer_list>

#include "emulator/run/option_values.h"

namespace emulator {

namespace {

constexpr std::size_t LargestPacketCount = 100;
constexpr std::size_t LargestPort = 65535;

constexpr std::array PersonalityOptions = {
    Option{"--refuse-wrapped", "", "refuse wrapped packets (flag D4)",
           [](Options& o, const std::string&) {
             o.personality.refuseWrapped = true;
           }},
    Option{"--refuse-all", "", "refuse every packet",
           [](Options& o, const std::string&) {
             o.personality.refuseAll = true;
           }},
    Option{"--silent", "", "never answer",
           [](Options& o, const std::string&) {
             o.personality.silent = true;
           }},
    Option{"--garbage", "", "answer with bytes that are no packet",
           [](Options& o, const std::string&) {
             o.personality.garbage = true;
           }},
    Option{"--late", "SECONDS", "answer so much later",
           [](Options& o, const std::string& value) {
             o.personality.answerAfter = std::chrono::seconds(parseNumber(value, LargestDelay));
           }},
    Option{"--cut", "BYTES", "cut each reply to this size",
           [](Options& o, const std::string& value) {
             o.personality.cutAt = parseNumber(value, LargestCount);
           }},
    Option{"--pieces", "BYTES", "send replies in pieces of this size",
           [](Options& o, const std::string& value) {
             o.personality.pieceSize = parseNumber(value, LargestCount);
           }},
    Option{"--result", "HEX", "last byte of the answer to settings (01: accepted)",
           [](Options& o, const std::string& value) {
             constexpr int hexadecimal = 16;
             o.personality.settingsResult = parseByte(value, hexadecimal);
           }},
    Option{"--ip", "A.B.C.D", "IP address (192.168.1.20)",
           [](Options& o, const std::string& value) {
             o.personality.ipAddress = parseAddress(value);
           }},
    Option{"--ip-after", "N|Ns", "have the address only after N queries for it, or N seconds",
           [](Options& o, const std::string& value) {
             o.personality.addressAcquired = parseReadiness(value);
           }},
    Option{"--trouble-code", "N", "trouble code (0: none)",
           [](Options& o, const std::string& value) {
             o.personality.troubleCode = parseByte(value);
           }},
    Option{"--trouble-over-after", "N|Ns",
           "have no trouble any more after N queries for it, or N seconds",
           [](Options& o, const std::string& value) {
             o.personality.troubleOver = parseReadiness(value);
           }},
    Option{"--ssid", "TEXT", "SSID that the adapter holds from the start",
           [](Options& o, const std::string& value) {
             o.personality.ssid = value;
           }},
    Option{"--descriptor", "TEXT", "adapter descriptor; programs expect it to end in '-'",
           [](Options& o, const std::string& value) {
             o.personality.descriptor = value;
           }},
    Option{"--auth-status", "N[,N...]", "802.1x status whatever is set; of several a record each",
           [](Options& o, const std::string& value) {
             o.personality.authStatus = parseBytes(value);
           }},
    Option{"--other-first", "", "802.1x: put another setting's record ahead",
           [](Options& o, const std::string&) {
             o.personality.otherRecordFirst = true;
           }},
    Option{"--cut-record", "BYTES", "802.1x: cut the last record, in a packet that is whole",
           [](Options& o, const std::string& value) {
             o.personality.cutRecordAt = parseNumber(value, LargestCount);
           }},
    Option{"--packets", "N", "802.1x and method calls: answer in so many packets",
           [](Options& o, const std::string& value) {
             o.personality.replyPackets = parseNumber(value, LargestPacketCount);
           }},
    Option{"--object-reply", "[METHOD:]FILE",
           "method calls: answer with FILE's bytes behind the flag byte",
           [](Options& o, const std::string& value) {
             o.personality.objectAnswers.push_back(parseObjectReply(value));
           }},
    Option{"--object-status", "[METHOD:]CODE", "method calls: do nothing, answer with this status",
           [](Options& o, const std::string& value) {
             o.personality.objectAnswers.push_back(parseObjectStatus(value));
           }},
    Option{"--cert-default", "NAME=TEXT", "default of certificate requests for O, OU, C, ... AN",
           [](Options& o, const std::string& value) {
             parseSubjectText(o.personality.certificates.defaults, value);
           }},
    Option{"--key-bits", "N", "make RSA keys of so many bits (0: keys on the curve P-256)",
           [](Options& o, const std::string& value) {
             o.personality.certificates.rsaBits = parseKeyBits(value);
           }},
    Option{"--no-factory-certificate", "", "have no certificate from the factory",
           [](Options& o, const std::string&) {
             o.personality.certificates.factoryCertificate = false;
           }},
};

constexpr std::array UsbOptions = {
    Option{"--attach", "", "plug the printer into this machine (module vhci-hcd)",
           [](Options& o, const std::string&) {
             o.attach = true;
           }},
    Option{"--port", "N", "serve it at this port of 127.0.0.1 for 'usbip attach' (0: any)",
           [](Options& o, const std::string& value) {
             o.port = static_cast<std::uint16_t>(parseNumber(value, LargestPort));
           }},
    Option{"--speed", "full|high", "speed of the device (high)",
           [](Options& o, const std::string& value) {
             o.usb.speed = parseSpeed(value);
           }},
    Option{"--alternates", "N", "have so many alternate settings, 1 to 4",
           [](Options& o, const std::string& value) {
             o.usb.alternates = parseAlternates(value);
           }},
    Option{"--usb-stall", "in|out[:BYTES]", "halt the endpoint, after so many bytes",
           [](Options& o, const std::string& value) {
             o.usb.faults.push_back(parseUsbFault(UsbFault::Kind::Stall, value));
           }},
    Option{"--usb-protocol-error", "in|out[:BYTES]", "fail every transfer from then on",
           [](Options& o, const std::string& value) {
             o.usb.faults.push_back(parseUsbFault(UsbFault::Kind::ProtocolError, value));
           }},
    Option{"--usb-hold", "in|out[:BYTES]", "complete no transfer from then on",
           [](Options& o, const std::string& value) {
             o.usb.faults.push_back(parseUsbFault(UsbFault::Kind::Hold, value));
           }},
    Option{"--usb-slow", "N", "take only so many bytes in a second",
           [](Options& o, const std::string& value) {
             o.usb.outBytesPerSecond = parseNumber(value, LargestUsbCount);
           }},
    Option{"--usb-unplug-after", "in|out:BYTES", "be unplugged after so many bytes",
           [](Options& o, const std::string& value) {
             o.usb.faults.push_back(parseUsbFault(UsbFault::Kind::Unplug, value));
           }},
    Option{"--usb-replug-after", "SECONDS", "be plugged in again so long after that",
           [](Options& o, const std::string& value) {
             o.usb.replugAfter = std::chrono::seconds(parseNumber(value, LargestDelay));
           }},
};

constexpr std::array GeneralOptions = {
    Option{"--log", "FILE", "log to a file instead of standard error",
           [](Options& o, const std::string& value) {
             o.logFile = value;
             o.appendsLog = false;
           }},
    Option{"--log-append", "FILE", "log to the end of a file, which keeps what it holds",
           [](Options& o, const std::string& value) {
             o.logFile = value;
             o.appendsLog = true;
           }},
    Option{"--show", "", "print what the printer holds in the end",
           [](Options& o, const std::string&) {
             o.showSettings = true;
           }},
    Option{"--state", "DIR", "keep settings and certificates in this folder from run to run",
           [](Options& o, const std::string& value) {
             o.stateFolder = value;
           }},
    Option{"--show-secrets", "", "do not mask keys and passwords",
           [](Options& o, const std::string&) {
             o.showSecrets = true;
           }},
    Option{"--no-namespace", "", "run: go straight to the link at a free /dev/usb/lpN",
           [](Options& o, const std::string&) {
             o.namespaces = false;
           }},
    Option{"--link", "PATH", "serve: where to put the link to the device",
           [](Options& o, const std::string& value) {
             o.link = value;
           }},
};

}  // namespace

std::span<const Option> personalityOptions() {
  return PersonalityOptions;
}

std::span<const Option> usbOptions() {
  return UsbOptions;
}

std::span<const Option> generalOptions() {
  return GeneralOptions;
}

const Option* findOption(std::string_view name) {
  for (const auto options : {personalityOptions(), usbOptions(), generalOptions()}) {
    if (const auto found = std::ranges::find(options, name, &Option::name);
        found != options.end()) {
      return &*found;
    }
  }
  return nullptr;
}

}  // namespace emulator
