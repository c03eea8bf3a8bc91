#pragma once

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

/// An adapter as a USB device of the printer class: transfers in, their ends out. How they travel
/// is the business of the transport.
///
/// A transfer from the device gets at most one piece of a reply. One whose size is a multiple of
/// the packet size is ended by an empty packet, without which no host would see its end.
class UsbDevice {
 public:
  using Clock = Adapter::Clock;

  /// The adapter and the log must outlive the device. `now` tells the time.
  UsbDevice(Adapter& adapter, UsbTraits traits, MessageLog& log,
            std::function<Clock::time_point()> now = Clock::now);

  const UsbTraits& traits() const { return m_Traits; }

  /// Takes over a transfer, which then waits for its turn.
  void submit(UsbTransfer transfer);
  /// Takes a transfer back; returns false when it is not waiting (any more). What has been
  /// transferred of it stays so.
  bool unlink(std::uint32_t id);
  /// Transfers what can be transferred now and returns what has ended since the last call.
  std::vector<UsbCompletion> advance();
  /// When `advance` will have something to do without a new transfer.
  std::optional<Clock::time_point> nextDue() const;

  /// Whether the printer wants to be unplugged, as its faults have it.
  bool wantsUnplug() const { return m_WantsUnplug; }
  /// The connection with the host is lost: transfers, pending replies and the part of a packet that
  /// has come are gone, and so are the faults. The device is as it is when plugged in.
  void unplug();

  /// How many transfers wait, and the bytes that they hold.
  std::size_t waiting() const { return m_Out.waiting() + m_In.waiting(); }
  std::size_t waitingBytes() const { return m_Out.waitingBytes() + m_In.waitingBytes(); }

 private:
  /// A request that the device knows, see usb_requests.cpp.
  struct Request;

  /// The data stage of a control request; nothing for a stall.
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

  bool isInterface(const UsbSetup& setup) const;
  bool hasAlternate(std::size_t number) const;
  /// The pipe of an endpoint address, or null where there is none now.
  UsbPipe* pipeAt(unsigned address);
  void clearHalts();
  void forgetBytes();

  void control(UsbTransfer transfer);
  void end(UsbPipe& pipe, std::int32_t status);
  /// How a transfer fails now, if it does.
  std::optional<std::int32_t> failure(UsbPipe& pipe);
  /// Ends the transfers that fail, and returns whether another can go on.
  bool canTransfer(UsbPipe& pipe);
  void takeOut();
  void giveIn();
  void giveFrom(ReplyQueue::Piece& piece);
  /// When the next bytes of the first OUT transfer have been taken.
  Clock::time_point outDue() const;
  /// How many bytes of it these are.
  std::size_t outChunk() const;

  Adapter& m_Adapter;
  UsbTraits m_Traits;
  MessageLog& m_Log;
  std::function<Clock::time_point()> m_Now;
  UsbPipe m_Out;
  UsbPipe m_In;
  ReplyQueue m_Replies;
  std::vector<UsbCompletion> m_Ended;
  npa::Byte m_Configuration = 0;
  npa::Byte m_Alternate = 0;
  /// Since when a slow printer is at the next bytes.
  Clock::time_point m_OutSince;
  bool m_WantsUnplug = false;
};

}  // namespace emulator
