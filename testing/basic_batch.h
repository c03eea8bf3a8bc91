#pragma once

#include <string>

#include "testing/bytes.h"

/// The batch of the switch -c and of the default run (zvkconfig with an unknown switch) as
/// literals: the bare packets and the log lines. If the batch gets a new setting, only this file
/// and the test of the encoder of the setting change.
namespace basic_batch {

using support::Bytes;
using support::bytes;

/// Default options: managed mode, no security, channel 6, no SSID.
inline const Bytes Defaults = bytes(
    "A5 00 1F 50 E0 DA 01 28 02 00 00 04 00 00 00 00 28 22 00 00 04 00 00 00 00 "
    "28 05 00 00 04 00 00 00 06");
/// The default options and the SSID "x".
inline const Bytes SsidX = bytes(
    "A5 00 26 50 E0 DA 01 28 02 00 00 04 00 00 00 00 28 22 00 00 04 00 00 00 00 "
    "28 05 00 00 04 00 00 00 06 28 08 00 00 02 78 00");
/// The default options and the SSID "home".
inline const Bytes SsidHome = bytes(
    "A5 00 29 50 E0 DA 01 28 02 00 00 04 00 00 00 00 28 22 00 00 04 00 00 00 00 "
    "28 05 00 00 04 00 00 00 06 28 08 00 00 05 68 6F 6D 65 00");
/// Mode and SSID are empty, so they are not sent.
inline const Bytes NoModeNoSsid =
    bytes("A5 00 16 50 E0 DA 01 28 22 00 00 04 00 00 00 00 28 05 00 00 04 00 00 00 06");
/// Mode "Ad-Hoc", security "None", channel 3, SSID "x".
inline const Bytes AdHoc = bytes(
    "A5 00 26 50 E0 DA 01 28 02 00 00 04 00 00 00 01 28 22 00 00 04 00 00 00 00 "
    "28 05 00 00 04 00 00 00 03 28 08 00 00 02 78 00");
/// Mode "Ad-Hoc", security "WEP", channel 3, SSID "x", password "abcde".
inline const Bytes AdHocWep = bytes(
    "A5 00 31 50 E0 DA 01 28 02 00 00 04 00 00 00 01 28 22 00 00 04 00 00 00 01 "
    "28 05 00 00 04 00 00 00 03 28 08 00 00 02 78 00 28 09 00 00 06 61 62 63 64 65 00");
/// Security "WPA2", SSID "n", password "key".
inline const Bytes Wpa2 = bytes(
    "A5 00 2F 50 E0 DA 01 28 02 00 00 04 00 00 00 00 28 22 00 00 04 00 00 00 02 "
    "28 05 00 00 04 00 00 00 06 28 08 00 00 02 6E 00 28 11 00 00 04 6B 65 79 00");
/// Security "WPA", SSID "My Net", password "two words".
inline const Bytes WpaMyNet = bytes(
    "A5 00 3A 50 E0 DA 01 28 02 00 00 04 00 00 00 00 28 22 00 00 04 00 00 00 02 "
    "28 05 00 00 04 00 00 00 06 28 08 00 00 07 4D 79 20 4E 65 74 00 "
    "28 11 00 00 0A 74 77 6F 20 77 6F 72 64 73 00");

/// `Defaults` in a wrapper, in the form in which the default run prints the bytes.
inline constexpr const char* DefaultsDump =
    "a5 0 28 50 e0 63 2 0 22 a5 0 1f 50 e0 da 1 28 2 0 0 4 0 0 0 0 28 22 0 0 4 0 0 0 0 "
    "28 5 0 0 4 0 0 0 6 ";

/// The texts that vary in the log lines of a batch.
struct Logged {
  std::string ssid = "";
  std::string mode = "Managed";
  std::string security = "None";
  std::string securityMode = "0 (No Security)";
};

/// Returns the log lines of the settings. The password has no log line.
inline std::string settingLines(const Logged& texts) {
  std::string lines;
  lines += "D [ZVK] Mode = '" + texts.mode + "'\n";
  lines += "D [ZVK] Security = '" + texts.security + "'\n";
  lines += "D [ZVK] Security mode: " + texts.securityMode + "\n";
  lines += "D [ZVK] SSID = " + texts.ssid + "\n";
  return lines;
}

/// Returns the log lines of one attempt of -c.
inline std::string attemptLines(const Logged& texts, int result) {
  return "D [ZVK] Basic config...\n" + settingLines(texts) +
         "D [ZVK] Basic config ret = " + std::to_string(result) + "\n";
}

}  // namespace basic_batch
