#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "session/adapter.h"
#include "session/device_access.h"
#include "session/machine.h"
#include "session/printer.h"
#include "session/profile.h"
#include "transport/hcusb_transport.h"

namespace session {

/// What a session is doing.
enum class Step {
  Open,
  ReadSettings,
  ReadStatus,
  Store,
  Confirm,
  WaitForPrinter,
  Reset,
  ReadCertificates,
  MakeRequest,
  InstallCertificate,
  DeleteCertificate,
};

/// How a command on one printer ended.
enum class Result {
  Ok,             ///< done: the status was read, or the adapter was reset
  Unchanged,      ///< the printer was in the network already, nothing was stored
  Confirmed,      ///< stored, and the printer is in the network
  Stored,         ///< accepted, but not confirmed in time, or no confirmation was wanted
  DryRun,         ///< nothing was opened
  Invalid,        ///< the settings are wrong, nothing was opened
  NoSuchPrinter,  ///< the printer is not there
  NoPermission,   ///< the device is not for this user
  Busy,           ///< another process uses the device
  Refused,        ///< the adapter refused the request
  NoAnswer,       ///< the adapter did not answer
  Interrupted,    ///< the user ended the command
  Failed,         ///< the front end gave up: its process for this printer died or took too long
};

/// Returns the result for a printer that cannot be opened.
[[nodiscard]] Result resultOf(OpenFailure::Kind kind);

/// What happened to one printer.
struct Report {
  Printer printer;
  Result result = Result::Ok;
  std::optional<std::string> ssidBefore;
  AdapterState state;
  std::optional<OpenFailure> openFailure;
  /// True if settings were sent. After a failure they may have been stored or not.
  bool sentSettings = false;
};

/// The work with one printer, from the check that it can be opened to the confirmation. Prints
/// nothing: the result is a `Report`.
///
///     Session session(printer, {.onStep = showStep});
///     const Report report = session.set(profile, {.waitSeconds = 60});
class Session {
 public:
  /// What a front end contributes. Each may be empty.
  struct Hooks {
    std::function<void(Step)> onStep = {};
    /// Receives the bytes of each transfer to and from the printer.
    HCUSBTransport::Observer onTransfer = {};
    /// Returns true once the user has asked to end. The exchange under way is finished first.
    std::function<bool()> isInterrupted = {};
  };

  /// A reference to the process's transport, which waits for bytes without polling as
  /// long as this object lives.
  class Transport {
   public:
    explicit Transport(HCUSBTransport::Observer observer);
    ~Transport();
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;
  };

  struct SetOptions {
    int waitSeconds = 60;  ///< the time for the confirmation; 0: accepted is enough
    bool force = false;    ///< store even if the printer is in the network already
  };

  Session(Printer printer, Hooks hooks, Machine machine = {});

  /// Reads what the adapter reports. `Ok` if it answered at least one query.
  [[nodiscard]] Report status();

  /// Stores the network settings and waits until the printer is in the network. Clears the secret
  /// of the profile as soon as it is sent.
  [[nodiscard]] Report set(Profile& profile, const SetOptions& options);

  /// Resets the adapter.
  [[nodiscard]] Report reset();

 private:
  /// Opens the printer and discards old bytes. Returns false with the reason in the report.
  bool open();
  void enter(Step step) const;
  bool isInterrupted() const;

  /// Reads the values that are of interest after the SSID.
  void readRest(bool enterprise);
  /// Returns true if the state is that of a printer in the profile's network.
  bool isJoined(const Profile& profile) const;
  /// Sends the packets. Returns `Stored`, or why not.
  Result store(const Profile& profile);
  Result confirm(const Profile& profile, int waitSeconds);
  /// Waits for a printer that does not answer, which may be gone from the bus. Returns false if it
  /// is not there yet.
  bool follow();
  Report finish(Result result);

  Hooks m_Hooks;
  Transport m_Transport;
  Machine m_Machine;
  Report m_Report;
  std::unique_ptr<Adapter> m_Adapter;
};

}  // namespace session
