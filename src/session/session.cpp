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
/// The pause before the next look at a printer that is not there, or is not in the network yet.
constexpr unsigned int ConfirmPauseSeconds = 1;

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
  m_HadTwin = hasTwin(m_Report.printer, m_Machine);
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
  AdapterState& state = m_Report.state;
  const std::time_t start = util::nowInSeconds();
  do {
    const bool isThere = follow();
    state = {};
    if (isThere) {
      state.ssid = m_Adapter->readSsid();
      if (state.ssid) {
        readRest(profile.security == Security::Enterprise);
      }
      if (!isStillThere()) {
        state = {};  // another printer may have answered
      }
    }
    if (isInterrupted()) {
      return Result::Interrupted;
    }
    if (isJoined(profile)) {
      return Result::Confirmed;
    }
    // The exchange with a silent printer has a pause.
    if (!isThere || state.ssid) {
      util::pauseSeconds(ConfirmPauseSeconds);
    }
    if (isInterrupted()) {
      return Result::Interrupted;
    }
  } while (util::nowInSeconds() - start < waitSeconds);
  return Result::Stored;
}

bool Session::follow() {
  const bool wasSilent = !m_Report.state.ssid;
  const auto found = findAgain(m_Report.printer, m_HadTwin, m_Machine);
  if (!found || wasSilent) {
    enter(Step::WaitForPrinter);
  }
  if (!found || (wasSilent && tryOpen(*found, m_Machine))) {
    return false;
  }
  const bool moved = found->device != m_Report.printer.device;
  if (moved || found->address != m_Report.printer.address) {
    m_Report.printer = *found;
  }
  if (moved) {
    m_Adapter = std::make_unique<Adapter>(found->device);
  }
  enter(Step::Confirm);
  return true;
}

bool Session::isStillThere() const {
  const auto found = findAgain(m_Report.printer, m_HadTwin, m_Machine);
  return found && found->device == m_Report.printer.device &&
         found->address == m_Report.printer.address;
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
