#pragma once

#include <cstdint>
#include <string>

#include "testing/bytes.h"

/// Named packets for tests, and functions that build packets.
namespace packets {

using support::Bytes;

/// The fixed packet that precedes the packet of a method call.
inline const Bytes Sniff =
    support::bytes("A5 00 10 80 A4 5B A4 5B 10 EF A4 5B 11 EE 00 FF 13 EC 2E");

// Queries for one setting.
inline const Bytes QueryDescriptor = support::bytes("A5 00 06 50 E0 D8 00 06 1F");
inline const Bytes QueryIp = support::bytes("A5 00 06 50 E0 D8 00 0A 02");
inline const Bytes QuerySsid = support::bytes("A5 00 06 50 E0 D8 00 28 08");
inline const Bytes QueryPreSharedKey = support::bytes("A5 00 06 50 E0 D8 00 28 11");
inline const Bytes QueryTrouble = support::bytes("A5 00 06 50 E0 D8 00 28 15");
inline const Bytes QueryOrganization = support::bytes("A5 00 06 50 E0 D8 00 2A 06");
inline const Bytes QueryCommonName = support::bytes("A5 00 06 50 E0 D8 00 2A 0A");
inline const Bytes QueryAuthStatus = support::bytes("A5 00 06 50 E0 D8 00 2A 1D");

// Requests to store settings.
inline const Bytes Reset = support::bytes("A5 00 0A 50 E0 DA 01 06 14 00 00 01 01");
inline const Bytes StoreSsid = support::bytes("A5 00 0C 50 E0 DA 01 28 08 00 00 03 61 62 00");
inline const Bytes StorePreSharedKey = support::bytes("A5 00 0B 50 E0 DA 01 28 11 00 00 02 6B 00");
/// Mode "Managed", no security, channel 6, SSID "home".
inline const Bytes StoreHome = support::bytes(
    "A5 00 29 50 E0 DA 01 28 02 00 00 04 00 00 00 00 28 22 00 00 04 00 00 00 00 "
    "28 05 00 00 04 00 00 00 06 28 08 00 00 05 68 6F 6D 65 00");

// Replies. The last byte of a reply to settings is 1 if the adapter accepts the settings.
inline const Bytes Accepted = support::bytes("A5 00 03 50 E0 01");
inline const Bytes NotAccepted = support::bytes("A5 00 03 50 E0 00");
inline const Bytes Refused = support::bytes("A5 00 02 D4 E0");
/// The address 192.168.1.20.
inline const Bytes IpReply = support::bytes("A5 00 0C 50 E0 D8 00 0A 02 00 04 C0 A8 01 14");
/// The reply of the emulated printer to settings that it stores.
inline const Bytes SettingsStored = support::bytes("A5 00 05 50 E0 DA 01 01");

/// A record with the authentication status 2.
inline const Bytes AuthenticatedRecord = support::bytes("A5 00 09 50 E0 D8 00 2A 1D 00 01 02");
/// The reply of the emulated printer with the option --garbage.
inline const Bytes Garbage = support::bytes("00 FF 13 37 5A 80 7F 20 0A 99 C3 42");

/// Returns the packet whose bytes after the length field are `content`. So `content` starts with
/// the flag byte.
Bytes framed(const Bytes& content);

/// Returns a wrapper that contains `packet`.
Bytes wrapped(const Bytes& packet);

/// Returns a reply packet with the command E0 and the data `content`.
Bytes replyOf(const Bytes& content, std::uint8_t flag = 0x50);

/// Returns the bytes as hex pairs with single spaces between them.
std::string hexText(const Bytes& bytes);

/// Returns the dump that the program logs: 16 bytes per line, in hex and as characters.
std::string dumpOf(const Bytes& bytes);

}  // namespace packets
