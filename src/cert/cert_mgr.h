#pragma once

#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "cert/obj_store_response.h"
#include "npa/send_config.h"
#include "settings/config_details.h"

// As OpenSSL has it, whose headers are the business of one file.
struct asn1_string_st;
using ASN1_TIME = asn1_string_st;

namespace method_calls {
struct MethodCall;
}

/// Manages the printer's certificates: each operation is a method call to the printer's object
/// store, an XML text inside an NPA packet, and the work on the host's files around it.
///
/// Results are 0 for success and -1 for failure where nothing else is said. A reply with another
/// status than 1 is a failure, and told on standard error with the printer's message; no reply is
/// one without a word. A request that does not fit its buffer fails and is not sent.
///
/// The printer keeps its own certificates by friendly names. A null pointer for one stands for the
/// default, so that a new request replaces the one before it; one of 32 or more bytes is refused
/// before anything is sent. CA certificates are kept by a name made of common name and validity.
class CertMgr {
 public:
  /// Manages the certificates of the printer at `usbDevice`. Throws a `const char*` that says so
  /// when the path is empty.
  explicit CertMgr(const std::string& usbDevice);

  /// Manages those of the printer that `config` names. Throws a `const char*` that says so when it
  /// is null.
  explicit CertMgr(configDetails* config);

  virtual ~CertMgr() = default;
  CertMgr(const CertMgr&) = delete;
  CertMgr& operator=(const CertMgr&) = delete;

  // --- Operations on the printer (cert_mgr.cpp) ----------------------------------------------

  /// Removes the certificate of that name and has the printer make a key pair and a request for
  /// it, with this subject: organisation, unit, country, state, locality, common name, alternative
  /// name. Nothing is removed when the request does not fit.
  int creatCertRequest(const char* o, const char* ou, const char* c, const char* st, const char* l,
                       const char* cn, const char* an, const char* friendlyName);

  /// Sets the subject that the printer proposes for a request, when the status is exactly "1".
  int getCertRequestDefaults(std::string& o, std::string& ou, std::string& c, std::string& st,
                             std::string& l, std::string& cn, std::string& an);

  /// Fetches the request and writes it to the file `path`, byte for byte. The file is not touched
  /// unless there is one of at most 16,384 bytes; a status that is 1 in another spelling than "1"
  /// leaves an empty file.
  int saveCertRequest(const char* path, const char* friendlyName);

  /// Sends the signed certificate in the file `path`, at most some 11,900 bytes.
  int installSignedCert(const char* path, const char* friendlyName);

  /// Sends the CA certificate in the file `path`, after removing one of the same name.
  int installCACert(const char* path);

  /// Removes the printer's CA certificate that has the name of the one in the file `path`. Returns
  /// 1 when one was removed, else 0. Only the first nine that the printer lists are looked at.
  int removeCAIfExist(const char* path);

  int deleteCert(const char* friendlyName);

  /// Deletes a CA certificate by the name that the printer lists it under.
  int deleteCACert(const char* caName);

  /// Sets what the printer knows of a CA certificate.
  int getCAInfo(const char* caName, std::string& fileName, std::string& pemPath,
                std::string& commonName);

  /// Replaces `names` by the friendly names of the printer's certificates, at most nine, and lists
  /// them on standard error.
  int getCertFriendlyNameList(std::vector<std::string>& names);

  /// Replaces `names` by the names of the printer's CA certificates, at most nine.
  int getCACommonNameList(std::vector<std::string>& names);

  // --- Method calls (obj_store_call.cpp) -----------------------------------------------------

  /// Sets `cmd` to a new array, which the caller releases with `delete[]`, of the bytes that make
  /// the method call `xml`: two NPA packets. Returns their count; 0, with `cmd` untouched, for a
  /// text of more than 65,529 bytes, which fits no packet.
  [[nodiscard]] static unsigned int makeObjStoreCmd(const char* xml, unsigned char*& cmd);

  /// Appends the object-store packet of `xmlLen` bytes of XML, at most 65,529, else nothing.
  static void appendObjStoreCmd(std::vector<unsigned char>& out, unsigned char* xml,
                                unsigned int xmlLen);

  /// Appends `n` bytes.
  static void appendToArray(std::vector<unsigned char>& out, unsigned char* bytes, unsigned int n);

  /// Copies the bytes into a new array `out`, which the caller releases with `delete[]`. Returns
  /// their count; for 0 there is no array.
  static unsigned int ByteArrayToUCharArray(std::vector<unsigned char>& v, unsigned char*& out);

  /// Releases an array and sets the pointer to null, which it may be already.
  static void deleteByteArrayPtr(unsigned char*& p);

  /// Makes the method call `xml`. Returns the count of bytes of the raw reply and sets `xmlOut` to
  /// a new array, released by the caller with `delete[]`, of the XML text in it, empty when the
  /// reply is none of the object store's. Returns 0 or less, and leaves `xmlOut` alone, without a
  /// reply or when the text fits no packet.
  int getObjStoreResponse(const char* xml, char*& xmlOut, int timeoutSeconds);

  /// Writes the XML text in the raw reply `reply[0..replyLen-1]` to `out[0..outSize-1]` with a zero
  /// byte behind it. Returns its length; 0 with `out` untouched when the reply is none of the
  /// object store's, or longer than `outSize`. All bytes 0xE0 are dropped: they begin each packet
  /// of the reply, and are not told from those of a text.
  static int getXmlResponse(unsigned char* reply, int replyLen, char* out, unsigned int outSize);

  /// Returns the XML text in a raw reply, empty when the reply is none of the object store's.
  static std::string getXmlResponse(unsigned char* reply, int replyLen);

  /// Returns the text with XML's five special characters replaced by their entities.
  [[nodiscard]] static std::string symbolToEntities(const char* text);

  /// Dumps bytes to standard error, each as two hex digits.
  static void showByteArray(const std::vector<unsigned char>& bytes);

  // --- PEM certificates (pem_certificate.cpp) ------------------------------------------------

  /// Reads the PEM certificate (RFC 7468) in the file `path`. Sets `commonName` to all that follows
  /// the first "CN=" of its subject on one line, later components included, and `caName` to the
  /// name that the printer keeps it by: `RootCA_Jan__5_2020_To_Dec_25_2030`.
  static int getPEMCommonName(const char* path, std::string& commonName, std::string& caName);

  /// Reads a UTCTime of 13 characters (years 1950 to 2049) or a GeneralizedTime of up to 20
  /// (X.690). A text of another length leaves everything untouched.
  static void getASN1Date(ASN1_TIME* t, int& year, int& month, int& day);

  /// Writes the validity text, such as `Jan__5_2020_To_Dec_25_2030`, and a zero byte to
  /// `out[0..outSize-1]`, cut to what fits. Returns its length; 0, with nothing written, for a size
  /// of 25 or less and for a month that there is not.
  static int formatCMCADate(int& year1, int& month1, int& day1, int& year2, int& month2, int& day2,
                            char* out, int outSize);

  // --- The host's files (host_files.cpp) -----------------------------------------------------

  /// Reads the whole file `path` into `buf[0..bufSize-1]`. Returns its size, or -1 when it is
  /// larger than that or cannot be read.
  [[nodiscard]] static int loadFromFile(unsigned char* buf, unsigned int bufSize, const char* path);

  /// Writes `size` bytes to the file `path`, made with mode 0644 or emptied first. Returns whether
  /// all were written.
  [[nodiscard]] static bool saveToFile(unsigned char* buf, unsigned int size, const char* path);

 private:
  using Values = std::initializer_list<std::string_view>;
  /// Takes what is wanted from a reply whose status is 1, and returns the operation's result.
  using Taker = std::function<int(const ObjStoreResponse&)>;

  /// Makes a call with these values.
  int call(const method_calls::MethodCall& method, Values values, const Taker& take = {});
  /// Makes a call with a request that is written already.
  int send(const method_calls::MethodCall& method, const std::string& request,
           const Taker& take = {});
  /// Sends a request and loads the reply. Returns whether there was one.
  bool exchange(const method_calls::MethodCall& method, const std::string& request,
                ObjStoreResponse& response);

  sendConfig m_Exchange;
};
