#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "emulator/adapter/adapter.h"
#include "emulator/radio/control_socket.h"
#include "emulator/radio/lease_pipe.h"
#include "emulator/radio/private_folder.h"
#include "emulator/radio/radio_configuration.h"
#include "emulator/radio/radio_events.h"
#include "emulator/radio/radio_program.h"
#include "emulator/transport/transport.h"

namespace emulator {

/// The radio of an adapter: joins the network of the stored settings with wpa_supplicant on an
/// interface of this machine, gets an address with udhcpc, and reports the result to the adapter.
///
///     Radio radio("wlan1", adapter, log);
///     adapter.onChange([&] { radio.settingsChanged(); });
///     transport.accompany(&radio);
class Radio : public Activity {
 public:
  /// Adapter and log must outlive the radio. Tests replace the start of programs and the clock.
  /// Throws `std::system_error` on failure.
  Radio(std::string interface, Adapter& adapter, MessageLog& log,
        StartProgram start = startRadioProgram,
        std::function<Clock::time_point()> now = Clock::now);

  /// Makes the radio join the network of the settings that are stored now. A change of certificates
  /// alone makes the radio join again only if it changes the configuration of wpa_supplicant.
  void settingsChanged() { m_IsChanged = true; }

  void sendDue() override;
  void receiveAll() override;
  std::vector<pollfd> awaited() const override;
  std::optional<Clock::time_point> nextDue() const override;

  /// Returns the folder of the configuration.
  const std::string& folder() const { return m_Folder.path(); }

 private:
  /// Joins the network of the stored settings.
  void join();
  /// Ends the programs and removes the files of the configuration.
  void leave();
  void attach();
  /// Starts or ends udhcpc, and reports the state of the network to the adapter.
  void update();

  std::string m_Interface;
  Adapter& m_Adapter;
  MessageLog& m_Log;
  StartProgram m_Start;
  std::function<Clock::time_point()> m_Now;
  PrivateFolder m_Folder;
  LeasePipe m_Leases;
  bool m_IsChanged = false;
  unsigned long m_Revision = 0;  ///< the revision of the settings that the radio uses
  std::optional<RadioPlan> m_Plan;
  std::optional<RadioEvents> m_Events;  ///< set while wpa_supplicant runs
  std::unique_ptr<RadioProgram> m_Supplicant;
  std::unique_ptr<RadioProgram> m_Dhcp;
  std::optional<ControlSocket> m_Control;
  Clock::time_point m_AttachAt;  ///< when to try again to connect to the control socket
};

}  // namespace emulator
