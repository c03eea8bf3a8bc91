#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "npa/packet.h"
#include "npa/send_config.h"
#include "settings/config_details.h"

struct Section;
struct SettingEncoding;
struct SettingQuery;

/// Builds configuration packets and status queries from the run's settings and exchanges them with
/// the printer's wireless adapter.
///
/// Its operations stand in one file per subject: packet framing, setting encoders, configuration
/// sequences, status queries, certificate fields and reads.
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

  /// The same for objects that are stored one by one. No sequence does so.
  int constructLongNetwork(int size);

  /// Puts `packet` of `size` bytes inside another packet. Returns its new size.
  int constructWrapping(std::vector<unsigned char>& packet, int size);

  /// The packet under construction.
  std::span<const unsigned char> packet() const { return m_Packet; }

  /// Sends any bytes as they stand and dumps the reply, for which it waits `timeout` seconds, to
  /// standard error. Returns 0 whatever came of it.
  int sendNPAData(unsigned char* data, int length, int timeout);

  // --- Setting encoders ---------------------------------------------------------------------
  //
  // Each appends the objects of one setting to the packet under construction and returns their
  // size, or appends nothing and returns 0. An unknown text is sent as 0 (channel: 6), one that is
  // too long is cut. Each tells of its setting on standard error, secrets included, but for channel
  // and password.
  //
  // Of every network (encoders.cpp); the running total is accepted and not looked at:

  int constructSSID(int* total);
  int constructMode(int* total);
  int constructChannel(int* total);
  int constructSecurity(int* total);
  /// Asks for the password on the terminal when none is configured and the security needs one.
  int constructPasswd(int* total);

  // Keys (key_encoders.cpp), an empty one as a header alone:

  int constructPSK();
  int constructWEPKey1();
  int constructWEPKey2();
  int constructWEPKey3();
  int constructWEPKey4();
  /// Which of the WEP keys is used for sending.
  int constructWEPTransmit();
  int constructWEPAuth();

  // 802.1x authentication (authentication_encoders.cpp):

  int construct802EncryptMode();
  int construct802AuthInner();
  int construct802Username();
  int construct802Passwd();
  /// Six objects: for each method whether it may be used.
  int construct802AuthExtension();
  /// Whether the adapter is to validate the server's certificate: asks the printer whether it holds
  /// more than one certificate of its own, or any of an authority. No, when it does not tell.
  int construct802ValidateCert();

  // Fields of a certificate request (certificate_fields.cpp):

  int constructCertFriendlyName();
  int constructCertAltName();
  int constructCertCity();
  int constructCertState();
  int constructCertUnit();
  int constructCertOrg();
  int constructCertCommonName();
  int constructCertCountry();
  /// Has the printer make a request of the fields.
  int constructCertSignRequest();

  // --- Configuration sequences (sequences.cpp) ----------------------------------------------
  //
  // Each sends one batch of settings and returns the result of `sendConfig::setConfig`, or -1 when
  // the batch is too large for a packet, and then nothing is sent.

  /// Mode, security, channel, SSID and password.
  int configBasic();

  /// Builds the packet of that batch, as it goes out, without sending it. Returns its size.
  int constructBasic();

  /// The configuration that the security asks for: "OPEN", "SHARED", "WPA-PER", "WPA-ENT" or
  /// "802.1x". Any other sends nothing and gives 0.
  int configAdvanced();
  /// With WEP keys when the encryption is "WEP".
  int configOpen();
  int configShared();
  int configWPAPersonal();
  int configWPAEnt();

  /// The 802.1x options, and, when those were accepted, a second packet with the network; then asks
  /// for the authentication status. Returns the result of the second packet, 0 without one.
  int config8021x();
  /// With WEP keys when the encryption is "WEP-STATIC".
  int set8021xOptions();

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

  // --- Certificate reads and actions (certificate_reads.cpp) ---------------------------------
  //
  // Each dumps the reply to standard error and returns -1, also when there was one, where nothing
  // else is said.

  int getCertCert();
  int getCertCA();
  int getCertCommonName();
  int getCertFriendlyName();
  int getCertAlternateName();
  int getCSR();
  int generateCertStatus();
  /// Has the adapter generate a certificate.
  int generateCertificate();

  /// Tells the organisation of each record in the reply. Returns 0 when there was one, else -1.
  int getCertOrganization();

  /// Reads organisation and common name. Returns 0 whatever came of it.
  int getCertSettings();

  /// Sends the common name as a batch of its own. Returns 0 whatever came of it.
  int createCertSignRequest();

 private:
  /// Tells of a setting and appends its object.
  int encode(const SettingEncoding& encoding);
  /// Append an object with a four-byte number; with a one-byte flag; with any value. The size field
  /// is that of the value, unless it is told.
  int appendCode(npa::Byte group, npa::Byte number, npa::Byte code);
  int appendFlag(npa::Byte group, npa::Byte number, bool flag);
  int appendObject(npa::Byte group, npa::Byte number, std::span<npa::Byte> value);
  int appendObject(npa::Byte group, npa::Byte number, std::span<npa::Byte> value,
                   std::size_t sizeField);

  int constructGrouping(int size, npa::DataKind kind);

  /// Clears the packet and encodes the settings of a batch. Returns their size.
  int encodeBatch(std::span<const Section> sections);

  /// Frames the objects in the packet, `size` bytes, wrapped if wrap mode is on. Returns the size.
  int frameBatch(int size);

  /// Frames the objects in the packet, `size` bytes, and sends them, dumped first if wanted.
  int sendBatch(int size, bool dump);

  /// Announces, encodes, dumps and sends a batch.
  int configure(const char* announcement, std::span<const Section> sections);

  /// A request as it goes out: wrapped if wrap mode is on.
  std::vector<unsigned char> outgoing(std::span<const npa::Byte> packet);

  /// Sends the query for one setting through an operation of the exchange.
  int runQuery(const SettingQuery& query, int (sendConfig::*exchange)(unsigned char*, int));

  /// Sends a query and returns the collected reply, empty when there is none.
  std::vector<unsigned char> collectReply(const SettingQuery& query);
  /// The same for a request as it goes out. Tells of the reply under its name, unless it is null.
  std::vector<unsigned char> collectReply(std::vector<unsigned char> request,
                                          const char* responseName);
  /// Sends a query that does nothing with the reply but dump it.
  int dumpReply(const SettingQuery& query);

  std::vector<unsigned char> m_Packet;
  configDetails* m_Configuration;
  sendConfig m_Exchange;
  bool m_WrapMode = true;
};
