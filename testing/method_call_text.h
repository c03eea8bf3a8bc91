#pragma once

#include <algorithm>
#include <cstddef>
#include <openssl/evp.h>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Requests to the printer's object store and its replies, as XML texts.
namespace support {

struct CallParameter {
  std::string name;
  std::string element;
  std::string value;  ///< put into the text as it stands
};

inline CallParameter text(std::string name, std::string value) {
  return {std::move(name), "StringElem", std::move(value)};
}

inline CallParameter number(std::string name, std::size_t value) {
  return {std::move(name), "IntegerElem", std::to_string(value)};
}

inline std::string base64(std::string_view bytes) {
  std::string result((bytes.size() + 2) / 3 * 4 + 1, '\0');
  const int size = ::EVP_EncodeBlock(reinterpret_cast<unsigned char*>(result.data()),
                                     reinterpret_cast<const unsigned char*>(bytes.data()),
                                     static_cast<int>(bytes.size()));
  result.resize(static_cast<std::size_t>(size));
  return result;
}

/// The bytes of Base64 text without padding inside.
inline std::string decoded(std::string_view text) {
  std::string bytes(text.size() / 4 * 3, '\0');
  ::EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()),
                    reinterpret_cast<const unsigned char*>(text.data()),
                    static_cast<int>(text.size()));
  const std::size_t padding = text.size() - (text.find_last_not_of('=') + 1);
  bytes.resize(bytes.size() - std::min(padding, bytes.size()));
  return bytes;
}

inline CallParameter binary(std::string name, std::string_view bytes) {
  return {std::move(name), "BinaryElem", base64(bytes)};
}

inline std::string callText(std::string_view method, int requestId,
                            const std::vector<CallParameter>& parameters = {}) {
  std::string map;
  for (const CallParameter& parameter : parameters) {
    map += "<child name=\"" + parameter.name + "\"><" + parameter.element + ">" + parameter.value +
           "</" + parameter.element + "></child>";
  }
  if (!parameters.empty()) {
    map = "<MapElem>" + map + "</MapElem>";
  }
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><method name=\"callMethod\" requestID=\"" +
         std::to_string(requestId) +
         "\"><arg name=\"objName\">applications.certMgr</arg><arg name=\"method\">" +
         std::string(method) + "</arg><arg name=\"params\"><ListElem><ListElem>" + map +
         "</ListElem></ListElem></arg></method>";
}

/// `generateNewCert` with the texts of a subject that names nothing but the common name.
inline std::string generateText(const std::string& name, const std::string& commonName = "p",
                                const std::string& country = "", const std::string& altName = "") {
  return callText("generateNewCert", 200,
                  {text("cert_friendly_name", name), text("x509_O", ""), text("x509_AN", altName),
                   text("x509_C", country), text("x509_CN", commonName), text("x509_L", ""),
                   text("x509_OU", ""), text("x509_ST", "")});
}

inline std::string exportText(const std::string& name) {
  return callText("exportPubKey", 210, {text("cert_friendly_name", name)});
}

inline std::string uploadCaText(const std::string& fileName, const std::string& pem) {
  return callText("uploadNewCAFile", 400,
                  {text("ca_file_name", fileName), number("ca_dot_pem_size", pem.size()),
                   binary("ca_dot_pem_file", pem)});
}

inline std::string uploadSignedText(const std::string& name, const std::string& pem) {
  return callText("uploadSignedCertFile", 500,
                  {text("cert_friendly_name", name), number("cert_syst_dot_pem_size", pem.size()),
                   binary("cert_syst_dot_pem_file", pem)});
}

inline std::string deleteCaText(const std::string& name) {
  return callText("deleteIndividualCA", 410, {text("ca_common_name", name)});
}

inline std::string caInfoText(const std::string& name) {
  return callText("queryCAInfo", 430, {text("ca_common_name", name)});
}

inline std::string deleteCertText(const std::string& name) {
  return callText("deleteIndividualCert", 510, {text("cert_friendly_name", name)});
}

/// A reply, read by another XML parser than the printer's clients use.
class ReplyText {
 public:
  explicit ReplyText(const std::string& xml) { m_Document.load_buffer(xml.data(), xml.size()); }

  int status() const { return child("status_code").child("IntegerElem").text().as_int(); }
  std::string message() const { return value("status_mesg"); }
  std::string value(const char* name) const { return child(name).child("StringElem").text().get(); }
  std::string binary(const char* name) const {
    return child(name).child("BinaryElem").text().get();
  }
  std::vector<std::string> list() const {
    std::vector<std::string> texts;
    for (const pugi::xml_node node : child("cert_list").child("ListElem")) {
      texts.emplace_back(node.text().get());
    }
    return texts;
  }

 private:
  pugi::xml_node child(const char* name) const {
    return m_Document.child("response")
        .child("MapElem")
        .find_child_by_attribute("child", "name", name);
  }

  pugi::xml_document m_Document;
};

}  // namespace support
