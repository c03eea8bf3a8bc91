#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "emulator/adapter/adapter.h"
#include "emulator/adapter/message_log.h"
#include "emulator/transport/reply_queue.h"
#include "emulator/usb/usb_pipe.h"
#include "emulator/usb/usb_traits.h"
#include "emulator/usb/usb_transfer.h"

namespace emulator {

/// An adapter as a USB device of the printer class. It takes transfers and returns their
/// completions. A transport moves transfers and completions between the device and the host.
///
///     device.submit(transfer);
///     for (const UsbCompletion& completion : device.advance()) { ... }
///
/// An IN transfer gets at most one piece of a reply. If the size of a piece is a multiple of the
/// packet size, an empty packet follows it. Without the empty packet a host could not recognise the
/// end of the piece.
class UsbDevice {
 public:
  using Clock = Adapter::Clock;

  /// How long the printer stays on the bus before the adapter's restart. A program may read the
  /// reply as late as 5 s after its request. The restart unplugs the printer, and from then on
  /// usblp does not return the reply.
  static constexpr std::chrono::seconds TimeBeforeRestart{6};

  /// The adapter and the log must outlive the device. `now` returns the time.
  UsbDevice(Adapter& adapter, UsbTraits traits, MessageLog& log,
            std::function<Clock::time_point()> now = Clock::now);

  const UsbTraits& traits() const { return m_Traits; }

  /// Queues a transfer.
  void submit(UsbTransfer transfer);
  /// Removes a waiting transfer. Returns false if no waiting transfer has this id. Bytes that the
  /// transfer has already moved stay moved.
  bool unlink(std::uint32_t id);
  /// Transfers the bytes that can be transferred now. Returns the transfers that have ended since
  /// the last call.
  std::vector<UsbCompletion> advance();
  /// Returns the time at which `advance` can continue without a new transfer, or nothing if it
  /// needs a new transfer.
  std::optional<Clock::time_point> nextDue() const;

  /// Returns true if a fault or a restart demands that the printer is unplugged now.
  bool wantsUnplug() const { return m_WantsUnplug; }
  /// Returns the time from unplugging until the printer is plugged in again, or nothing if the
  /// printer stays unplugged.
  std::optional<std::chrono::seconds> replugAfter() const { return m_ReplugAfter; }
  /// Ends the connection with the host. Drops all transfers, pending replies, a partial packet and
  /// the faults. The device is then in the state of a device that has just been plugged in.
  void unplug();

  /// `waiting` returns the count of waiting transfers. `waitingBytes` returns the count of bytes in
  /// the waiting OUT transfers.
  std::size_t waiting() const { return m_Out.waiting() + m_In.waiting(); }
  std::size_t waitingBytes() const { return m_Out.waitingBytes() + m_In.waitingBytes(); }

 private:
  /// A row of the table of requests (usb_requests.cpp).
  struct Request;

  // The requests on the control endpoint. Each returns the data stage, or nothing for a stall.

  std::optional<npa::Bytes> answer(const UsbSetup& setup);
  std::optional<npa::Bytes> getDescriptor(const UsbSetup& setup);
  std::optional<npa::Bytes> setAddress(const UsbSetup& setup);
  std::optional<npa::Bytes> getConfiguration(const UsbSetup& setup);
  std::optional<npa::Bytes> setConfiguration(const UsbSetup& setup);
  std::optional<npa::Bytes> getInterface(const UsbSetup& setup);
  std::optional<npa::Bytes> setInterface(const UsbSetup& setup);
  std::optional<npa::Bytes> deviceStatus(const UsbSetup& setup);
  std::optional<npa::Bytes> interfaceStatus(const UsbSetup& setup);
  std::optional<npa::Bytes> endpointStatus(const UsbSetup& setup);
  std::optional<npa::Bytes> clearHalt(const UsbSetup& setup);
  std::optional<npa::Bytes> setHalt(const UsbSetup& setup);
  std::optional<npa::Bytes> getDeviceId(const UsbSetup& setup);
  std::optional<npa::Bytes> getPortStatus(const UsbSetup& setup);
  std::optional<npa::Bytes> softReset(const UsbSetup& setup);

  /// Returns true if the request is for the interface and the device is configured.
  bool isInterface(const UsbSetup& setup) const;
  /// Returns true if the device is configured and has the alternate setting `number`.
  bool hasAlternate(std::size_t number) const;
  /// Returns the pipe of an endpoint address, or null if the current alternate setting has no
  /// such endpoint.
  UsbPipe* pipeAt(unsigned address);
  void clearHalts();
  /// Drops pending replies and a partial packet.
  void forgetBytes();

  /// Runs a transfer on the control endpoint.
  void control(UsbTransfer transfer);
  /// Ends the first transfer of a pipe.
  void end(UsbPipe& pipe, std::int32_t status);
  /// Returns the status with which a transfer fails now, or nothing if it does not fail.
  std::optional<std::int32_t> failure(UsbPipe& pipe);
  /// Ends the transfers that fail. Returns true if the next transfer can continue.
  bool canTransfer(UsbPipe& pipe);
  /// Passes the bytes of OUT transfers to the adapter.
  void takeOut();
  /// Demands an unplug when the adapter's restart begins.
  void leaveForRestart();
  /// Fills IN transfers from the replies that are due.
  void giveIn();
  /// Fills the first IN transfer from one piece.
  void giveFrom(ReplyQueue::Piece& piece);
  /// Returns the time at which the printer has accepted the next chunk of the first OUT transfer.
  Clock::time_point outDue() const;
  /// Returns the size in bytes of the next chunk of the first OUT transfer.
  std::size_t outChunk() const;

  Adapter& m_Adapter;
  UsbTraits m_Traits;
  MessageLog& m_Log;
  std::function<Clock::time_point()> m_Now;
  UsbPipe m_Out;
  UsbPipe m_In;
  ReplyQueue m_Replies;
  std::vector<UsbCompletion> m_Ended;  ///< for the next `advance`
  npa::Byte m_Configuration = 0;       ///< 0: not configured
  npa::Byte m_Alternate = 0;
  /// The time at which a slow printer began to accept the next chunk.
  Clock::time_point m_OutSince;
  bool m_WantsUnplug = false;
  std::optional<std::chrono::seconds> m_ReplugAfter;
  std::optional<Adapter::Restart> m_Restart;  ///< set from the reply until the printer is unplugged
};

}  // namespace emulator
