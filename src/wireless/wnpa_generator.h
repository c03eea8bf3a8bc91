#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "npa/packet.h"
#include "npa/send_config.h"
#include "npa/setting_keys.h"
#include "settings/config_details.h"

struct SettingEncoding;
struct SettingQuery;

/// Builds configuration packets and status queries from the settings of the command line and
/// exchanges them with the printer's wireless adapter:
///
///     configDetails settings;
///     wnpaGenerator generator(&settings);
///     if (generator.configBasic() == -1) {  // refused: try once more with bare packets
///       generator.setWrapMode(false);
///       generator.configBasic();
///     }
///
/// "Library only" marks operations that no command of zvkconfig uses: they are for other front
/// ends. Each heading below names the file that defines the operations under the heading.
class wnpaGenerator {
 public:
  /// Keeps a pointer to `configuration`. The caller owns `configuration` and keeps it alive as long
  /// as the generator. Wrap mode is initially on.
  explicit wnpaGenerator(configDetails* configuration);
  ~wnpaGenerator() = default;
  wnpaGenerator(const wnpaGenerator&) = delete;
  wnpaGenerator& operator=(const wnpaGenerator&) = delete;

  /// Switches wrap mode on or off. If wrap mode is on, configuration packets and queries are sent
  /// inside a wrapper.
  void setWrapMode(bool on) { m_WrapMode = on; }
  /// Returns true if wrap mode is on.
  bool getWrapMode() const { return m_WrapMode; }

  // --- Packet framing (framing.cpp) ---------------------------------------------------------

  /// Writes the 5-byte header of a setting object to `object`. The value has `valueSize` bytes.
  /// Note the order: the parameter `number`, the object number, precedes `group`. In the header the
  /// group precedes the object number. Returns 0.
  int constructHeader(unsigned char* object, unsigned int valueSize, char number, char group);

  /// Copies `value` to the place after the header in `object`. Header and value together have
  /// `objectSize` bytes. Returns 0. Library only.
  int mergeHeaderData(char* value, unsigned char* object, int objectSize);

  /// Appends `count` bytes to the packet under construction. Returns 0.
  int appendDataToNPA(int count, unsigned char* bytes);

  /// Turns the packet's `size` bytes of setting objects into a configuration packet. The adapter
  /// stores the objects of such a packet all together. Returns the packet's new size.
  int constructAtomicGrouping(int size);

  /// Does the same as `constructAtomicGrouping` for objects that the adapter stores one by one.
  /// Library only.
  int constructLongNetwork(int size);

  /// Puts `packet` of `size` bytes into a wrapper. Returns the new size.
  int constructWrapping(std::vector<unsigned char>& packet, int size);

  /// Returns the packet under construction, valid until the next operation. Library only.
  std::span<const unsigned char> packet() const { return m_Packet; }

  /// Sends `length` bytes unchanged, collects the reply for at most `timeout` seconds and dumps the
  /// reply. Returns 0 whether a reply arrives or not.
  int sendNPAData(unsigned char* data, int length, int timeout);

  // --- Setting encoders ---------------------------------------------------------------------
  //
  // Each encoder appends the objects of one setting to the packet under construction and returns
  // their size in bytes, or appends nothing and returns 0. If a setting takes one of several words,
  // an unknown word is sent as 0; an unknown channel is sent as 6. A text that is too long is cut.
  // Except the encoders of the channel and of the network's password, each encoder logs the setting
  // that it appends, even a secret.

  /// Encodes a setting by a row of setting_encodings.h. A batch can name the row, so a setting with
  /// a row needs no separate operation (setting_encoding.cpp).
  int encode(const SettingEncoding& encoding);

  // Settings that every network needs (encoders.cpp). `total` is ignored:

  /// Appends the SSID and a zero byte.
  int constructSSID(int* total);
  /// Appends 1 for the mode "Ad-Hoc", or 0 (managed mode) for any other text. Appends nothing for
  /// an empty text.
  int constructMode(int* total);
  /// Appends the channel, 1 to 11.
  int constructChannel(int* total);
  /// Appends the code of the security: 0 none, 1 WEP, 2 WPA, 3 802.1x.
  int constructSecurity(int* total);
  /// Appends the password and a zero byte, unless the security is "None". Asks for a missing
  /// password on the terminal.
  int constructPasswd(int* total);

  // Keys (key_encoders.cpp). The characters of a key are sent unchanged, without a zero byte. For
  // an empty key only the header of the object is sent:

  /// Appends the pre-shared key, at most 64 bytes.
  int constructPSK();
  /// Appends the first WEP key, at most 26 bytes.
  int constructWEPKey1();
  /// Appends the second WEP key.
  int constructWEPKey2();
  /// Appends the third WEP key.
  int constructWEPKey3();
  /// Appends the fourth WEP key.
  int constructWEPKey4();
  /// Appends the number of the WEP key with which the adapter sends, or 1 if no number is
  /// configured. Only the lowest byte of the number is sent.
  int constructWEPTransmit();
  /// Appends the code of the WEP authentication: 1 for the security "OPEN" and 2 for "SHARED", both
  /// with the encryption "WEP", and 0 for any other security or encryption. Appends nothing if no
  /// encryption is configured.
  int constructWEPAuth();

  // 802.1x authentication (authentication_encoders.cpp):

  /// Appends the encryption: 0 none, 1 dynamic WEP, 2 static WEP, 3 TKIP, 4 AES.
  int construct802EncryptMode();
  /// Appends the inner authentication: 0 CHAP, 1 MSCHAP, 2 MSCHAPv2, 3 PAP.
  int construct802AuthInner();
  /// Appends the user name, at most 31 bytes, and a zero byte.
  int construct802Username();
  /// Appends the password, at most 255 bytes, and a zero byte.
  int construct802Passwd();
  /// Appends six flags, one per method: 1 if the method may be used.
  int construct802AuthExtension();
  /// Appends the flag that makes the adapter validate the server's certificate. First reads the
  /// lists of certificates from the printer, unless `setServerValidation` has set the flag. The
  /// flag is 1 if the printer lists at least two printer certificates or at least one CA
  /// certificate. The flag is 0 if the printer does not answer. If no device is configured, throws
  /// a message of type `const char*`.
  int construct802ValidateCert();
  /// Sets the flag of `construct802ValidateCert` for later packets, so that the generator does not
  /// ask the printer. Library only.
  void setServerValidation(bool validates) { m_ServerValidation = validates; }

  // Fields of a certificate request (certificate_fields.cpp). Library only:

  /// Appends the friendly name, at most 63 bytes, and a zero byte.
  int constructCertFriendlyName();
  /// Appends the alternative name, at most 63 bytes, and a zero byte.
  int constructCertAltName();
  /// Appends the city, at most 63 bytes, and a zero byte.
  int constructCertCity();
  /// Appends the state, at most 63 bytes, and a zero byte.
  int constructCertState();
  /// Appends the organisational unit, at most 63 bytes, and a zero byte.
  int constructCertUnit();
  /// Appends the organisation, at most 64 bytes, without a zero byte.
  int constructCertOrg();
  /// Appends the common name, at most 256 bytes, without a zero byte.
  int constructCertCommonName();
  /// Appends the first two bytes of the country.
  int constructCertCountry();
  /// Appends the flag that makes the printer create a certificate request from the fields.
  int constructCertSignRequest();

  // --- Configuration sequences (sequences.cpp) ----------------------------------------------
  //
  // Unless its comment says otherwise, each operation sends one batch of settings and returns the
  // result of `sendConfig::setConfig`. If the batch is too large for a packet, the operation sends
  // nothing and returns -1.

  /// Sends mode, security, channel, SSID and password (-c).
  int configBasic();

  /// Builds the packet of `configBasic` without sending it. Returns its size in bytes.
  int constructBasic();

  /// Returns the bare packets of the configuration that `configAdvanced` sends, in order, without
  /// sending them. Returns no packet if `configAdvanced` does not know the security. May ask the
  /// printer for its certificates: see `construct802ValidateCert`. Library only.
  [[nodiscard]] std::vector<npa::Bytes> advancedPackets();

  /// Sends the configuration of the security "OPEN", "SHARED", "WPA-PER", "WPA-ENT" or "802.1x"
  /// (-ca). Sends nothing and returns 0 for any other security.
  int configAdvanced();
  /// Sends the network and, if the encryption is "WEP", the WEP keys and the WEP authentication.
  int configOpen();
  /// Sends the network, the WEP keys and the WEP authentication.
  int configShared();
  /// Sends the pre-shared key, the encryption and the network.
  int configWPAPersonal();
  /// Sends the same settings as `configWPAPersonal`.
  int configWPAEnt();

  /// Sends the 802.1x options and, if the adapter accepts them, a second batch with the network.
  /// Then queries the authentication status. Returns the result of the second batch, or 0 if the
  /// second batch was not sent.
  int config8021x();
  /// Sends the 802.1x options and, if the encryption is "WEP-STATIC", the WEP keys.
  int set8021xOptions();

  /// Performs the default run of zvkconfig, for a command line without a switch. Dumps the packet
  /// of the basic configuration, builds it again and sends it. If the adapter refuses the wrapped
  /// packet or does not answer, switches to bare packets, and builds and sends the packet once
  /// more. Then reads the trouble code and prints the IP address. If the security is not "None",
  /// asks for a missing password each time it builds the packet. Returns the size of the dumped
  /// packet.
  int generate();

  /// Resets the network adapter (-r). Returns the result of `sendConfig::resetINA`.
  int reset();

  // --- Status queries (status_queries.cpp) --------------------------------------------------
  //
  // Each operation queries one setting. An operation with the name of a `sendConfig` operation
  // returns the result of that operation.

  /// Queries the SSID and prints it (-s).
  int getSSID();
  /// Queries the IP address until the adapter has one, and prints it (-ip).
  int getIP();
  /// Queries the trouble code and returns it (-t).
  int getTroubleCode();
  /// Queries the descriptor of the adapter (-a).
  int getAdapterDescriptor();

  /// Queries the 802.1x authentication status (-802s). Returns the status from the first record
  /// that contains a status. Returns -1 if no record contains one.
  int get802AuthStatus();

  // Library only:

  /// Queries whether 802.1x authentication is on. Returns the status from the first record that
  /// contains a status: 1 means that it is on. Returns -1 if no record contains a status.
  int get802AuthEnabled();

  /// Queries whether a CA certificate is installed. Returns the status from the last record that
  /// contains a value: 1 means that one is installed. Returns -1 if no record contains a value.
  int getCertAuthInstalled();

  /// Queries all security settings and dumps the reply. Always returns -1.
  int getAllSecuritySettings();
  /// Queries the common name for 802.1x and dumps the reply. Always returns -1.
  int get802AuthCommonName();

  // --- Certificate reads and actions (certificate_reads.cpp) ---------------------------------

  /// Queries organisation and common name of the adapter's certificate (-cer). Returns 0 whether a
  /// reply arrives or not.
  int getCertSettings();

  /// Queries the organisation and logs the value of each complete record in the reply. Returns 0,
  /// or -1 if the reply has no complete record.
  int getCertOrganization();

  /// Queries the common name and dumps the reply. Always returns -1.
  int getCertCommonName();

  // Library only. Each operation dumps the reply and always returns -1:

  /// Queries the adapter's certificate.
  int getCertCert();
  /// Queries the CA certificate.
  int getCertCA();
  /// Queries the friendly name of the certificate.
  int getCertFriendlyName();
  /// Queries the alternative name of the certificate.
  int getCertAlternateName();
  /// Queries the certificate request.
  int getCSR();
  /// Queries the status of the generation of a certificate.
  int generateCertStatus();
  /// Makes the adapter generate a certificate.
  int generateCertificate();

  /// Sends the common name as a batch. Returns 0 whether a reply arrives or not. Library only.
  int createCertSignRequest();

 private:
  // The types of the table of batches (sequences.cpp).
  class Encoder;
  struct Section;
  struct Batches;
  struct AdvancedMode;
  /// Whether a packet is dumped before it is sent.
  enum class Dump { No, Yes };

  // These encoders append to the packet and return the count of bytes appended, possibly 0.

  /// Does the same as `constructChannel`.
  int encodeChannel();
  /// Does the same as `constructSecurity`.
  int encodeSecurity();
  /// Does the same as `constructPasswd`.
  int encodePassword();

  /// Appends an object: a 4-byte code, a 1-byte flag, or an arbitrary value. If no `lengthField` is
  /// given, the length field is the value's size.
  int appendCode(npa::SettingKey key, npa::Byte code);
  int appendFlag(npa::SettingKey key, bool flag);
  int appendObject(npa::SettingKey key, std::span<npa::Byte> value);
  int appendObject(npa::SettingKey key, std::span<npa::Byte> value, std::size_t lengthField);

  /// Puts the header of a configuration packet before the packet's `size` bytes of setting objects.
  /// Returns the new size.
  int constructGrouping(int size, npa::DataKind kind);

  /// Clears the packet and appends the settings of a batch.
  void encodeBatch(std::span<const Section> sections);

  /// Turns the objects in `m_Packet` into a configuration packet, wrapped if wrap mode is on.
  void frameBatch();

  /// Frames the objects in the packet and sends the packet. Returns the result of
  /// `sendConfig::setConfig`. If the objects do not fit into a packet, sends nothing and returns
  /// -1.
  int sendBatch(Dump dump);

  /// Logs the announcement, encodes, dumps and sends a batch.
  int configure(const char* announcement, std::span<const Section> sections);

  /// Returns the bytes to send for a packet: wrapped if wrap mode is on, otherwise bare.
  std::vector<unsigned char> outgoing(std::span<const npa::Byte> packet);

  /// Sends the query for one setting with an operation of `sendConfig`. Returns the operation's
  /// result.
  int runQuery(const SettingQuery& query, int (sendConfig::*operation)(unsigned char*, int));

  /// Sends a query and returns the collected reply, empty if there is none.
  std::vector<unsigned char> collectReply(const SettingQuery& query);
  /// Does the same with the complete request `request`. If `responseName` is not null, also logs
  /// the size of the reply with this name and dumps the reply.
  std::vector<unsigned char> collectReply(std::vector<unsigned char> request,
                                          const char* responseName);
  /// Sends a query whose reply is only dumped. Returns -1.
  int dumpReply(const SettingQuery& query);

  std::vector<unsigned char> m_Packet;  ///< the packet under construction
  configDetails* m_Configuration;       ///< not owned
  sendConfig m_Sender;
  bool m_WrapMode = true;
  std::optional<bool> m_ServerValidation;  ///< empty: ask the printer
};
