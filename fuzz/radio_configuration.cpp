// The input, in hex, is the settings that a host has stored. Semicolons separate them. Each one is
// group, object number and value. The requirement is that no stored byte can add a line to the
// configuration of wpa_supplicant, which runs as root.

#include "emulator/radio/radio_configuration.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <sstream>
#include <string>
#include <string_view>
#include <variant>

#include "fuzz_target.h"
#include "hex_input.h"

namespace {

using emulator::RadioConfiguration;

/// The names of all lines of a configuration.
constexpr auto Names = std::to_array<std::string_view>(
    {"ctrl_interface", "fast_reauth",   "network",     "ssid",     "scan_ssid", "scan_freq",
     "freq_list",      "mode",          "frequency",   "key_mgmt", "proto",     "pairwise",
     "group",          "psk",           "auth_alg",    "wep_key0", "wep_key1",  "wep_key2",
     "wep_key3",       "wep_tx_keyidx", "eapol_flags", "eap",      "identity",  "password",
     "phase2",         "client_cert",   "private_key", "ca_cert"});

void checkLine(std::string_view line) {
  if (line == "}") {
    return;
  }
  line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
  const std::string_view name = line.substr(0, line.find('='));
  fuzz::require(std::ranges::find(Names, name) != Names.end());
  fuzz::require(std::ranges::none_of(
      line, [](unsigned char character) { return std::iscntrl(character) != 0; }));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  emulator::SettingsStore settings;
  for (fuzz::Bytes& part : fuzz::readHexParts(fuzz::textOf(data, size))) {
    const npa::Byte group = fuzz::takeByte(part);
    const npa::Byte object = fuzz::takeByte(part);
    settings.set({group, object}, part);
  }
  emulator::CertificateStore certificates;
  certificates.add(emulator::CaCertificate{.name = "a", .fileName = {}, .pem = "CA\n"});
  certificates.add(emulator::DeviceCertificate{
      .name = "p", .keyPem = "KEY\n", .requestPem = {}, .certificatePem = "CERT\n"});
  const emulator::RadioPlan plan = planRadio(settings, certificates, "/f");
  const auto* const configuration = std::get_if<RadioConfiguration>(&plan);
  if (configuration == nullptr) {
    return 0;
  }
  const std::string& content = configuration->files.at(emulator::radio_files::Main);
  std::istringstream lines(content);
  for (std::string line; std::getline(lines, line);) {
    checkLine(line);
  }
  fuzz::require(content.ends_with("\n}\n") && std::ranges::count(content, '\n') < 40);
  return 0;
}
