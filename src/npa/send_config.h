#pragma once

#include <span>
#include <string>
#include <vector>

#include "npa/exchange.h"
#include "transport/hcusb_transport.h"

/// Sends requests to the adapter at one device path and reads the replies. Each attempt opens the
/// device, writes the request, pauses, reads the reply and closes the device. The table of
/// exchanges (npa/exchange.cpp) gives the count of attempts. The operations do not modify a
/// request, although the type of its bytes is not const: the transport's interface requires this
/// type.
///
///     sendConfig sender("/dev/usb/lp0");
///     const npa::Outcome outcome = sender.run(exchanges::SetConfig, request);
///
/// `run` and `query` return the reply and print no result. Each operation that returns an `int`
/// calls one of these two. Unless its comment says otherwise, such an operation returns 0 for the
/// expected reply, -1 for a refusal (flag byte 0xD4), and 1 if the expected reply never arrived.
class sendConfig {
 public:
  /// Copies `path` and takes a reference to the process's transport. The destructor releases the
  /// reference.
  explicit sendConfig(std::string path);
  ~sendConfig();
  sendConfig(const sendConfig&) = delete;
  sendConfig& operator=(const sendConfig&) = delete;

  /// Runs one of the exchanges in npa/exchange.h. If the device cannot be opened, the outcome is
  /// `NoAnswer`.
  [[nodiscard]] npa::Outcome run(const Exchange& exchange, std::span<unsigned char> request);

  /// When an attempt of `run` stops reading.
  enum class Reading {
    UntilSilence,  ///< when the buffer is full or no byte arrives for a time (see `CT_Read`)
    WholePacket,   ///< after one whole packet; if the bytes are no packet, as `UntilSilence`
  };
  void setReading(Reading reading) { m_Reading = reading; }

  /// Sends a request of any kind and returns the collected reply: the command and data bytes of
  /// each reply packet, in order. The last packet of a reply is the one whose flag byte does not
  /// announce another packet. Reading starts 2 s after the request. When `timeout` more seconds
  /// have passed, the operation reads no further packet. Returns an empty vector if there is no
  /// reply.
  [[nodiscard]] std::vector<unsigned char> query(std::span<unsigned char> request, int timeout);

  /// Returns true if the last reply that `query` collected ended with a packet whose flag byte has
  /// the bit `npa::FlagEndsExchange`. A refusal is such a packet.
  [[nodiscard]] bool wasRefused() const { return m_WasRefused; }

  /// Does the same as `query`. Returns the count of collected bytes and sets `reply` to a new array
  /// of them, which the caller frees with `delete[]`. Returns 0 and leaves `reply` unchanged if no
  /// byte was collected.
  int sendQuery(unsigned char* packet, int length, unsigned char*& reply, int timeout);

  /// Sends a configuration packet. Returns -1 if the adapter refuses it or does not reply, and 1 if
  /// the last byte of the reply is not 0x01.
  int setConfig(unsigned char* packet, int length);

  /// Sends an adapter reset, in up to two attempts, 50 s apart. Never returns -1.
  int resetINA(unsigned char* packet, int length);

  /// Queries the adapter descriptor, which ends in "-", in up to six attempts, 10 s apart. Never
  /// returns -1.
  int getAdapterDescriptor(unsigned char* packet, int length);

  /// Queries the trouble code, in up to four attempts. Returns 0 if the code is 0, otherwise the
  /// code of the last attempt (1 to 255). Returns -1 for a refusal, and 1 if no reply arrived in
  /// the last attempt.
  int getTroubleCode(unsigned char* packet, int length);

  /// Queries the SSID, in up to seven attempts, and prints it as a line on standard output.
  int getSSID(unsigned char* packet, int length);

  /// Queries the IP address, in up to seven attempts, until the address is not 0.0.0.0. Then prints
  /// it as a line on standard output. Prints nothing if the address is 0.0.0.0 in each attempt.
  int getIP(unsigned char* packet, int length);

 private:
  /// Fills `buffer` with the reply to a request. Returns the count of bytes read, possibly 0.
  std::size_t readReply(std::span<unsigned char> buffer);
  /// Reads packets until the last packet of the reply arrives, or until `timeout` seconds have
  /// passed.
  std::vector<unsigned char> collectReply(int timeout);
  /// Reads one reply packet and appends its command and data to `collected`, unless its flag byte
  /// ends the exchange. Returns true if the caller must read on, because another packet follows or
  /// this packet was garbled.
  bool readReplyPacket(std::vector<unsigned char>& collected);
  /// Fills `destination`. Returns false if fewer bytes arrive.
  bool readExactly(std::span<unsigned char> destination);

  std::string m_DevicePath;
  HCUSBTransport* m_Transport;  ///< shared; the destructor releases it
  Reading m_Reading = Reading::UntilSilence;
  bool m_WasRefused = false;
};
