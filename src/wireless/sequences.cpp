// The configuration sequences of wnpaGenerator.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <string_view>
#include <type_traits>
#include <vector>

#include "npa/packet.h"
#include "util/debug_line.h"
#include "util/utility.h"
#include "wireless/wnpa_generator.h"

/// An encoder with or without a running total, which none looks at.
using Encoder = int (*)(wnpaGenerator&);

/// Settings of a batch, in the order in which they are sent.
struct Section {
  std::span<const Encoder> encoders;
  /// The encryption that they are for; empty for any.
  std::string_view encryption = {};
};

namespace {

using G = wnpaGenerator;

template <auto Construct>
int call(wnpaGenerator& generator) {
  if constexpr (std::is_invocable_v<decltype(Construct), wnpaGenerator&>) {
    return (generator.*Construct)();
  } else {
    int total = 0;
    return (generator.*Construct)(&total);
  }
}

constexpr std::array<Encoder, 5> BasicSettings = {
    call<&G::constructMode>, call<&G::constructSecurity>, call<&G::constructChannel>,
    call<&G::constructSSID>, call<&G::constructPasswd>};

constexpr std::array<Encoder, 4> NetworkSettings = {
    call<&G::constructMode>, call<&G::constructSecurity>, call<&G::constructChannel>,
    call<&G::constructSSID>};

constexpr std::array<Encoder, 5> WepKeys = {call<&G::constructWEPKey1>, call<&G::constructWEPKey2>,
                                            call<&G::constructWEPKey3>, call<&G::constructWEPKey4>,
                                            call<&G::constructWEPTransmit>};

constexpr std::array<Encoder, 1> WepAuth = {call<&G::constructWEPAuth>};

constexpr std::array<Encoder, 2> WpaSettings = {call<&G::constructPSK>,
                                                call<&G::construct802EncryptMode>};

constexpr std::array<Encoder, 6> AuthenticationSettings = {
    call<&G::construct802EncryptMode>, call<&G::construct802AuthExtension>,
    call<&G::construct802AuthInner>,   call<&G::construct802Username>,
    call<&G::construct802Passwd>,      call<&G::construct802ValidateCert>};

/// Here the SSID goes before the channel.
constexpr std::array<Encoder, 4> AuthenticatedNetworkSettings = {
    call<&G::constructMode>, call<&G::constructSecurity>, call<&G::constructSSID>,
    call<&G::constructChannel>};

// The batches.
constexpr std::array Basic = {Section{BasicSettings}};
constexpr std::array Open = {Section{WepKeys, "WEP"}, Section{WepAuth, "WEP"},
                             Section{NetworkSettings}};
constexpr std::array Shared = {Section{WepKeys}, Section{WepAuth}, Section{NetworkSettings}};
constexpr std::array Wpa = {Section{WpaSettings}, Section{NetworkSettings}};
constexpr std::array AuthenticationOptions = {Section{AuthenticationSettings},
                                              Section{WepKeys, "WEP-STATIC"}};
constexpr std::array AuthenticatedNetwork = {Section{AuthenticatedNetworkSettings}};

/// The sequence of an advanced configuration for one security.
struct AdvancedMode {
  std::string_view security;
  int (wnpaGenerator::*configure)();
  const char* name;
};

constexpr std::array AdvancedModes = {
    AdvancedMode{"802.1x", &G::config8021x, "8021x"},
    AdvancedMode{"OPEN", &G::configOpen, "OPEN"},
    AdvancedMode{"SHARED", &G::configShared, "SHARED"},
    AdvancedMode{"WPA-PER", &G::configWPAPersonal, "WPA-Personal"},
    AdvancedMode{"WPA-ENT", &G::configWPAEnt, "WPA-Ent"},
};

/// What no batch without certificates exceeds, so that its memory is taken at once.
constexpr std::size_t UsualPacketSize = 512;

/// Stores one setting, the adapter's reset, as 1.
constexpr std::array<npa::Byte, 13> ResetPacket = {0xA5, 0x00, 0x0A, 0x50, 0xE0, 0xDA, 0x01,
                                                   0x06, 0x14, 0x00, 0x00, 0x01, 0x01};

/// Writes a progress text and makes sure that it is seen before the wait that follows.
void showProgress(const char* text) {
  std::fputs(text, stdout);
  std::fflush(stdout);
}

}  // namespace

int wnpaGenerator::encodeBatch(std::span<const Section> sections) {
  // Not only emptied: the memory of the packet before, keys included, is released and so cleared.
  m_Packet = std::vector<unsigned char>();
  m_Packet.reserve(UsualPacketSize);
  int size = 0;
  for (const Section& section : sections) {
    if (section.encryption.empty() || section.encryption == m_Configuration->get802Encryption()) {
      for (const Encoder encoder : section.encoders) {
        size += encoder(*this);
      }
    }
  }
  return size;
}

int wnpaGenerator::frameBatch(int size) {
  size = constructAtomicGrouping(size);
  return m_WrapMode ? constructWrapping(m_Packet, size) : size;
}

int wnpaGenerator::sendBatch(int size, bool dump) {
  size = frameBatch(size);
  if (!npa::canBeFramed(m_Packet.size())) {
    return -1;
  }
  if (dump) {
    Utility::ShowBytes(m_Packet.data(), size);
  }
  return m_Exchange.setConfig(m_Packet.data(), size);
}

int wnpaGenerator::configure(const char* announcement, std::span<const Section> sections) {
  util::debugLine("%s", announcement);
  return sendBatch(encodeBatch(sections), true);
}

int wnpaGenerator::constructBasic() {
  return frameBatch(encodeBatch(Basic));
}

int wnpaGenerator::configBasic() {
  util::debugLine("Basic config...");
  const int result = sendBatch(encodeBatch(Basic), false);
  util::debugLine("Basic config ret = %d", result);
  return result;
}

int wnpaGenerator::configAdvanced() {
  util::debugLine("Advanced config...");
  const std::string& security = m_Configuration->getSecurity();
  util::debugLine("Master security = '%s'", security.c_str());
  const auto* const mode = std::ranges::find(AdvancedModes, security, &AdvancedMode::security);
  if (mode == AdvancedModes.end()) {
    return 0;
  }
  const int result = (this->*mode->configure)();
  util::debugLine("Adv %s ret = %d", mode->name, result);
  return result;
}

int wnpaGenerator::configOpen() {
  return configure("Configuring Open Mode...", Open);
}

int wnpaGenerator::configShared() {
  return configure("Configuring Shared Mode...", Shared);
}

int wnpaGenerator::configWPAPersonal() {
  return configure("Configuring WPA Personal...", Wpa);
}

int wnpaGenerator::configWPAEnt() {
  return configure("Configuring WPA Enterprise...", Wpa);
}

int wnpaGenerator::config8021x() {
  util::debugLine("Configuring for 8021x...");
  int result = 0;
  // Options that were not accepted are no failure here.
  if (set8021xOptions() == 0) {
    result = sendBatch(encodeBatch(AuthenticatedNetwork), true);
  }
  get802AuthStatus();
  return result;
}

int wnpaGenerator::set8021xOptions() {
  const int result = configure("Setting 8021x Options...", AuthenticationOptions);
  util::debugLine("Setting 802.1x ret = %d", result);
  return result;
}

int wnpaGenerator::generate() {
  const int size = constructBasic();
  for (const unsigned char byte : m_Packet) {
    std::fprintf(stderr, "%x ", byte);
  }
  showProgress(
      "Configuring the printer....\n"
      "Resetting the printer....\n"
      "Connecting to wireless network....");
  if (configBasic() == -1) {
    setWrapMode(false);
    configBasic();
  }
  getTroubleCode();
  showProgress(
      "Acquiring network address....\n"
      "IP-ADDRESS : ");
  getIP();
  return size;
}

int wnpaGenerator::reset() {
  std::vector<unsigned char> request = outgoing(ResetPacket);
  return m_Exchange.resetINA(request.data(), static_cast<int>(request.size()));
}
