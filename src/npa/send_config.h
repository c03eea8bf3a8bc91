#pragma once

#include <span>
#include <string>
#include <vector>

#include "npa/exchange.h"
#include "transport/hcusb_transport.h"

/// Sends requests to the adapter at one USB path and reads its replies. Each attempt opens the
/// device, writes the request, pauses, reads the reply and closes the device. The table of
/// exchanges gives the count of attempts. Requests are not modified; their type is not const
/// because the transport's is not.
///
///     sendConfig sender("/dev/usb/lp0");
///     const npa::Outcome outcome = sender.run(exchanges::SetConfig, request);
///
/// `run` and `query` return the reply and print no result. The other operations are made of them
/// and return 0 for the expected reply, -1 for a refusal (flag byte 0xD4), and 1 if the expected
/// reply never arrived; `sendQuery` returns a count.
class sendConfig {
 public:
  /// Copies `path` and holds a reference to the process's transport until the destruction.
  explicit sendConfig(std::string path);
  ~sendConfig();
  sendConfig(const sendConfig&) = delete;
  sendConfig& operator=(const sendConfig&) = delete;

  /// Runs one exchange of the table. The outcome is `NoAnswer` also if the device cannot be opened.
  [[nodiscard]] npa::Outcome run(const Exchange& exchange, std::span<unsigned char> request);

  /// When an attempt of `run` stops reading.
  enum class Reading {
    UntilSilence,  ///< after 5 s without a byte, or with a full buffer
    WholePacket,   ///< after one whole packet; bytes that are no packet are read until silence
  };
  void setReading(Reading reading) { m_Reading = reading; }

  /// Sends a request of any kind and returns the collected reply: the command and data bytes of
  /// each reply packet, in order. The reply ends with a packet that announces no further one.
  /// Reading starts 2 s after the request. After `timeout` more seconds no further packet is read.
  /// Returns an empty vector if there is no reply.
  [[nodiscard]] std::vector<unsigned char> query(std::span<unsigned char> request, int timeout);

  /// Returns true if a packet without data ended the last reply that was collected: the adapter
  /// refused the request.
  [[nodiscard]] bool wasRefused() const { return m_WasRefused; }

  /// Does the same as `query`. Returns the count of collected bytes and sets `reply` to a new array
  /// of them, which the caller frees with `delete[]`. Returns 0 and leaves `reply` unchanged if
  /// there are none.
  int sendQuery(unsigned char* packet, int length, unsigned char*& reply, int timeout);

  /// Sends a configuration packet. Returns -1 also if there is no reply, and 1 if the last byte of
  /// the reply is not 0x01.
  int setConfig(unsigned char* packet, int length);

  /// Sends an adapter reset, in up to two attempts, 50 s apart. Never returns -1.
  int resetINA(unsigned char* packet, int length);

  /// Queries the adapter descriptor, which ends in "-": up to six attempts, 10 s apart. Never
  /// returns -1.
  int getAdapterDescriptor(unsigned char* packet, int length);

  /// Queries the trouble code, in up to four attempts. Returns 0 if there is no trouble, or the
  /// code of the last attempt (1 to 255).
  int getTroubleCode(unsigned char* packet, int length);

  /// Queries the SSID, in up to seven attempts, and prints it as a line on standard output.
  int getSSID(unsigned char* packet, int length);

  /// Queries the IP address, in up to seven attempts until it is not 0.0.0.0, and prints it as a
  /// line on standard output.
  int getIP(unsigned char* packet, int length);

 private:
  /// Fills `buffer` with the reply to a request. Returns the count of bytes, 0 if there are none.
  std::size_t readReply(std::span<unsigned char> buffer);
  /// Reads packets until the last one of the reply, or until `timeout` seconds have passed.
  std::vector<unsigned char> collectReply(int timeout);
  /// Reads one reply packet and appends its command and data to `collected`, unless its flag byte
  /// ends the exchange. Returns true if the caller must read on: another packet follows, or this
  /// one was garbled.
  bool readReplyPacket(std::vector<unsigned char>& collected);
  /// Fills `destination`. Returns false if fewer bytes arrive.
  bool readExactly(std::span<unsigned char> destination);

  std::string m_DevicePath;
  HCUSBTransport* m_Transport;  ///< shared, returned by the destructor
  Reading m_Reading = Reading::UntilSilence;
  bool m_WasRefused = false;
};
