// If the first line of the input is "802.1x", the network authenticates. Each further line is a
// report of udhcpc's script, such as "bound 10.0.0.5", or else an event of wpa_supplicant.

#include "emulator/radio/radio_events.h"

#include <array>
#include <sstream>
#include <string>

#include "emulator/radio/lease_pipe.h"
#include "fuzz_target.h"
#include "npa/status_texts.h"

namespace {

using emulator::LiveNetwork;
using emulator::Membership;
using emulator::RadioEvents;

constexpr std::array<npa::Byte, 4> NoAddress{};

/// Requires the conditions that hold after any sequence of events.
void check(const RadioEvents& events) {
  const LiveNetwork& network = events.network();
  const bool isJoined = network.membership == Membership::Joined;
  fuzz::require(network.authStatus < npa::AuthStatusTexts.size());
  fuzz::require(network.membership <= Membership::Joining);
  fuzz::require(!isJoined || events.isConnected());
  fuzz::require(events.isConnected() || network.address == NoAddress);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::istringstream lines(fuzz::textOf(data, size));
  std::string line;
  std::getline(lines, line);
  RadioEvents events(line == "802.1x");
  while (std::getline(lines, line)) {
    if (const auto lease = emulator::parseLease(line)) {
      events.take(*lease);
    } else {
      events.take(line);
    }
    check(events);
  }
  // After any failure the radio must still be able to join.
  events.take("CTRL-EVENT-CONNECTED");
  events.take(emulator::parseLease("bound 10.0.0.5").value());
  check(events);
  fuzz::require(events.network().membership == Membership::Joined);
  events.take("CTRL-EVENT-DISCONNECTED");
  check(events);
  fuzz::require(!events.isConnected());
  return 0;
}
