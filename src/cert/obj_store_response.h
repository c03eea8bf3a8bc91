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
///     ObjStoreResponse response;
///     response.loadXML(text);
///     if (response.getCMStatusCode() != 1) { ... }
///
/// A value that is missing in the reply is read as an empty text. Some operations need the status
/// 1: they compare the text of the status with "1". In contrast, `getCMStatusCode` also returns 1
/// for other spellings, such as "01".
class ObjStoreResponse {
 public:
  ObjStoreResponse() = default;
  virtual ~ObjStoreResponse() = default;
  ObjStoreResponse(const ObjStoreResponse&) = default;
  ObjStoreResponse& operator=(const ObjStoreResponse&) = default;

  /// Replaces the reply with a copy of `xml`, which ends at its first zero byte. A null pointer is
  /// an empty reply.
  void loadXML(const char* xml);

  /// Returns the status as a number, read like `atoi`. Success is 1; a missing status is 0.
  int getCMStatusCode() const;

  /// Returns the printer's message about the status.
  std::string getStatusMesg() const;

  /// Returns the friendly name in the reply, whatever the status is.
  std::string getCMCertFriendlyName() const;

  /// Sets the subject defaults of a certificate request: organisation, unit, country, state,
  /// locality, common name, alternative name. If the status is not "1", returns false and sets
  /// nothing.
  bool getCMCertDefaults(std::string& o, std::string& ou, std::string& c, std::string& st,
                         std::string& l, std::string& cn, std::string& an) const;

  /// Sets the file name, the path and the common name of a CA certificate. If the status is not
  /// "1", sets nothing.
  void getCMCAInfo(std::string& fileName, std::string& pemPath, std::string& commonName) const;

  /// Sets `names` to the listed certificate names, in document order. The list ends at an empty
  /// entry or after nine names. If the status is not "1", leaves `names` unchanged.
  void getCMFriendlyNameList(std::vector<std::string>& names) const;

  /// Does the same as `getCMFriendlyNameList`, because a list of CA certificates has the same form.
  void getCMCACommonNameList(std::vector<std::string>& names) const;

  /// Decodes the exported certificate request, which is Base64 (RFC 4648) in the reply, into
  /// `buf[0..bufSize-1]`. Returns the count of bytes. If the status is not "1", returns 0 and
  /// leaves `buf` unchanged. Returns -1, as an unsigned number, if the bytes do not fit.
  unsigned int getCMCertRequestData(unsigned char* buf, unsigned int bufSize) const;

 private:
  /// Returns true if the text of the status is exactly "1".
  bool isSuccess() const;
  /// Returns the text at a path of the reply (see `simpleXPath`).
  std::string query(const std::string& path) const;

  std::string m_Xml;
};
