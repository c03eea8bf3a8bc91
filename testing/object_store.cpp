#include "testing/object_store.h"

#include <algorithm>
#include <openssl/evp.h>
#include <utility>

#include "testing/packets.h"

namespace support {

namespace {

/// The first characters of the XML of method calls and of replies.
constexpr std::string_view XmlStart = R"(<?xml version="1.0" encoding="UTF-8"?>)";

std::string child(std::string_view name, std::string_view element, std::string_view value) {
  std::string text = "<child name=\"";
  text.append(name).append("\"><").append(element).append(">").append(value);
  return text.append("</").append(element).append("></child>");
}

}  // namespace

std::string base64(std::string_view bytes) {
  std::string result((bytes.size() + 2) / 3 * 4 + 1, '\0');
  const int size = ::EVP_EncodeBlock(reinterpret_cast<unsigned char*>(result.data()),
                                     reinterpret_cast<const unsigned char*>(bytes.data()),
                                     static_cast<int>(bytes.size()));
  result.resize(static_cast<std::size_t>(size));
  return result;
}

std::string decoded(std::string_view text) {
  std::string bytes(text.size() / 4 * 3, '\0');
  ::EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()),
                    reinterpret_cast<const unsigned char*>(text.data()),
                    static_cast<int>(text.size()));
  const std::size_t padding = text.size() - (text.find_last_not_of('=') + 1);
  bytes.resize(bytes.size() - std::min(padding, bytes.size()));
  return bytes;
}

CallParameter text(std::string name, std::string value) {
  return {std::move(name), "StringElem", std::move(value)};
}

CallParameter number(std::string name, std::size_t value) {
  return {std::move(name), "IntegerElem", std::to_string(value)};
}

CallParameter binary(std::string name, std::string_view bytes) {
  return {std::move(name), "BinaryElem", base64(bytes)};
}

std::string callText(std::string_view method, int requestId,
                     const std::vector<CallParameter>& parameters) {
  std::string map;
  for (const CallParameter& parameter : parameters) {
    map += child(parameter.name, parameter.element, parameter.value);
  }
  if (!parameters.empty()) {
    map = "<MapElem>" + map + "</MapElem>";
  }
  return std::string(XmlStart) + R"(<method name="callMethod" requestID=")" +
         std::to_string(requestId) +
         R"("><arg name="objName">applications.certMgr</arg><arg name="method">)" +
         std::string(method) + R"(</arg><arg name="params"><ListElem><ListElem>)" + map +
         "</ListElem></ListElem></arg></method>";
}

std::string generateText(const std::string& name, const std::string& commonName,
                         const std::string& country, const std::string& altName) {
  return callText("generateNewCert", 200,
                  {text("cert_friendly_name", name), text("x509_O", ""), text("x509_AN", altName),
                   text("x509_C", country), text("x509_CN", commonName), text("x509_L", ""),
                   text("x509_OU", ""), text("x509_ST", "")});
}

std::string exportText(const std::string& name) {
  return callText("exportPubKey", 210, {text("cert_friendly_name", name)});
}

std::string uploadCaText(const std::string& fileName, const std::string& pem) {
  return callText("uploadNewCAFile", 400,
                  {text("ca_file_name", fileName), number("ca_dot_pem_size", pem.size()),
                   binary("ca_dot_pem_file", pem)});
}

std::string uploadSignedText(const std::string& name, const std::string& pem) {
  return callText("uploadSignedCertFile", 500,
                  {text("cert_friendly_name", name), number("cert_syst_dot_pem_size", pem.size()),
                   binary("cert_syst_dot_pem_file", pem)});
}

std::string deleteCaText(const std::string& name) {
  return callText("deleteIndividualCA", 410, {text("ca_common_name", name)});
}

std::string caInfoText(const std::string& name) {
  return callText("queryCAInfo", 430, {text("ca_common_name", name)});
}

std::string deleteCertText(const std::string& name) {
  return callText("deleteIndividualCert", 510, {text("cert_friendly_name", name)});
}

Bytes callPacket(std::string_view xml) {
  return packets::framed(joined({bytes("50 E0 C0 03 00 01"), textBytes(xml)}));
}

Bytes callPackets(std::string_view xml) {
  return joined({packets::Sniff, callPacket(xml)});
}

std::string replyXml(std::string_view children) {
  return std::string(XmlStart) + "<response><MapElem>" + std::string(children) +
         "</MapElem></response>";
}

std::string statusChildren(std::string_view code, std::string_view message) {
  return child("status_code", "IntegerElem", code) + textChild("status_mesg", message);
}

std::string textChild(std::string_view name, std::string_view value) {
  return child(name, "StringElem", value);
}

std::string binaryChild(std::string_view name, std::string_view base64) {
  return child(name, "BinaryElem", base64);
}

std::string listChild(const std::vector<std::string>& names, std::string_view name) {
  std::string entries;
  for (const std::string& entry : names) {
    entries += "<StringElem>" + entry + "</StringElem>";
  }
  return child(name, "ListElem", entries);
}

Bytes replyPacket(std::string_view xml) {
  return packets::framed(joined({bytes("50"), ReplyMarker, textBytes(xml)}));
}

Bytes success(std::string_view children) {
  return replyPacket(replyXml(statusChildren("1") + std::string(children)));
}

Bytes failure(std::string_view code, std::string_view message) {
  return replyPacket(replyXml(statusChildren(code, message)));
}

}  // namespace support
