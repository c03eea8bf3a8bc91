// The adapter's network, and its restart after settings are stored.

#include <array>
#include <chrono>
#include <optional>
#include <string>
#include <utility>

#include "emulator/adapter/adapter.h"
#include "emulator/adapter/authentication.h"

namespace emulator {

Membership Adapter::membership() const {
  if (m_Personality.networks.empty()) {
    return Membership::Joined;
  }
  if (!hasStoredNetwork(m_Settings)) {
    return m_Personality.ssid.empty() ? Membership::NoSuchNetwork : Membership::Joined;
  }
  const Authentication authentication(m_Settings, m_Certificates.store(), m_Personality.networks);
  return authentication.lacksCaCertificate() ? Membership::CaMissing
                                             : findNetwork(m_Personality.networks, m_Settings);
}

void Adapter::join() {
  if (m_Personality.networks.empty()) {
    return;
  }
  const Membership now = membership();
  presetNetworkValues(now);
  startCounting(m_Now());
  m_Log.note(membershipText(now));
}

void Adapter::report(const LiveNetwork& network) {
  if (m_Live == network) {
    return;
  }
  m_Live = network;
  m_Settings.preset(npa::settings::IpAddress, network.address);
  const auto code = static_cast<npa::Byte>(network.membership);
  m_Settings.preset(npa::settings::TroubleCode, std::array<npa::Byte, 4>{0, 0, 0, code});
  m_Log.note(std::string("radio: ").append(membershipText(network.membership)));
}

void Adapter::presetNetworkValues(Membership membership) {
  using Four = std::array<npa::Byte, 4>;
  if (m_Live) {
    return;
  }
  const bool isJoined = membership == Membership::Joined;
  const auto code = isJoined ? m_Personality.troubleCode : static_cast<npa::Byte>(membership);
  m_Settings.preset(npa::settings::IpAddress, isJoined ? m_Personality.ipAddress : Four{});
  m_Settings.preset(npa::settings::TroubleCode, Four{0, 0, 0, code});
}

void Adapter::startCounting(Clock::time_point start) {
  m_Start = start;
  m_Queries.clear();
}

void Adapter::restart(std::chrono::milliseconds delay) {
  if (!m_Personality.restartAfterStore) {
    return;
  }
  const Clock::time_point begin = m_Now() + delay;
  m_Restart = {begin, begin + *m_Personality.restartAfterStore};
  m_RestartIsNew = true;
  m_Reader.dropPending();
  startCounting(m_Restart.end);
  m_Log.note("restarts: no answer for " + std::to_string(m_Personality.restartAfterStore->count()) +
             " s");
}

std::optional<Adapter::Restart> Adapter::postponeRestart(std::chrono::seconds delay) {
  if (!std::exchange(m_RestartIsNew, false)) {
    return std::nullopt;
  }
  m_Restart.begin += delay;
  m_Restart.end += delay;
  startCounting(m_Restart.end);
  return m_Restart;
}

}  // namespace emulator
