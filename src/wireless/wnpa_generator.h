#pragma once

#include <span>
#include <string>
#include <vector>

#include "cli/config_details.h"
#include "npa/packet.h"
#include "npa/send_config.h"

struct StatusQuery;

/// Builds configuration packets and status queries from the run's settings and exchanges them with
/// the printer's wireless adapter.
///
/// Its operations stand in one file per subject: packet framing, setting encoders, configuration
/// sequences, status queries.
class wnpaGenerator {
 public:
  /// Keeps `configuration`, which the caller owns and which must outlive the generator; wrap mode
  /// starts on.
  explicit wnpaGenerator(configDetails* configuration);
  ~wnpaGenerator() = default;
  wnpaGenerator(const wnpaGenerator&) = delete;
  wnpaGenerator& operator=(const wnpaGenerator&) = delete;

  /// With wrap mode on, every packet goes out inside another.
  void setWrapMode(bool on) { m_WrapMode = on; }
  bool getWrapMode() const { return m_WrapMode; }

  // --- Packet framing (framing.cpp) ---------------------------------------------------------

  /// Writes the five-byte header of a setting object with a value of `valueSize` bytes into
  /// `object`. The object's number comes before its group here and after it in the header.
  /// Returns 0.
  int constructHeader(unsigned char* object, unsigned int valueSize, char number, char group);

  /// Copies `value` behind the header in `object`, whose whole size is `objectSize`. Returns 0.
  int mergeHeaderData(char* value, unsigned char* object, int objectSize);

  /// Appends `count` bytes to the packet under construction. Returns 0.
  int appendDataToNPA(int count, unsigned char* bytes);

  /// Turns the packet's `size` bytes of setting objects into a configuration packet that stores
  /// them as one group. Returns the packet's new size.
  int constructAtomicGrouping(int size);

  /// Puts `packet` of `size` bytes inside another packet. Returns its new size.
  int constructWrapping(std::vector<unsigned char>& packet, int size);

  /// Sends any bytes as they stand and dumps the reply, for which it waits `timeout` seconds, to
  /// standard error. Returns 0 whatever came of it.
  int sendNPAData(unsigned char* data, int length, int timeout);

  // --- Setting encoders (encoders.cpp) ------------------------------------------------------
  //
  // Each appends one setting object to the packet under construction and returns its size, or
  // appends nothing and returns 0. The running total is accepted and not looked at.

  int constructSSID(int* total);
  int constructMode(int* total);
  int constructChannel(int* total);
  int constructSecurity(int* total);
  /// Asks for the password on the terminal when none is configured and the security needs one.
  int constructPasswd(int* total);

  // --- Configuration sequences (sequences.cpp) ----------------------------------------------
  //
  // Each sends one batch of settings and returns the result of `sendConfig::setConfig`, or -1 when
  // the batch is too large for a packet, and then nothing is sent.

  /// Mode, security, channel, SSID and password.
  int configBasic();

  /// The default run: shows the basic configuration's packet on standard error, configures, and
  /// reports trouble code and IP address. Sends bare packets from the second try on when wrapped
  /// ones are refused. A missing password is asked for twice, for the packet shown and for the one
  /// sent. Returns the size of the packet shown.
  int generate();

  /// Resets the network adapter; returns the result of `sendConfig::resetINA`.
  int reset();

  // --- Status queries (status_queries.cpp) --------------------------------------------------
  //
  // Each asks for one setting. The first four return what the `sendConfig` operation of their name
  // returns, which also prints the answer.

  int getSSID();
  int getIP();
  int getTroubleCode();
  int getAdapterDescriptor();

  /// The 802.1x authentication status of the first record in the reply, or -1 without one.
  int get802AuthStatus();

  /// Whether 802.1x authentication is on (1), of the first record in the reply, or -1 without one.
  int get802AuthEnabled();

  /// Whether a certificate authority is installed (1), of the last record that has a value, or -1
  /// without one.
  int getCertAuthInstalled();

  /// Dumps the reply to standard error. Returns -1, also when there was one.
  int getAllSecuritySettings();

  /// Dumps the reply to standard error. Returns -1, also when there was one.
  int get802AuthCommonName();

 private:
  /// Appends an object with the text's bytes and a terminating zero byte.
  int appendText(unsigned char group, unsigned char number, const std::string& text);
  /// Appends an object with a four-byte number.
  int appendCode(unsigned char group, unsigned char number, unsigned int code);
  int appendObject(unsigned char group, unsigned char number, std::vector<char> value);

  /// Clears the packet and encodes the settings of a basic configuration. Returns their size.
  int encodeBasicSettings();

  /// Frames the objects in the packet, `size` bytes, wrapped if wrap mode is on. Returns the size.
  int frameBatch(int size);

  /// Frames the objects in the packet, `size` bytes, and sends them.
  int sendBatch(int size);

  /// A request as it goes out: wrapped if wrap mode is on.
  std::vector<unsigned char> outgoing(std::span<const npa::Byte> packet);

  /// Sends the query for one setting through an operation of the exchange.
  int runQuery(const StatusQuery& query, int (sendConfig::*exchange)(unsigned char*, int));

  /// Sends a query and returns the collected reply, empty when there is none.
  std::vector<unsigned char> collectReply(const StatusQuery& query);

  std::vector<unsigned char> m_Packet;
  configDetails* m_Configuration;
  sendConfig m_Exchange;
  bool m_WrapMode = true;
};
