#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "npa/packet.h"
#include "npa/send_config.h"
#include "npa/setting_keys.h"
#include "settings/config_details.h"

struct SettingEncoding;
struct SettingQuery;

/// Builds configuration packets and status queries from the run's settings and exchanges them with
/// the printer's wireless adapter:
///
///     configDetails settings;
///     wnpaGenerator generator(&settings);
///     if (generator.configBasic() == -1) {  // refused: try once more with bare packets
///       generator.setWrapMode(false);
///       generator.configBasic();
///     }
///
/// "Library only" marks the operations that no command of zvkconfig reaches. They are part of the
/// interface all the same. The operations are in one file per subject, named in each heading.
class wnpaGenerator {
 public:
  /// Keeps `configuration`, which the caller owns and which must outlive the generator. Wrap mode
  /// starts on.
  explicit wnpaGenerator(configDetails* configuration);
  ~wnpaGenerator() = default;
  wnpaGenerator(const wnpaGenerator&) = delete;
  wnpaGenerator& operator=(const wnpaGenerator&) = delete;

  /// With wrap mode on, every packet is sent inside a wrapper.
  void setWrapMode(bool on) { m_WrapMode = on; }
  bool getWrapMode() const { return m_WrapMode; }

  // --- Packet framing (framing.cpp) ---------------------------------------------------------

  /// Writes the five-byte header of a setting object with a value of `valueSize` bytes into
  /// `object`. The object's number comes before its group here and after it in the header.
  /// Returns 0.
  int constructHeader(unsigned char* object, unsigned int valueSize, char number, char group);

  /// Copies `value` after the header in `object`, whose whole size is `objectSize` bytes. Returns
  /// 0. Library only.
  int mergeHeaderData(char* value, unsigned char* object, int objectSize);

  /// Appends `count` bytes to the packet under construction. Returns 0.
  int appendDataToNPA(int count, unsigned char* bytes);

  /// Turns the packet's `size` bytes of setting objects into a configuration packet that stores
  /// them as one group. Returns the packet's new size.
  int constructAtomicGrouping(int size);

  /// The same for objects that are stored one by one. Library only.
  int constructLongNetwork(int size);

  /// Puts `packet` of `size` bytes into a wrapper. Returns its new size.
  int constructWrapping(std::vector<unsigned char>& packet, int size);

  /// Returns the packet under construction, valid until the next operation. Library only.
  std::span<const unsigned char> packet() const { return m_Packet; }

  /// Sends `length` bytes unchanged, collects the reply for at most `timeout` seconds and dumps it.
  /// Returns 0, also without a reply.
  int sendNPAData(unsigned char* data, int length, int timeout);

  // --- Setting encoders ---------------------------------------------------------------------
  //
  // Each appends the objects of one setting to the packet under construction and returns their size
  // in bytes, or appends nothing and returns 0. An unknown text is sent as 0 (channel: 6), a text
  // that is too long is cut. Each logs its setting, secrets included, except channel and password.
  //
  // Of every network (encoders.cpp). The running total is accepted and ignored:

  int constructSSID(int* total);
  int constructMode(int* total);
  int constructChannel(int* total);
  int constructSecurity(int* total);
  /// Asks for the password on the terminal if none is configured and the security needs one.
  int constructPasswd(int* total);

  // Keys (key_encoders.cpp). An empty key is sent as a header alone:

  int constructPSK();
  int constructWEPKey1();
  int constructWEPKey2();
  int constructWEPKey3();
  int constructWEPKey4();
  /// The number of the WEP key that the adapter sends with.
  int constructWEPTransmit();
  int constructWEPAuth();

  // 802.1x authentication (authentication_encoders.cpp):

  int construct802EncryptMode();
  int construct802AuthInner();
  int construct802Username();
  int construct802Passwd();
  /// Six objects: for each method, whether it may be used.
  int construct802AuthExtension();
  /// Whether the adapter validates the server's certificate. Asks the printer: yes if it holds more
  /// than one certificate of its own, or any CA certificate; no if it does not answer.
  int construct802ValidateCert();

  // Fields of a certificate request (certificate_fields.cpp). Library only, except the common
  // name's use in createCertSignRequest:

  int constructCertFriendlyName();
  int constructCertAltName();
  int constructCertCity();
  int constructCertState();
  int constructCertUnit();
  int constructCertOrg();
  int constructCertCommonName();
  int constructCertCountry();
  /// Makes the printer create a request from the fields.
  int constructCertSignRequest();

  // --- Configuration sequences (sequences.cpp) ----------------------------------------------
  //
  // Each sends one batch of settings and returns the result of `sendConfig::setConfig`. If the
  // batch is too large for a packet, nothing is sent and the result is -1.

  /// Sends mode, security, channel, SSID and password (-c).
  int configBasic();

  /// Builds the packet of that batch without sending it. Returns its size.
  int constructBasic();

  /// Sends the configuration of the security "OPEN", "SHARED", "WPA-PER", "WPA-ENT" or "802.1x"
  /// (-ca). Sends nothing and returns 0 for any other.
  int configAdvanced();
  /// Includes the WEP keys if the encryption is "WEP".
  int configOpen();
  int configShared();
  int configWPAPersonal();
  int configWPAEnt();

  /// Sends the 802.1x options and, if they were accepted, a second packet with the network; then
  /// asks for the authentication status. Returns the result of the second packet, 0 if none was
  /// sent.
  int config8021x();
  /// Includes the WEP keys if the encryption is "WEP-STATIC".
  int set8021xOptions();

  /// Dumps the basic configuration's packet, sends it, and reports trouble code and IP address: the
  /// default run. Switches to bare packets if the wrapped one is refused. Asks twice for a missing
  /// password, for the packet dumped and for the packet sent. Returns the size of the packet
  /// dumped.
  int generate();

  /// Resets the network adapter; returns the result of `sendConfig::resetINA` (-r).
  int reset();

  // --- Status queries (status_queries.cpp) --------------------------------------------------
  //
  // Each asks for one setting. The first four return what the `sendConfig` operation of their name
  // returns; it also prints the SSID or the address.

  int getSSID();               ///< -s
  int getIP();                 ///< -ip
  int getTroubleCode();        ///< -t
  int getAdapterDescriptor();  ///< -a

  /// Returns the 802.1x authentication status of the first record in the reply, or -1 without one
  /// (-802s).
  int get802AuthStatus();

  // Library only:

  /// Returns whether 802.1x authentication is on (1), from the first record in the reply, or -1
  /// without one.
  int get802AuthEnabled();

  /// Returns whether a CA certificate is installed (1), from the last record that has a value, or
  /// -1 without one.
  int getCertAuthInstalled();

  /// Dumps the reply. Returns -1 also if there is one.
  int getAllSecuritySettings();
  int get802AuthCommonName();

  // --- Certificate reads and actions (certificate_reads.cpp) ---------------------------------

  /// Reads organisation and common name (-cer). Returns 0 whatever the printer answers.
  int getCertSettings();

  /// Logs the organisation of each record in the reply. Returns 0 if there is one, else -1.
  int getCertOrganization();

  /// Dumps the reply. Returns -1 also if there is one.
  int getCertCommonName();

  // Library only. Each dumps the reply and returns -1, also if there is one:

  int getCertCert();
  int getCertCA();
  int getCertFriendlyName();
  int getCertAlternateName();
  int getCSR();
  int generateCertStatus();
  /// Makes the adapter generate a certificate.
  int generateCertificate();

  /// Sends the common name as a batch. Returns 0 whatever the printer answers. Library only.
  int createCertSignRequest();

 private:
  class Encoder;
  struct Section;
  struct Batches;
  enum class Dump { No, Yes };

  // Encoders that append to the packet and return the size of what they appended, 0 for nothing.

  /// Logs a setting and appends its object.
  int encode(const SettingEncoding& encoding);
  int encodeChannel();
  int encodeSecurity();
  int encodePassword();

  /// Appends an object: a 4-byte code, a 1-byte flag, or an arbitrary value. The length field is
  /// the value's size unless given.
  int appendCode(npa::SettingKey key, npa::Byte code);
  int appendFlag(npa::SettingKey key, bool flag);
  int appendObject(npa::SettingKey key, std::span<npa::Byte> value);
  int appendObject(npa::SettingKey key, std::span<npa::Byte> value, std::size_t lengthField);

  int constructGrouping(int size, npa::DataKind kind);

  /// Clears the packet and appends the settings of a batch.
  void encodeBatch(std::span<const Section> sections);

  /// Turns the objects in the packet into one packet, wrapped if wrap mode is on.
  void frameBatch();

  /// Frames the objects in the packet and sends them. Returns the result of
  /// `sendConfig::setConfig`, or -1 with nothing sent if they do not fit a packet.
  int sendBatch(Dump dump);

  /// Logs the announcement, encodes, dumps and sends a batch.
  int configure(const char* announcement, std::span<const Section> sections);

  /// Returns a request as it goes out: wrapped if wrap mode is on.
  std::vector<unsigned char> outgoing(std::span<const npa::Byte> packet);

  /// Sends the query for one setting through an operation of the exchange.
  int runQuery(const SettingQuery& query, int (sendConfig::*exchange)(unsigned char*, int));

  /// Sends a query and returns the collected reply, empty if there is none.
  std::vector<unsigned char> collectReply(const SettingQuery& query);
  /// The same for a request as it goes out. Logs and dumps the reply under its name, unless that is
  /// null.
  std::vector<unsigned char> collectReply(std::vector<unsigned char> request,
                                          const char* responseName);
  /// Sends a query whose reply is only dumped.
  int dumpReply(const SettingQuery& query);

  std::vector<unsigned char> m_Packet;
  configDetails* m_Configuration;
  sendConfig m_Exchange;
  bool m_WrapMode = true;
};
