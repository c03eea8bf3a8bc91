#include "testing/fault_injection.h"

#include <algorithm>
#include <cerrno>

namespace support {

namespace {

FaultInjection* currentDisturbance = nullptr;
/// How many intercepted calls are in progress. A call inside another one never fails.
int depth = 0;

constexpr long CallLimit = 2'000'000;
/// In a wait, these first calls of select may fail, and then one call in `ProbesBetween`. A run for
/// each call would take too long.
constexpr int FirstProbes = 3;
constexpr int ProbesBetween = 10;

}  // namespace

FaultInjection::FaultInjection(const Plan& plan) : m_Plan(plan) {
  currentDisturbance = this;
}

FaultInjection::~FaultInjection() {
  currentDisturbance = nullptr;
}

FaultInjection* FaultInjection::current() {
  return currentDisturbance;
}

bool FaultInjection::isRepeatedProbe(std::string_view call) {
  m_Probes = call == "select" ? m_Probes + 1 : 0;
  return m_Probes > FirstProbes && m_Probes % ProbesBetween != 0;
}

const Fault* FaultInjection::faultOf(std::string_view call) {
  if (++m_Calls == CallLimit) {
    throw EndlessRun();
  }
  const bool lastingNow = m_Plan.lasting && wasReached();
  if ((isRepeatedProbe(call) && !lastingNow) || call != m_Plan.call) {
    return nullptr;
  }
  ++m_Count;
  return m_Count == m_Plan.first || lastingNow ? &m_Plan.fault : nullptr;
}

InterceptedCall::InterceptedCall(std::string_view name)
    : m_Fault(depth > 0 || currentDisturbance == nullptr ? nullptr
                                                         : currentDisturbance->faultOf(name)) {
  ++depth;
}

InterceptedCall::~InterceptedCall() {
  --depth;
}

bool InterceptedCall::fails() const {
  if (m_Fault == nullptr || m_Fault->error == 0) {
    return false;
  }
  errno = m_Fault->error;
  return true;
}

std::optional<ssize_t> InterceptedCall::cut(std::size_t& size) const {
  if (fails()) {
    return -1;
  }
  if (m_Fault == nullptr) {
    return std::nullopt;
  }
  size = std::min(size, m_Fault->maxBytes);
  return size == 0 ? std::optional<ssize_t>(0) : std::nullopt;
}

}  // namespace support
