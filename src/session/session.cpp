#include "session/session.h"

#include <ctime>
#include <utility>

#include "npa/packet.h"
#include "session/discovery.h"
#include "util/clock.h"
#include "wireless/wnpa_generator.h"

namespace session {

namespace {

/// The SSID query is repeated once if no SSID arrives.
constexpr int QueryAttempts = 2;
/// The pause between two searches for a printer that is not there.
constexpr unsigned int AbsentPauseSeconds = 1;
/// The pause between two readings of an adapter that is not in the network yet.
constexpr unsigned int JoiningPauseSeconds = 1;

constexpr npa::Byte NoTrouble = 0;
constexpr npa::Byte Authenticated = 2;

Result resultOf(npa::Outcome::Kind kind, Result accepted) {
  switch (kind) {
    case npa::Outcome::Kind::Accepted:
      return accepted;
    case npa::Outcome::Kind::NoAnswer:
      return Result::NoAnswer;
    case npa::Outcome::Kind::Refused:
    case npa::Outcome::Kind::Unexpected:
      break;
  }
  return Result::Refused;
}

}  // namespace

Result resultOf(OpenFailure::Kind kind) {
  switch (kind) {
    case OpenFailure::Kind::NoPermission:
      return Result::NoPermission;
    case OpenFailure::Kind::Busy:
      return Result::Busy;
    case OpenFailure::Kind::NoSuchPrinter:
    case OpenFailure::Kind::Failed:
      break;
  }
  return Result::NoSuchPrinter;
}

Session::Transport::Transport(HCUSBTransport::Observer observer) {
  HCUSBTransport* const transport = HCUSBTransport::GetInstance();
  transport->setWaiting(HCUSBTransport::Waiting::Blocking);
  transport->observeTransfers(std::move(observer));
}

Session::Transport::~Transport() {
  HCUSBTransport::DestroyInstance();
}

Session::Session(Printer printer, Hooks hooks, Machine machine)
    : m_Hooks(std::move(hooks)), m_Transport(m_Hooks.onTransfer), m_Machine(std::move(machine)) {
  m_Report.printer = std::move(printer);
}

void Session::enter(Step step) const {
  if (m_Hooks.onStep) {
    m_Hooks.onStep(step);
  }
}

bool Session::isInterrupted() const {
  return m_Hooks.isInterrupted && m_Hooks.isInterrupted();
}

Report Session::finish(Result result) {
  m_Adapter.reset();
  m_Report.result = result;
  return m_Report;
}

bool Session::open() {
  enter(Step::Open);
  m_Report.openFailure = tryOpen(m_Report.printer, m_Machine);
  if (m_Report.openFailure) {
    return false;
  }
  m_Adapter = std::make_unique<Adapter>(m_Report.printer.device);
  return true;
}

Report Session::status() {
  if (!open()) {
    return finish(resultOf(m_Report.openFailure->kind));
  }
  enter(Step::ReadStatus);
  AdapterState& state = m_Report.state;
  for (int attempt = 0; !state.ssid && attempt < QueryAttempts && !isInterrupted(); ++attempt) {
    state.ssid = m_Adapter->readSsid();
  }
  readRest(true);
  const bool answered = state.ssid || state.address || state.troubleCode || state.authentication;
  const Result result = answered ? Result::Ok : Result::NoAnswer;
  return finish(isInterrupted() ? Result::Interrupted : result);
}

void Session::readRest(bool enterprise) {
  AdapterState& state = m_Report.state;
  state.troubleCode.reset();
  state.address.reset();
  state.authentication.reset();
  if (!isInterrupted()) {
    state.troubleCode = m_Adapter->readTroubleCode();
  }
  if (!isInterrupted()) {
    state.address = m_Adapter->readAddress();
  }
  if (enterprise && !isInterrupted()) {
    state.authentication = m_Adapter->readAuthentication();
  }
}

bool Session::isJoined(const Profile& profile) const {
  const AdapterState& state = m_Report.state;
  return state.ssid == profile.ssid && state.troubleCode == NoTrouble && state.address &&
         (profile.security != Security::Enterprise || state.authentication == Authenticated);
}

Report Session::set(Profile& profile, const SetOptions& options) {
  if (!open()) {
    return finish(resultOf(m_Report.openFailure->kind));
  }
  enter(Step::ReadSettings);
  for (int attempt = 0; !m_Report.ssidBefore && attempt < QueryAttempts && !isInterrupted();
       ++attempt) {
    m_Report.ssidBefore = m_Adapter->readSsid();
  }
  m_Report.state.ssid = m_Report.ssidBefore;
  if (!options.force && m_Report.ssidBefore == profile.ssid) {
    readRest(profile.security == Security::Enterprise);
    if (isJoined(profile)) {
      return finish(Result::Unchanged);
    }
  }
  if (isInterrupted()) {
    return finish(Result::Interrupted);
  }
  if (!m_Report.ssidBefore) {
    return finish(Result::NoAnswer);
  }
  const Result stored = store(profile);
  profile.secret.clear();
  if (stored != Result::Stored || options.waitSeconds == 0) {
    return finish(stored);
  }
  return finish(confirm(profile, options.waitSeconds));
}

Result Session::store(const Profile& profile) {
  enter(Step::Store);
  const std::unique_ptr<configDetails> settings = configurationOf(profile, m_Report.printer.device);
  for (const npa::Bytes& packet : wnpaGenerator(settings.get()).advancedPackets()) {
    if (isInterrupted()) {
      return Result::Interrupted;
    }
    m_Report.sentSettings = true;
    const Result result = resultOf(m_Adapter->store(packet), Result::Stored);
    if (isInterrupted()) {
      return Result::Interrupted;
    }
    if (result != Result::Stored) {
      return result;
    }
  }
  return Result::Stored;
}

Result Session::confirm(const Profile& profile, int waitSeconds) {
  enter(Step::Confirm);
  AdapterState& state = m_Report.state;
  const std::time_t start = util::nowInSeconds();
  do {
    state.ssid = m_Adapter->readSsid();
    if (isInterrupted()) {
      return Result::Interrupted;
    }
    if (state.ssid) {
      readRest(profile.security == Security::Enterprise);
      if (isJoined(profile)) {
        return Result::Confirmed;
      }
      util::pauseSeconds(JoiningPauseSeconds);
    } else if (!follow()) {
      util::pauseSeconds(AbsentPauseSeconds);
    }
    if (isInterrupted()) {
      return Result::Interrupted;
    }
  } while (util::nowInSeconds() - start < waitSeconds);
  return Result::Stored;
}

bool Session::follow() {
  enter(Step::WaitForPrinter);
  const auto found = findAgain(m_Report.printer, m_Machine);
  if (!found || tryOpen(*found, m_Machine)) {
    return false;
  }
  if (found->device != m_Report.printer.device) {
    m_Report.printer = *found;
    m_Adapter = std::make_unique<Adapter>(found->device);
  }
  enter(Step::Confirm);
  return true;
}

Report Session::reset() {
  if (!open()) {
    return finish(resultOf(m_Report.openFailure->kind));
  }
  enter(Step::Reset);
  m_Report.sentReset = true;
  const Result result = resultOf(m_Adapter->reset(), Result::Ok);
  return finish(isInterrupted() ? Result::Interrupted : result);
}

}  // namespace session
