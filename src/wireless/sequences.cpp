// The configuration sequences of wnpaGenerator: the settings that each command sends, and their
// order. This file also has the default run and the reset.

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "npa/packet.h"
#include "util/debug_line.h"
#include "util/format.h"
#include "util/output.h"
#include "util/utility.h"
#include "wireless/setting_encodings.h"
#include "wireless/wnpa_generator.h"

using Generator = wnpaGenerator;

/// One setting of a batch: a row of setting_encodings.h, or a member function of the generator that
/// encodes the setting.
class wnpaGenerator::Encoder {
 public:
  // Both constructors convert implicitly, so that a batch is a plain list of rows and members.
  // NOLINTBEGIN(google-explicit-constructor)
  constexpr Encoder(const SettingEncoding& row) : m_Row(&row) {}
  constexpr Encoder(int (Generator::*member)()) : m_Member(member) {}
  // NOLINTEND(google-explicit-constructor)

  /// Appends the objects of the setting to the packet of `generator`.
  void append(Generator& generator) const {
    if (m_Row != nullptr) {
      generator.encode(*m_Row);
    } else {
      (generator.*m_Member)();
    }
  }

 private:
  const SettingEncoding* m_Row = nullptr;
  int (Generator::*m_Member)() = nullptr;
};

/// Part of a batch: settings in the order in which they are sent.
struct wnpaGenerator::Section {
  std::span<const Encoder> encoders;
  /// The section is sent only if this encryption is configured. If this text is empty, the section
  /// is always sent.
  std::string_view encryption = {};
};

/// The batches: the settings of each command, in the order that the adapter requires. The arrays of
/// encoders come first, then the batches made of them.
struct wnpaGenerator::Batches {
  /// -c and the default run.
  static constexpr auto BasicSettings = std::to_array<Encoder>({
      encodings::Mode,
      &Generator::encodeSecurity,
      &Generator::encodeChannel,
      encodings::Ssid,
      &Generator::encodePassword,
  });

  /// The network of every security except 802.1x.
  static constexpr auto NetworkSettings = std::to_array<Encoder>({
      encodings::Mode,
      &Generator::encodeSecurity,
      &Generator::encodeChannel,
      encodings::Ssid,
  });

  /// All four keys are sent. For an empty key only the header of its object is sent.
  static constexpr auto WepKeys = std::to_array<Encoder>({
      encodings::WepKey1,
      encodings::WepKey2,
      encodings::WepKey3,
      encodings::WepKey4,
      &Generator::constructWEPTransmit,
  });

  /// A separate section, because WEP-STATIC sends the WEP keys without the WEP authentication.
  static constexpr auto WepAuth = std::to_array<Encoder>({&Generator::constructWEPAuth});

  /// WPA-PER and WPA-ENT send the same settings.
  static constexpr auto WpaSettings = std::to_array<Encoder>({
      encodings::Psk,
      encodings::Encryption,
  });

  /// The options of 802.1x. They are sent before the network, in a separate batch.
  static constexpr auto AuthenticationSettings = std::to_array<Encoder>({
      encodings::Encryption,
      &Generator::construct802AuthExtension,
      encodings::InnerAuth,
      encodings::Username,
      encodings::Password,
      &Generator::construct802ValidateCert,
  });

  /// Unlike in the other batches, the SSID precedes the channel.
  static constexpr auto AuthenticatedNetworkSettings = std::to_array<Encoder>({
      encodings::Mode,
      &Generator::encodeSecurity,
      encodings::Ssid,
      &Generator::encodeChannel,
  });

  // The batches. If a section names an encryption, the section is sent only if that encryption is
  // configured.

  static constexpr std::array Basic = {Section{BasicSettings}};
  static constexpr std::array Open = {Section{WepKeys, "WEP"}, Section{WepAuth, "WEP"},
                                      Section{NetworkSettings}};
  static constexpr std::array Shared = {Section{WepKeys}, Section{WepAuth},
                                        Section{NetworkSettings}};
  static constexpr std::array Wpa = {Section{WpaSettings}, Section{NetworkSettings}};
  static constexpr std::array AuthenticationOptions = {Section{AuthenticationSettings},
                                                       Section{WepKeys, "WEP-STATIC"}};
  static constexpr std::array AuthenticatedNetwork = {Section{AuthenticatedNetworkSettings}};
};

/// One advanced configuration: the security, the operation that sends the configuration, the name
/// in the log, and the batches. Each batch becomes one packet.
struct wnpaGenerator::AdvancedMode {
  std::string_view security;
  int (Generator::*configure)();
  const char* name;
  std::array<std::span<const Section>, 2> batches;

  /// Returns the row of a security, or null.
  static const AdvancedMode* find(std::string_view security) {
    static constexpr std::array rows = {
        AdvancedMode{"802.1x",
                     &Generator::config8021x,
                     "8021x",
                     {Batches::AuthenticationOptions, Batches::AuthenticatedNetwork}},
        AdvancedMode{"OPEN", &Generator::configOpen, "OPEN", {Batches::Open}},
        AdvancedMode{"SHARED", &Generator::configShared, "SHARED", {Batches::Shared}},
        AdvancedMode{"WPA-PER", &Generator::configWPAPersonal, "WPA-Personal", {Batches::Wpa}},
        AdvancedMode{"WPA-ENT", &Generator::configWPAEnt, "WPA-Ent", {Batches::Wpa}},
    };
    const auto* const row = std::ranges::find(rows, security, &AdvancedMode::security);
    return row == rows.end() ? nullptr : row;
  }
};

namespace {

/// Capacity in bytes that is reserved for a packet. Usual batches are smaller.
constexpr std::size_t UsualPacketSize = 512;

}  // namespace

void wnpaGenerator::encodeBatch(std::span<const Section> sections) {
  // A new vector replaces the old vector. This frees the memory of the old vector, and the program
  // clears memory that it frees. So no key stays in the old memory.
  m_Packet = std::vector<unsigned char>();
  m_Packet.reserve(UsualPacketSize);
  for (const Section& section : sections) {
    if (section.encryption.empty() || section.encryption == m_Configuration->get802Encryption()) {
      for (const Encoder& encoder : section.encoders) {
        encoder.append(*this);
      }
    }
  }
}

void wnpaGenerator::frameBatch() {
  constructAtomicGrouping(static_cast<int>(m_Packet.size()));
  if (m_WrapMode) {
    constructWrapping(m_Packet, static_cast<int>(m_Packet.size()));
  }
}

int wnpaGenerator::sendBatch(Dump dump) {
  frameBatch();
  if (!npa::canBeFramed(m_Packet.size())) {
    return -1;
  }
  const int size = static_cast<int>(m_Packet.size());
  if (dump == Dump::Yes) {
    Utility::ShowBytes(m_Packet.data(), size);
  }
  return m_Sender.setConfig(m_Packet.data(), size);
}

int wnpaGenerator::configure(const char* announcement, std::span<const Section> sections) {
  util::debugLine("%s", announcement);
  encodeBatch(sections);
  return sendBatch(Dump::Yes);
}

int wnpaGenerator::constructBasic() {
  encodeBatch(Batches::Basic);
  frameBatch();
  return static_cast<int>(m_Packet.size());
}

int wnpaGenerator::configBasic() {
  util::debugLine("Basic config...");
  encodeBatch(Batches::Basic);
  const int result = sendBatch(Dump::No);
  util::debugLine("Basic config ret = %d", result);
  return result;
}

int wnpaGenerator::configAdvanced() {
  util::debugLine("Advanced config...");
  const std::string& security = m_Configuration->getSecurity();
  util::debugLine("Master security = '%s'", security.c_str());
  const AdvancedMode* const mode = AdvancedMode::find(security);
  // An unknown security is no error: nothing is sent, and the command succeeds.
  if (mode == nullptr) {
    return 0;
  }
  const int result = (this->*mode->configure)();
  util::debugLine("Adv %s ret = %d", mode->name, result);
  return result;
}

std::vector<npa::Bytes> wnpaGenerator::advancedPackets() {
  std::vector<npa::Bytes> packets;
  if (const AdvancedMode* const mode = AdvancedMode::find(m_Configuration->getSecurity())) {
    for (const auto& batch : mode->batches) {
      if (!batch.empty()) {
        encodeBatch(batch);
        constructAtomicGrouping(static_cast<int>(m_Packet.size()));
        packets.push_back(std::exchange(m_Packet, {}));
      }
    }
  }
  return packets;
}

int wnpaGenerator::configOpen() {
  return configure("Configuring Open Mode...", Batches::Open);
}

int wnpaGenerator::configShared() {
  return configure("Configuring Shared Mode...", Batches::Shared);
}

int wnpaGenerator::configWPAPersonal() {
  return configure("Configuring WPA Personal...", Batches::Wpa);
}

int wnpaGenerator::configWPAEnt() {
  return configure("Configuring WPA Enterprise...", Batches::Wpa);
}

int wnpaGenerator::config8021x() {
  util::debugLine("Configuring for 8021x...");
  int result = 0;
  // The network is sent only if the adapter accepts the options. Otherwise the result stays 0: the
  // command does not fail, on purpose.
  if (set8021xOptions() == 0) {
    encodeBatch(Batches::AuthenticatedNetwork);
    result = sendBatch(Dump::Yes);
  }
  get802AuthStatus();
  return result;
}

int wnpaGenerator::set8021xOptions() {
  const int result = configure("Setting 8021x Options...", Batches::AuthenticationOptions);
  util::debugLine("Setting 802.1x ret = %d", result);
  return result;
}

int wnpaGenerator::generate() {
  // This packet is only dumped. configBasic builds the packet that is sent.
  const int size = constructBasic();
  std::string dump;
  for (const unsigned char byte : m_Packet) {
    dump.append(util::formatted("%x ", byte));
  }
  util::writeDiagnostic(dump);
  util::showProgress(
      "Configuring the printer....\n"
      "Resetting the printer....\n"
      "Connecting to wireless network....");
  // The result is -1 if the adapter refused the packet or did not answer. Then the settings are
  // sent again in a bare packet.
  if (configBasic() == -1) {
    setWrapMode(false);
    configBasic();
  }
  getTroubleCode();
  util::showProgress(
      "Acquiring network address....\n"
      "IP-ADDRESS : ");
  getIP();
  return size;
}

int wnpaGenerator::reset() {
  std::vector<unsigned char> request = outgoing(npa::ResetPacket);
  return m_Sender.resetINA(request.data(), static_cast<int>(request.size()));
}
