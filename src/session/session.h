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
#include "util/clock.h"

namespace session {

/// The steps of a command on one printer. A front end shows the current step.
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
  Ok,             ///< a command other than `set` succeeded
  Unchanged,      ///< the printer was already in the network; nothing was stored
  Confirmed,      ///< the settings are stored, and the printer is in the network
  Stored,         ///< the settings are stored; no confirmation was wanted, or none came in time
  DryRun,         ///< a dry run: no device was opened
  Invalid,        ///< nothing was changed: see `CertificateReport::Problem`
  NoSuchPrinter,  ///< there is no such printer, or it fails to open for an unusual reason
  NoPermission,   ///< this user may not open the device
  Busy,           ///< another process uses the device
  Refused,        ///< the printer refused a request or sent an unexpected reply
  NoAnswer,       ///< the printer did not answer
  Interrupted,    ///< the user ended the command
  Failed,         ///< the front end's process for this printer did not start, died or took too long
  Skipped,        ///< the front end left the printer alone, because it was done before
};

/// Returns the result for a printer that cannot be opened.
[[nodiscard]] Result resultOf(OpenFailure::Kind kind);

/// The outcome of a command on one printer.
struct Report {
  Printer printer;
  Result result = Result::Ok;
  std::optional<std::string> ssidBefore;
  AdapterState state;
  std::optional<OpenFailure> openFailure;
  /// True if settings were sent. After a failure it is unknown whether the adapter has stored them.
  bool sentSettings = false;
  /// True if the request for a reset was sent. After a failure it is unknown whether the adapter
  /// was reset.
  bool sentReset = false;
};

/// Runs a command on one printer: checks that the printer can be opened, exchanges packets with the
/// adapter and, after `set`, waits until the printer is in the network. Prints nothing: the result
/// is a `Report`.
///
///     Session session(printer, {.onStep = showStep});
///     const Report report = session.set(profile, {.waitSeconds = 60});
class Session {
 public:
  /// Functions of the front end that the session calls. Each may be empty.
  struct Hooks {
    std::function<void(Step)> onStep = {};
    /// Receives the bytes of each request and each reply when they have been transferred.
    HCUSBTransport::Observer onTransfer = {};
    /// Returns true after the user has asked to end the command. The session first finishes the
    /// exchange under way.
    std::function<bool()> isInterrupted = {};
  };

  /// Holds a reference to the process's transport. Makes the transport wait for bytes without
  /// polling and report each transfer to the observer. Waits do not depend on the time of day.
  class Transport {
   public:
    explicit Transport(HCUSBTransport::Observer observer);
    ~Transport();
    Transport(const Transport&) = delete;
    Transport& operator=(const Transport&) = delete;

   private:
    util::SteadyTime m_SteadyTime;
  };

  struct SetOptions {
    int waitSeconds = 60;  ///< the time limit of the confirmation; 0: no confirmation
    bool force = false;    ///< store even if the printer is already in the network
  };

  Session(Printer printer, Hooks hooks, Machine machine = {});

  /// Reads what the adapter reports. The result is `Ok` if the adapter answered at least one query.
  [[nodiscard]] Report status();

  /// Stores the network settings and waits until the printer is in the network. Stores nothing if
  /// the printer is already in the network and `options.force` is false. Clears the secret of the
  /// profile after the settings are sent.
  [[nodiscard]] Report set(Profile& profile, const SetOptions& options);

  /// Resets the adapter.
  [[nodiscard]] Report reset();

 private:
  /// Checks that the printer can be opened, and discards the bytes of earlier replies. On failure
  /// stores the reason in the report and returns false.
  bool open();
  void enter(Step step) const;
  bool isInterrupted() const;

  /// Reads the trouble code, the address and, if `enterprise`, the authentication status.
  void readRest(bool enterprise);
  /// Returns true if the values in the report show that the printer is in the profile's network.
  bool isJoined(const Profile& profile) const;
  /// Sends the packets of the settings. Returns `Stored` if the adapter accepts all of them,
  /// otherwise the reason.
  Result store(const Profile& profile);
  /// Reads the status until the printer is in the network (returns `Confirmed`), the time is up
  /// (returns `Stored`), or the user ends the command (returns `Interrupted`).
  Result confirm(const Profile& profile, int waitSeconds);
  /// Searches once for the printer, because it may have restarted with another address, or another
  /// printer may have got its device. Returns true if the printer is there and, after a missing
  /// answer, can be opened.
  bool follow();
  /// Returns true if the device still belongs to the printer that `follow` found.
  bool isStillThere() const;
  Report finish(Result result);

  Hooks m_Hooks;
  Transport m_Transport;
  Machine m_Machine;
  Report m_Report;
  std::unique_ptr<Adapter> m_Adapter;
  bool m_HadTwin = false;  ///< another printer had the same serial number when `set` began
};

}  // namespace session
