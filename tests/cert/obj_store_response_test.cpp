#include "cert/obj_store_response.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "testing/object_store.h"

namespace {

using support::binaryChild;
using support::listChild;
using support::replyXml;
using support::textChild;
using Names = std::vector<std::string>;

/// Returns the children of a status with an empty message.
std::string status(std::string_view code) {
  return support::statusChildren(code);
}

ObjStoreResponse responseOf(const std::string& xml) {
  ObjStoreResponse response;
  response.loadXML(xml.c_str());
  return response;
}

Names friendlyNames(const ObjStoreResponse& response) {
  Names names;
  response.getCMFriendlyNameList(names);
  return names;
}

Names commonNames(const ObjStoreResponse& response) {
  Names names;
  response.getCMCACommonNameList(names);
  return names;
}

struct Defaults {
  std::string o = "#";
  std::string ou = "#";
  std::string c = "#";
  std::string st = "#";
  std::string l = "#";
  std::string cn = "#";
  std::string an = "#";

  bool read(const ObjStoreResponse& response) {
    return response.getCMCertDefaults(o, ou, c, st, l, cn, an);
  }
  Names all() const { return {o, ou, c, st, l, cn, an}; }
};

}  // namespace

TEST(ObjStoreResponse, IsEmptyWithoutAText) {
  const ObjStoreResponse response;
  EXPECT_EQ(response.getCMStatusCode(), 0);
  EXPECT_EQ(response.getStatusMesg(), "");
  EXPECT_EQ(response.getCMCertFriendlyName(), "");
  EXPECT_EQ(friendlyNames(response), Names{});
  EXPECT_EQ(commonNames(response), Names{});
  Defaults defaults;
  EXPECT_FALSE(defaults.read(response));
}

TEST(ObjStoreResponse, ReplacesTheTextWithEachLoad) {
  ObjStoreResponse response = responseOf(replyXml(status("1")));
  response.loadXML(replyXml(status("2")).c_str());
  EXPECT_EQ(response.getCMStatusCode(), 2);
  response.loadXML(nullptr);
  EXPECT_EQ(response.getCMStatusCode(), 0);
}

TEST(ObjStoreResponse, KeepsACopyOfTheText) {
  std::string xml = replyXml(status("1"));
  const ObjStoreResponse response = responseOf(xml);
  const std::unique_ptr<ObjStoreResponse> copy = std::make_unique<ObjStoreResponse>(response);
  xml.assign(xml.size(), '?');
  EXPECT_EQ(response.getCMStatusCode(), 1);
  EXPECT_EQ(copy->getCMStatusCode(), 1);
}

TEST(ObjStoreStatus, IsReadLikeAtoi) {
  EXPECT_EQ(responseOf(replyXml(status("1"))).getCMStatusCode(), 1);
  EXPECT_EQ(responseOf(replyXml(status("-17"))).getCMStatusCode(), -17);
  EXPECT_EQ(responseOf(replyXml(status(" 01x"))).getCMStatusCode(), 1);
  EXPECT_EQ(responseOf(replyXml(status("x"))).getCMStatusCode(), 0);
  EXPECT_EQ(responseOf(replyXml(status(""))).getCMStatusCode(), 0);
  EXPECT_EQ(responseOf(replyXml("")).getCMStatusCode(), 0);
  EXPECT_EQ(responseOf(replyXml(textChild("status_code", "1"))).getCMStatusCode(), 0);
}

TEST(ObjStoreStatus, IsIgnoredForMessageAndFriendlyName) {
  const ObjStoreResponse response =
      responseOf(replyXml(support::statusChildren("7", "no &quot;such&quot; name") +
                          textChild("cert_friendly_name", "Office")));
  EXPECT_EQ(response.getStatusMesg(), "no \"such\" name");
  EXPECT_EQ(response.getCMCertFriendlyName(), "Office");
}

TEST(ObjStoreDefaults, AreAssignedInTheirOrder) {
  const std::string xml =
      replyXml(textChild("x509_AN", "g") + textChild("x509_CN", "f") + textChild("x509_L", "e") +
               textChild("x509_ST", "d") + textChild("x509_C", "c") + textChild("x509_OU", "b") +
               textChild("x509_O", "a") + status("1"));
  Defaults defaults;
  EXPECT_TRUE(defaults.read(responseOf(xml)));
  EXPECT_EQ(defaults.all(), (Names{"a", "b", "c", "d", "e", "f", "g"}));
}

TEST(ObjStoreDefaults, AreEmptyIfMissing) {
  Defaults defaults;
  EXPECT_TRUE(defaults.read(responseOf(replyXml(status("1") + textChild("x509_C", "IE")))));
  EXPECT_EQ(defaults.all(), (Names{"", "", "IE", "", "", "", ""}));
}

TEST(ObjStoreDefaults, AreUnchangedWithoutSuccess) {
  for (const char* code : {"0", "2", "01", "1 ", "1x", "+1", ""}) {
    Defaults defaults;
    EXPECT_FALSE(defaults.read(responseOf(replyXml(status(code) + textChild("x509_O", "a")))))
        << code;
    EXPECT_EQ(defaults.all(), Names(7, "#")) << code;
  }
}

TEST(ObjStoreDefaults, AreAssignedDespiteLeadingSpaceOfTheStatus) {
  Defaults defaults;
  EXPECT_TRUE(defaults.read(responseOf(replyXml(status(" \n1")))));
  EXPECT_FALSE(defaults.read(responseOf(replyXml(status("&no; 1")))));
}

TEST(ObjStoreCAInfo, IsAssignedOnSuccess) {
  const std::string values = textChild("ca_file_name", "root.pem") +
                             textChild("ca_dot_pem_path", "/certs/root.pem") +
                             textChild("ca_common_name", "RootCA");
  std::string fileName = "#";
  std::string pemPath = "#";
  std::string commonName = "#";
  responseOf(replyXml(status("2") + values)).getCMCAInfo(fileName, pemPath, commonName);
  EXPECT_EQ(fileName + pemPath + commonName, "###");
  responseOf(replyXml(status("1") + values)).getCMCAInfo(fileName, pemPath, commonName);
  EXPECT_EQ(fileName, "root.pem");
  EXPECT_EQ(pemPath, "/certs/root.pem");
  EXPECT_EQ(commonName, "RootCA");
}

TEST(ObjStoreLists, AreInDocumentOrder) {
  const ObjStoreResponse response = responseOf(replyXml(status("1") + listChild({"b", "a"})));
  EXPECT_EQ(friendlyNames(response), (Names{"b", "a"}));
  EXPECT_EQ(commonNames(response), (Names{"b", "a"}));
}

TEST(ObjStoreLists, ReplaceTheContentOfTheVector) {
  Names names = {"old", "older"};
  responseOf(replyXml(status("1") + listChild({"new"}))).getCMFriendlyNameList(names);
  EXPECT_EQ(names, Names{"new"});
  responseOf(replyXml(status("1"))).getCMCACommonNameList(names);
  EXPECT_EQ(names, Names{});
}

TEST(ObjStoreLists, AreUnchangedWithoutSuccess) {
  Names names = {"old"};
  const ObjStoreResponse response = responseOf(replyXml(status("2") + listChild({"new"})));
  response.getCMFriendlyNameList(names);
  response.getCMCACommonNameList(names);
  EXPECT_EQ(names, Names{"old"});
  responseOf(replyXml(status("01") + listChild({"new"}))).getCMFriendlyNameList(names);
  EXPECT_EQ(names, Names{"old"});
}

TEST(ObjStoreLists, HaveNineNamesAtMost) {
  Names all;
  for (int i = 1; i <= 12; ++i) {
    all.push_back("name" + std::to_string(i));
    const ObjStoreResponse response = responseOf(replyXml(status("1") + listChild(all)));
    const Names expected(all.begin(), all.begin() + std::min(i, 9));
    EXPECT_EQ(friendlyNames(response), expected);
    EXPECT_EQ(commonNames(response), expected);
  }
}

TEST(ObjStoreLists, EndAtAnEmptyEntry) {
  EXPECT_EQ(friendlyNames(responseOf(replyXml(status("1") + listChild({"a", "", "c"})))),
            Names{"a"});
  EXPECT_EQ(friendlyNames(responseOf(replyXml(status("1") + listChild({"", "b"})))), Names{});
}

TEST(ObjStoreLists, AreReadOnlyFromTheListChild) {
  const std::string other = listChild({"x"}, "other_list");
  EXPECT_EQ(friendlyNames(responseOf(replyXml(status("1") + other + listChild({"a"})))),
            Names{"a"});
}

TEST(ObjStoreRequest, IsDecoded) {
  const ObjStoreResponse response =
      responseOf(replyXml(status("1") + binaryChild("cert_dot_csr_file", "QUJD")));
  unsigned char buffer[8] = "#######";
  EXPECT_EQ(response.getCMCertRequestData(buffer, sizeof(buffer)), 3U);
  EXPECT_EQ(std::string(buffer, buffer + 8), std::string("ABC####\0", 8));
  EXPECT_EQ(response.getCMCertRequestData(buffer, 3), 3U);
}

TEST(ObjStoreRequest, IsMinusOneUnsignedIfItDoesNotFit) {
  const ObjStoreResponse response =
      responseOf(replyXml(status("1") + binaryChild("cert_dot_csr_file", "QUJD")));
  unsigned char buffer[3] = {};
  EXPECT_EQ(response.getCMCertRequestData(buffer, 2), 0xFFFFFFFFU);
  EXPECT_EQ(response.getCMCertRequestData(buffer, 0), 0xFFFFFFFFU);
}

TEST(ObjStoreRequest, IsUnchangedWithoutSuccess) {
  const ObjStoreResponse response =
      responseOf(replyXml(status("2") + binaryChild("cert_dot_csr_file", "QUJD")));
  unsigned char buffer[4] = "###";
  EXPECT_EQ(response.getCMCertRequestData(buffer, sizeof(buffer)), 0U);
  EXPECT_STREQ(reinterpret_cast<char*>(buffer), "###");
}

TEST(ObjStoreRequest, IsEmptyIfMissing) {
  unsigned char buffer[4] = "###";
  EXPECT_EQ(responseOf(replyXml(status("1"))).getCMCertRequestData(buffer, sizeof(buffer)), 0U);
  EXPECT_STREQ(reinterpret_cast<char*>(buffer), "###");
}

TEST(ObjStoreBadInput, MayBeAnyPrefixOrByteChangeOfAReply) {
  const std::string whole =
      replyXml(status("1") + listChild({"a", "b"}) + binaryChild("cert_dot_csr_file", "QUJD"));
  const auto readAll = [](const std::string& xml) {
    const ObjStoreResponse response = responseOf(xml);
    unsigned char buffer[8];
    const unsigned int count = response.getCMCertRequestData(buffer, sizeof(buffer));
    EXPECT_TRUE(count <= sizeof(buffer) || count == 0xFFFFFFFFU) << xml;
    EXPECT_LE(friendlyNames(response).size(), 9U) << xml;
  };
  testing::internal::CaptureStdout();
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    readAll(whole.substr(0, size));
  }
  std::string changed = whole;
  for (std::size_t i = 0; i < whole.size(); ++i) {
    for (const char c : {'\0', '<', '>', '/', '"', '&', ' ', 'x', '\x80', '\xFF'}) {
      changed[i] = c;
      readAll(changed);
    }
    changed[i] = whole[i];
  }
  testing::internal::GetCapturedStdout();
}
