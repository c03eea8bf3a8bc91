// Radio: starts and ends its programs, and reads what they report.

#include "emulator/radio/radio.h"

#include <chrono>
#include <filesystem>
#include <utility>
#include <variant>

namespace emulator {

namespace {

constexpr std::chrono::milliseconds PauseBetweenAttaches{100};
constexpr std::size_t Security8021x = 3;
/// udhcpc sends 4 requests, 2 s apart. If it gets no address, it reports a failure and starts
/// again.
constexpr const char* DhcpRequests = "4";
constexpr const char* DhcpPause = "2";

}  // namespace

Radio::Radio(std::string interface, Adapter& adapter, MessageLog& log, StartProgram start,
             std::function<Clock::time_point()> now)
    : m_Interface(std::move(interface)),
      m_Adapter(adapter),
      m_Log(log),
      m_Start(std::move(start)),
      m_Now(std::move(now)),
      m_Leases(m_Folder),
      m_IsChanged(hasStoredNetwork(adapter.settings())) {
  m_Adapter.report({});
}

void Radio::join() {
  const SettingsStore& settings = m_Adapter.settings();
  RadioPlan plan = planRadio(settings, m_Adapter.certificates(), m_Folder.path());
  if (m_Plan && m_Revision == settings.revision() && *m_Plan == plan) {
    return;
  }
  leave();
  m_Revision = settings.revision();
  m_Plan = std::move(plan);
  const bool authenticates = settings.number(npa::settings::Security) == Security8021x;
  if (const auto* const problem = std::get_if<RadioProblem>(&*m_Plan)) {
    constexpr npa::Byte caMissing = 11;
    constexpr npa::Byte notConnected = 3;
    const RadioProblemInfo& info = infoOf(*problem);
    m_Log.note(std::string("radio: ").append(info.text));
    const npa::Byte status = info.membership == Membership::CaMissing ? caMissing : notConnected;
    m_Adapter.report({info.membership, authenticates ? status : npa::Byte{0}, {}});
    return;
  }
  for (const auto& [name, content] : std::get<RadioConfiguration>(*m_Plan).files) {
    m_Folder.write(name, content);
  }
  m_Log.note("radio: joins the network on " + m_Interface);
  m_Events.emplace(authenticates);
  // With -W wpa_supplicant waits until a program has attached to its control socket.
  m_Supplicant = m_Start({"wpa_supplicant", "-W", "-D", "nl80211,wext", "-i", m_Interface, "-c",
                          m_Folder.path(radio_files::Main)});
  attach();
  update();
}

void Radio::leave() {
  m_Dhcp.reset();
  m_Supplicant.reset();
  m_Control.reset();
  m_Events.reset();
  while (m_Leases.next()) {
    // drops what the former udhcpc has reported
  }
  for (const char* const name :
       {radio_files::Main, radio_files::Authorities, radio_files::Certificate, radio_files::Key}) {
    m_Folder.remove(name);
  }
}

void Radio::attach() {
  m_Control =
      ControlSocket::connect(m_Folder.path(std::string(radio_files::Control) + "/" + m_Interface),
                             m_Folder.path("events"));
  if (m_Control) {
    m_Control->send("ATTACH");
  }
  m_AttachAt = m_Now() + PauseBetweenAttaches;
}

void Radio::update() {
  if (!m_Events) {
    return;
  }
  if (!m_Events->isConnected()) {
    m_Dhcp.reset();
  } else if (!m_Dhcp) {
    m_Dhcp = m_Start({"udhcpc", "-f", "-R", "-i", m_Interface, "-s", m_Leases.script(), "-t",
                      DhcpRequests, "-T", DhcpPause, "-A", DhcpPause});
  }
  m_Adapter.report(m_Events->network());
}

void Radio::sendDue() {
  if (std::exchange(m_IsChanged, false)) {
    join();
  }
  if (m_Supplicant && m_Supplicant->hasEnded()) {
    m_Log.note("radio: wpa_supplicant has ended");
    leave();
    m_Adapter.report({Membership::UnusableSettings, 0, {}});
  }
  if (m_Supplicant && !m_Control && m_AttachAt <= m_Now()) {
    attach();
  }
}

void Radio::receiveAll() {
  if (!m_Events) {
    return;
  }
  while (const auto event = m_Control ? m_Control->receive() : std::nullopt) {
    m_Events->take(*event);
    update();
  }
  while (const auto lease = m_Leases.next()) {
    m_Events->take(*lease);
  }
  update();
}

std::vector<pollfd> Radio::awaited() const {
  std::vector<pollfd> polled = {{m_Leases.descriptor(), POLLIN, 0}};
  if (m_Control) {
    polled.push_back({m_Control->descriptor(), POLLIN, 0});
  }
  return polled;
}

std::optional<Activity::Clock::time_point> Radio::nextDue() const {
  return m_Supplicant && !m_Control ? std::optional(m_AttachAt) : std::nullopt;
}

}  // namespace emulator
