#pragma once

#include <span>
#include <string>
#include <vector>

#include "npa/exchange.h"
#include "transport/hcusb_transport.h"

/// Carries requests to the adapter on one USB path and brings its replies back. Each operation
/// opens the channel, writes one request, pauses, reads the reply and closes the channel, as often
/// as its row of the exchange table says. Requests are only read; the array types are those of the
/// transport.
///
/// `run` and `query` return what came and print nothing. The others are made of them. They return 0
/// for the expected answer, -1 if the adapter refused the request (flag byte 0xD4), and 1 if the
/// expected answer never came; `sendQuery` returns a count.
class sendConfig {
 public:
  /// Copies `path` and takes a reference to the process's transport for its lifetime.
  explicit sendConfig(std::string path);
  ~sendConfig();
  sendConfig(const sendConfig&) = delete;
  sendConfig& operator=(const sendConfig&) = delete;

  /// Carries out one exchange of the table. Returns `NoAnswer` also if the device cannot be
  /// opened.
  [[nodiscard]] npa::Outcome run(const Exchange& exchange, std::span<unsigned char> request);

  /// Sends a packet and collects the reply: the command and data bytes of each reply packet, in
  /// order. The reply ends with a packet that announces no further one, or when `timeout` seconds
  /// have passed since the pause of 2 seconds after the request. Returns the collected bytes, none
  /// if there is no reply.
  [[nodiscard]] std::vector<unsigned char> query(std::span<unsigned char> request, int timeout);

  /// Does what `query` does. Returns the count of collected bytes and sets `reply` to a new array
  /// of them, which the caller releases with `delete[]`; returns 0 and leaves `reply` unchanged if
  /// there are none.
  int sendQuery(unsigned char* packet, int length, unsigned char*& reply, int timeout);

  /// Sends a configuration packet. -1 also when no reply came; 1 when the reply's last byte is not
  /// 0x01.
  int setConfig(unsigned char* packet, int length);

  /// Sends an adapter reset: two attempts, a minute in all. Never -1.
  int resetINA(unsigned char* packet, int length);

  /// Asks for the adapter descriptor, which ends in "-": six attempts, 10 seconds apart. Never -1.
  int getAdapterDescriptor(unsigned char* packet, int length);

  /// Asks for the trouble code: 0 for none, else the code of the fourth attempt (1 to 255).
  int getTroubleCode(unsigned char* packet, int length);

  /// Asks for the SSID and prints it on a line of standard output.
  int getSSID(unsigned char* packet, int length);

  /// Asks for the IP address, up to seven times until it is not 0.0.0.0, and prints it on a line of
  /// standard output.
  int getIP(unsigned char* packet, int length);

 private:
  std::vector<unsigned char> collectReply(int timeout);
  /// Reads one reply packet and appends its command and data to `collected`, unless its flag byte
  /// ends the exchange. Returns whether to read on: for a further packet, or past a garbled one.
  bool readReplyPacket(std::vector<unsigned char>& collected);
  bool readExactly(std::span<unsigned char> destination);

  std::string m_DevicePath;
  HCUSBTransport* m_Transport;
};
