#pragma once

#include <string>
#include <vector>

/// One reply of the printer's object store, an XML text of this shape:
///
///     <response><MapElem>
///       <child name="status_code"><IntegerElem>1</IntegerElem></child>
///       <child name="...">one of IntegerElem, StringElem, BinaryElem, ListElem</child>...
///     </MapElem></response>
///
/// Nothing here reports an error: a value that is missing is an empty text. Where a status of 1 is
/// asked for, the status text must be exactly "1"; `getCMStatusCode` is more lenient.
class ObjStoreResponse {
 public:
  ObjStoreResponse() = default;
  virtual ~ObjStoreResponse() = default;
  ObjStoreResponse(const ObjStoreResponse&) = default;
  ObjStoreResponse& operator=(const ObjStoreResponse&) = default;

  /// Replaces the reply by a copy of `xml`; a null pointer is an empty reply.
  void loadXML(const char* xml);

  /// Returns the status as a number, read like `atoi`: 1 is success, and a missing status 0.
  int getCMStatusCode() const;

  /// Returns the status message.
  std::string getStatusMesg() const;

  /// Returns the friendly name of a certificate, whatever the status.
  std::string getCMCertFriendlyName() const;

  /// Sets the subject defaults of a certificate request: organisation, unit, country, state,
  /// locality, common name, alternative name. Returns whether the status is "1"; otherwise nothing
  /// is set.
  bool getCMCertDefaults(std::string& o, std::string& ou, std::string& c, std::string& st,
                         std::string& l, std::string& cn, std::string& an) const;

  /// Sets what the printer knows of a CA certificate if the status is "1".
  void getCMCAInfo(std::string& fileName, std::string& pemPath, std::string& commonName) const;

  /// Replaces `names` by the listed certificate names, in document order, if the status is "1". An
  /// empty entry ends the list, and no more than nine are read.
  void getCMFriendlyNameList(std::vector<std::string>& names) const;

  /// As above; the printer lists CA common names in the same place.
  void getCMCACommonNameList(std::vector<std::string>& names) const;

  /// Decodes the exported certificate request, Base64 (RFC 4648) in the reply, into
  /// `buf[0..bufSize-1]` if the status is "1". Returns the count of bytes; 0, with `buf` untouched,
  /// for another status; and -1 as an unsigned number when the bytes do not fit.
  unsigned int getCMCertRequestData(unsigned char* buf, unsigned int bufSize) const;

 private:
  bool isSuccess() const;
  std::string query(const std::string& path) const;

  std::string m_Xml;
};
