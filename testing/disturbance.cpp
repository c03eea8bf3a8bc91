#include "testing/disturbance.h"

#include <algorithm>
#include <cerrno>

namespace support {

namespace {

Disturbance* currentDisturbance = nullptr;
/// How many doubles are at work, one inside the other.
int depth = 0;

constexpr long CallLimit = 2'000'000;
constexpr int FirstProbes = 3;
constexpr int ProbesBetween = 1000;

}  // namespace

Disturbance::Disturbance(const Plan& plan) : m_Plan(plan) {
  currentDisturbance = this;
}

Disturbance::~Disturbance() {
  currentDisturbance = nullptr;
}

Disturbance* Disturbance::current() {
  return currentDisturbance;
}

bool Disturbance::isRepeatedProbe(std::string_view call) {
  m_Probes = call == "select" ? m_Probes + 1 : 0;
  return m_Probes > FirstProbes && m_Probes % ProbesBetween != 0;
}

const Fault* Disturbance::faultOf(std::string_view call) {
  if (++m_Calls == CallLimit) {
    throw Endless();
  }
  const bool lastingNow = m_Plan.lasting && wasReached();
  if ((isRepeatedProbe(call) && !lastingNow) || call != m_Plan.call) {
    return nullptr;
  }
  ++m_Count;
  return m_Count == m_Plan.first || lastingNow ? &m_Plan.fault : nullptr;
}

OutsideCall::OutsideCall(std::string_view name)
    : m_Fault(depth > 0 || currentDisturbance == nullptr ? nullptr
                                                         : currentDisturbance->faultOf(name)) {
  ++depth;
}

OutsideCall::~OutsideCall() {
  --depth;
}

bool OutsideCall::fails() const {
  if (m_Fault == nullptr || m_Fault->error == 0) {
    return false;
  }
  errno = m_Fault->error;
  return true;
}

std::optional<ssize_t> OutsideCall::cut(std::size_t& size) const {
  if (fails()) {
    return -1;
  }
  if (m_Fault == nullptr) {
    return std::nullopt;
  }
  size = std::min(size, m_Fault->most);
  return size == 0 ? std::optional<ssize_t>(0) : std::nullopt;
}

}  // namespace support
