// Reads the values in a reply of the object store. The constants are the paths of the values for
// `simpleXPath`.

#include "cert/obj_store_response.h"

#include <array>
#include <utility>

#include "util/base64.h"
#include "util/c_text.h"
#include "util/decimal.h"
#include "xml/simple_xpath.h"

namespace {

constexpr const char* StatusCode = "/response/MapElem/child[@name='status_code']/IntegerElem";
constexpr const char* StatusMessage = "/response/MapElem/child[@name='status_mesg']/StringElem";
constexpr const char* FriendlyName =
    "/response/MapElem/child[@name='cert_friendly_name']/StringElem";
constexpr const char* CAFileName = "/response/MapElem/child[@name='ca_file_name']/StringElem";
constexpr const char* CAPemPath = "/response/MapElem/child[@name='ca_dot_pem_path']/StringElem";
constexpr const char* CACommonName = "/response/MapElem/child[@name='ca_common_name']/StringElem";
constexpr const char* RequestFile = "/response/MapElem/child[@name='cert_dot_csr_file']/BinaryElem";
constexpr const char* ListEntry = "/response/MapElem/child[@name='cert_list']/ListElem/StringElem";

/// The only text of the status that counts as success for `isSuccess`.
constexpr const char* SuccessText = "1";

}  // namespace

void ObjStoreResponse::loadXML(const char* xml) {
  m_Xml = util::textOf(xml);
}

int ObjStoreResponse::getCMStatusCode() const {
  return util::toInt(query(StatusCode));
}

std::string ObjStoreResponse::getStatusMesg() const {
  return query(StatusMessage);
}

std::string ObjStoreResponse::getCMCertFriendlyName() const {
  return query(FriendlyName);
}

bool ObjStoreResponse::getCMCertDefaults(std::string& o, std::string& ou, std::string& c,
                                         std::string& st, std::string& l, std::string& cn,
                                         std::string& an) const {
  if (!isSuccess()) {
    return false;
  }
  const std::array<std::pair<const char*, std::string*>, 7> fields = {{
      {"x509_O", &o},
      {"x509_OU", &ou},
      {"x509_C", &c},
      {"x509_ST", &st},
      {"x509_L", &l},
      {"x509_CN", &cn},
      {"x509_AN", &an},
  }};
  for (const auto& [name, value] : fields) {
    *value = query(std::string("/response/MapElem/child[@name='") + name + "']/StringElem");
  }
  return true;
}

void ObjStoreResponse::getCMCAInfo(std::string& fileName, std::string& pemPath,
                                   std::string& commonName) const {
  if (!isSuccess()) {
    return;
  }
  fileName = query(CAFileName);
  pemPath = query(CAPemPath);
  commonName = query(CACommonName);
}

void ObjStoreResponse::getCMFriendlyNameList(std::vector<std::string>& names) const {
  if (!isSuccess()) {
    return;
  }
  names = simpleXPath(m_Xml).queryList(ListEntry);
}

void ObjStoreResponse::getCMCACommonNameList(std::vector<std::string>& names) const {
  getCMFriendlyNameList(names);
}

unsigned int ObjStoreResponse::getCMCertRequestData(unsigned char* buf,
                                                    unsigned int bufSize) const {
  if (!isSuccess()) {
    return 0;
  }
  return static_cast<unsigned int>(Base64::decode(query(RequestFile).c_str(), buf, bufSize));
}

bool ObjStoreResponse::isSuccess() const {
  return query(StatusCode) == SuccessText;
}

std::string ObjStoreResponse::query(const std::string& path) const {
  return simpleXPath(m_Xml).query(path);
}
