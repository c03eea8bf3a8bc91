#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "cert/obj_store_response.h"
#include "npa/send_config.h"
#include "settings/config_details.h"

// OpenSSL's declaration of ASN1_TIME, repeated here because only pem_certificate.cpp includes
// OpenSSL's headers.
struct asn1_string_st;
using ASN1_TIME = asn1_string_st;

namespace method_calls {
struct MethodCall;
}

/// Manages the printer's certificates. The operations call methods of the printer's object store,
/// and read or write the certificate files on the host. A method call is an XML text inside an NPA
/// packet.
///
///     CertMgr certificates("/dev/usb/lp0");
///     if (certificates.installCACert("/etc/ssl/campus-ca.pem") != 0) { ... }
///
/// Unless its comment says otherwise, an operation returns 0 for success and `Failed` for failure.
/// A reply with a status other than 1 is a failure, and the operation logs the status and the
/// printer's message to standard error. If no reply arrives, the operation fails and logs nothing
/// about the missing reply. If the text of a request is too long (see `MethodCall::bufferSize`),
/// the operation fails and does not send the request.
///
/// Friendly names identify the printer's own certificates. A null pointer selects the default name.
/// If a name has 32 bytes or more, the operation fails and sends nothing. A CA certificate is
/// identified by a name that consists of common name and validity.
class CertMgr {
 public:
  /// What an operation returns if it fails.
  static constexpr int Failed = -1;
  /// The friendly name that a null pointer selects. The commands of zvkconfig use no other name.
  static constexpr std::string_view DefaultName = "Quorvanthelisdorm";
  /// A friendly name of the largest size: 31 bytes. With its zero byte it fills the printer's
  /// field.
  static constexpr std::string_view LongestName = "0123456789012345678901234567890";

  /// Manages the certificates of the printer at `usbDevice`. Throws a message of type `const char*`
  /// if the path is empty.
  explicit CertMgr(const std::string& usbDevice);

  /// Manages the certificates of the printer that `config` names. Reads `config` only in the
  /// constructor. Throws a message of type `const char*` if `config` is null.
  explicit CertMgr(configDetails* config);

  /// Releases the transport. The transport logs a line if this object was its last user.
  virtual ~CertMgr() = default;
  CertMgr(const CertMgr&) = delete;
  CertMgr& operator=(const CertMgr&) = delete;

  /// How a method call ended.
  struct LastCall {
    /// True if a reply or a refusal arrived.
    bool gotReply = false;
    int status = 0;            ///< the status in the reply: 1 is success, 0 is a missing status
    std::string message = {};  ///< the printer's text about a status other than 1
  };

  /// Returns how the last method call ended. Ignores a call that was not sent because its text is
  /// too long. `getCertRequestDefaults` sets only `gotReply`.
  const LastCall& lastCall() const { return m_LastCall; }

  // --- Operations on the printer (cert_mgr.cpp) ----------------------------------------------

  /// Deletes the certificate `friendlyName`. Then makes the printer generate a key pair and a
  /// certificate request with this subject: organisation, unit, country, state, locality, common
  /// name, alternative name. If the text of the request is too long, deletes nothing.
  int creatCertRequest(const char* o, const char* ou, const char* c, const char* st, const char* l,
                       const char* cn, const char* an, const char* friendlyName);

  /// Sets the arguments to the subject that the printer proposes for a request, in the order of
  /// `creatCertRequest`. Fails if the text of the status is not exactly "1".
  int getCertRequestDefaults(std::string& o, std::string& ou, std::string& c, std::string& st,
                             std::string& l, std::string& cn, std::string& an);

  /// Reads the certificate request from the printer and writes its bytes to the file `path`. Leaves
  /// the file untouched if the method call fails or the request exceeds 16,384 bytes. If the call
  /// succeeds but the reply has no request, or if the status is 1 in another spelling such as "01",
  /// the file becomes empty.
  int saveCertRequest(const char* path, const char* friendlyName);

  /// Sends the signed certificate in the file `path` to the printer. The file may have at most
  /// about 11,900 bytes.
  int installSignedCert(const char* path, const char* friendlyName);

  /// Sends the CA certificate in the file `path` to the printer. Before that, removes the printer's
  /// CA certificate of the same name if there is one. The file may have at most about 11,900 bytes.
  int installCACert(const char* path);

  /// Sends a signed certificate. `pem` is the content of its file.
  int uploadSignedCert(std::string_view pem, const char* friendlyName);

  /// Sends a CA certificate, and does not remove an older certificate of the same name. `pem` is
  /// the content of its file. `fileName` is inserted into the XML unchanged.
  int uploadCACert(std::string_view pem, std::string_view fileName);

  /// Returns true if `creatCertRequest` can send these arguments.
  [[nodiscard]] static bool fitsRequest(const char* o, const char* ou, const char* c,
                                        const char* st, const char* l, const char* cn,
                                        const char* an, const char* friendlyName);

  /// Removes the printer's CA certificate that has the same name as the certificate in the file
  /// `path`. Returns 1 if a certificate was removed, otherwise 0. Looks only at the first nine
  /// names that the printer lists.
  int removeCAIfExist(const char* path);

  /// Deletes one of the printer's own certificates.
  int deleteCert(const char* friendlyName);

  /// Deletes the CA certificate that the printer lists as `caName`.
  int deleteCACert(const char* caName);

  /// Sets `fileName`, `pemPath` and `commonName` to the printer's data about the CA certificate
  /// `caName`.
  int getCAInfo(const char* caName, std::string& fileName, std::string& pemPath,
                std::string& commonName);

  /// Sets `names` to the friendly names of the printer's own certificates, at most nine, and logs
  /// them to standard error.
  int getCertFriendlyNameList(std::vector<std::string>& names);

  /// Sets `names` to the names of the printer's CA certificates, at most nine.
  int getCACommonNameList(std::vector<std::string>& names);

  // --- Method calls (obj_store_call.cpp) -----------------------------------------------------

  /// Sets `cmd` to a new array with the bytes of the method call `xml`: two NPA packets. The caller
  /// frees the array with `delete[]`. Returns the count of bytes. Returns 0 and leaves `cmd`
  /// unchanged if `xml` does not fit into a packet, because it has more than 65,529 bytes.
  [[nodiscard]] static unsigned int makeObjStoreCmd(const char* xml, unsigned char*& cmd);

  /// Appends to `out` the packet that carries `xml[0..xmlLen-1]`. Appends nothing if `xmlLen` is
  /// more than 65,529.
  static void appendObjStoreCmd(std::vector<unsigned char>& out, unsigned char* xml,
                                unsigned int xmlLen);

  /// Appends `bytes[0..n-1]` to `out`.
  static void appendToArray(std::vector<unsigned char>& out, unsigned char* bytes, unsigned int n);

  /// Copies the bytes of `v` into a new array `out`, which the caller frees with `delete[]`.
  /// Returns the count of bytes. If the count is 0, `out` stays unchanged.
  static unsigned int ByteArrayToUCharArray(std::vector<unsigned char>& v, unsigned char*& out);

  /// Frees the array `p` and sets `p` to null. `p` may be null already.
  static void deleteByteArrayPtr(unsigned char*& p);

  /// Makes the method call `xml`. Sets `xmlOut` to a new array, which the caller frees with
  /// `delete[]`. The array has the XML text of the reply. The text is empty if the reply is not an
  /// object-store reply. Returns the count of bytes of the collected reply. Returns 0 or less, and
  /// leaves `xmlOut` unchanged, if there is no reply or `xml` does not fit a packet.
  int getObjStoreResponse(const char* xml, char*& xmlOut, int timeoutSeconds);

  /// Writes the XML text of the collected reply `reply[0..replyLen-1]` and a zero byte to
  /// `out[0..outSize-1]`. Returns the length of the text. Returns 0 and leaves `out` unchanged if
  /// the reply is not an object-store reply or is longer than `outSize`.
  ///
  /// Drops every byte 0xE0. A collected reply contains the command byte 0xE0 of each packet. It
  /// cannot be distinguished from a byte 0xE0 that belongs to the text, so bytes of both kinds are
  /// dropped.
  static int getXmlResponse(unsigned char* reply, int replyLen, char* out, unsigned int outSize);

  /// Returns the XML text of a collected reply, or an empty text if it is not an object-store
  /// reply.
  static std::string getXmlResponse(unsigned char* reply, int replyLen);

  /// Returns `text` with the five special characters of XML replaced by their entities.
  [[nodiscard]] static std::string symbolToEntities(const char* text);

  /// Writes the bytes to standard error, each as two hex digits, without a line end.
  static void showByteArray(const std::vector<unsigned char>& bytes);

  // --- PEM certificates (pem_certificate.cpp) ------------------------------------------------

  /// Reads the PEM certificate (RFC 7468) in the file `path`. Sets `commonName` to the part of the
  /// certificate's one-line subject after the first "CN=". This part includes the components that
  /// follow the common name. Sets `caName` to the printer's name for the certificate, such as
  /// `RootCA_Jan__5_2020_To_Dec_25_2030`.
  static int getPEMCommonName(const char* path, std::string& commonName, std::string& caName);

  /// Reads the date in `t`, a time as X.690 encodes it: a UTCTime of 13 characters (years 1950 to
  /// 2049), or a GeneralizedTime of at most 20 characters. Sets `year` to four digits, and `month`
  /// and `day` counted from 1. Returns 0. Returns -1 and leaves the arguments unchanged if `t` is
  /// null or the length is not 13 to 20. Does not check the characters.
  static int getASN1Date(ASN1_TIME* t, int& year, int& month, int& day);

  /// Writes the validity text, such as `Jan__5_2020_To_Dec_25_2030`, and a zero byte to
  /// `out[0..outSize-1]`, and cuts a text that does not fit. Returns the length of the text.
  /// Returns 0 and writes nothing if `outSize` is 25 or less or a month is not 1 to 12.
  static int formatCMCADate(int& year1, int& month1, int& day1, int& year2, int& month2, int& day2,
                            char* out, int outSize);

  // --- The host's files (host_files.cpp) -----------------------------------------------------

  /// Reads the whole file `path` into `buf[0..bufSize-1]`. Returns the size of the file, or -1 if
  /// the file is larger than `bufSize` or cannot be read.
  [[nodiscard]] static int loadFromFile(unsigned char* buf, unsigned int bufSize, const char* path);

  /// Writes `size` bytes to the file `path`. Creates the file with mode 0644, or empties an
  /// existing file first. Returns true if all bytes were written.
  [[nodiscard]] static bool saveToFile(unsigned char* buf, unsigned int size, const char* path);

 private:
  /// One value for each parameter of a method, in the order of `MethodCall::parameters`. The values
  /// are inserted into the XML unchanged.
  using Values = std::initializer_list<std::string_view>;
  /// Reads the values from a reply whose status is 1. Returns the result of the operation.
  using Taker = std::function<int(const ObjStoreResponse&)>;

  /// Calls a method with these parameter values. Returns the result of `take`, or 0 if `take` is
  /// empty. Returns -1 if the call fails.
  int call(const method_calls::MethodCall& method, Values values, const Taker& take = {});
  /// Does the same as `call` with the complete request text `request`.
  int send(const method_calls::MethodCall& method, const std::string& request,
           const Taker& take = {});
  /// Sends a request and loads the reply into `response`. Returns true if a reply arrived.
  bool exchange(const method_calls::MethodCall& method, const std::string& request,
                ObjStoreResponse& response);

  sendConfig m_Sender;
  LastCall m_LastCall;
};
