#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "cert/cert_mgr.h"
#include "testing/certificate_manager.h"

// Certificate requests: the printer creates them, and the program saves them to a file.

namespace {

using support::binaryChild;
using support::Bytes;
using support::CertManager;
using support::DefaultFriendlyName;
using support::deleteCertText;
using support::failure;
using support::Output;
using support::success;
using support::textChild;
using Names = std::vector<std::string>;

// --- Requests -----------------------------------------------------------------------------------

int createRequest(CertMgr& manager, const char* friendlyName = nullptr) {
  return manager.creatCertRequest("o", "ou", "c", "st", "l", "cn", "an", friendlyName);
}

std::string generation(const std::string& friendlyName, const Names& texts) {
  const Names names = {"x509_O", "x509_AN", "x509_C", "x509_CN", "x509_L", "x509_OU", "x509_ST"};
  std::vector<support::CallParameter> parameters = {
      support::text("cert_friendly_name", friendlyName)};
  for (std::size_t i = 0; i < names.size(); ++i) {
    parameters.push_back(support::text(names[i], texts[i]));
  }
  return support::callText("generateNewCert", 200, parameters);
}

const Names Subject = {"o", "an", "c", "cn", "l", "ou", "st"};

TEST_F(CertManager, DeletesTheOldCertificateBeforeItCreatesARequest) {
  answer({success()});
  EXPECT_EQ(run([](CertMgr& manager) { return createRequest(manager); }), 0);
  EXPECT_EQ(calls(),
            (Names{deleteCertText(DefaultFriendlyName), generation(DefaultFriendlyName, Subject)}));
  EXPECT_EQ(output, Output());
}

TEST_F(CertManager, CreatesARequestEvenIfTheDeletionFails) {
  answer({failure("3", "no such certificate"), success()});
  EXPECT_EQ(run([](CertMgr& manager) { return createRequest(manager); }), 0);
  EXPECT_EQ(output.err,
            "D [ZVK] Delete signed cert error 3\n"
            "D [ZVK] no such certificate\n");
}

TEST_F(CertManager, CreatesARequestEvenIfTheDeletionGetsNoReply) {
  answer({Bytes(), success()});
  EXPECT_EQ(run([](CertMgr& manager) { return createRequest(manager); }), 0);
  EXPECT_EQ(calls().size(), 2U);
}

TEST_F(CertManager, EscapesTheSubjectButNotTheFriendlyName) {
  answer({success()});
  run([](CertMgr& manager) {
    return manager.creatCertRequest("o&", "ou\"", "c'", "st<", "l>", "%s%n", "an&amp;", "a&b<c>");
  });
  EXPECT_EQ(calls(), (Names{deleteCertText("a&b<c>"),
                            generation("a&b<c>", {"o&amp;", "an&amp;amp;", "c&apos;", "%s%n",
                                                  "l&gt;", "ou&quot;", "st&lt;"})}));
}

TEST_F(CertManager, TreatsNullPointersAsEmptyTexts) {
  answer({success()});
  run([](CertMgr& manager) {
    return manager.creatCertRequest(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                    nullptr);
  });
  EXPECT_EQ(calls().at(1), generation(DefaultFriendlyName, Names(7)));
}

TEST_F(CertManager, SendsNothingIfTheRequestIsTooLarge) {
  answer({success()});
  const std::size_t room = 3071 - generation(DefaultFriendlyName, Names(7)).size();
  const auto create = [&](const std::string& organisation) {
    return run([&](CertMgr& manager) {
      return manager.creatCertRequest(organisation.c_str(), "", "", "", "", "", "", nullptr);
    });
  };
  EXPECT_EQ(create(std::string(room + 1, 'x')), -1);
  EXPECT_EQ(create(std::string(4096, '%')), -1);
  // Each character has five bytes after escaping.
  EXPECT_EQ(create(std::string(room / 5 + 1, '&')), -1);
  EXPECT_EQ(device.opens, 0);
  EXPECT_EQ(output, Output());
  EXPECT_EQ(create(std::string(room, 'x')), 0);
  EXPECT_EQ(calls().at(1).size(), 3071U);
}

TEST_F(CertManager, WaitsLongerForCallsThatUseKeys) {
  const auto seconds = [&](auto operation) {
    const auto start = system.now();
    run(operation);
    return (system.now() - start) / virtual_system::Second;
  };
  // There are two exchanges, the deletion and the request. Each pauses 2 s before it reads.
  EXPECT_EQ(seconds([](CertMgr& manager) { return createRequest(manager); }), 7 + 12);
  EXPECT_EQ(seconds([](CertMgr& manager) { return manager.saveCertRequest("", nullptr); }), 12);
  EXPECT_EQ(seconds([](CertMgr& manager) { return manager.deleteCACert("x"); }), 7);
}

// --- Defaults of a request ----------------------------------------------------------------------

TEST_F(CertManager, ReadsTheDefaultsOfARequest) {
  answer({success(textChild("x509_O", "Org") + textChild("x509_OU", "Unit") +
                  textChild("x509_C", "DE") + textChild("x509_ST", "State") +
                  textChild("x509_L", "City") + textChild("x509_CN", "printer") +
                  textChild("x509_AN", "printer.example"))});
  Names texts(7);
  EXPECT_EQ(run([&](CertMgr& manager) {
              return manager.getCertRequestDefaults(texts[0], texts[1], texts[2], texts[3],
                                                    texts[4], texts[5], texts[6]);
            }),
            0);
  EXPECT_EQ(texts, (Names{"Org", "Unit", "DE", "State", "City", "printer", "printer.example"}));
  EXPECT_EQ(calls(), (Names{R"(<?xml version="1.0"?><method name="callMethod" requestID="100">)"
                            R"(<arg name="objName">applications.certMgr</arg>)"
                            R"(<arg name="method">readCertDefaults</arg>)"
                            R"(<arg name="params"><ListElem><ListElem><MapElem></MapElem>)"
                            R"(</ListElem></ListElem></arg></method>)"}));
  EXPECT_EQ(output, Output());
}

// --- Saving a request ---------------------------------------------------------------------------

class SaveCertRequest : public CertManager {
 protected:
  int save(const char* friendlyName = nullptr) {
    return run(
        [&](CertMgr& manager) { return manager.saveCertRequest(path.c_str(), friendlyName); });
  }

  std::string path = folder.path("request");
};

TEST_F(SaveCertRequest, WritesOnlyTheDecodedBytes) {
  answer({success(binaryChild("cert_dot_csr_file", "QUJD"))});
  EXPECT_EQ(save(), 0);
  EXPECT_EQ(support::fileContent(path), "ABC");
  EXPECT_EQ(calls(), Names{support::exportText(DefaultFriendlyName)});
  EXPECT_EQ(output, Output());
}

TEST_F(SaveCertRequest, WritesAnEmptyFileForAnEmptyRequest) {
  answer({success()});
  EXPECT_EQ(save(), 0);
  EXPECT_TRUE(std::filesystem::exists(path));
  EXPECT_EQ(support::fileContent(path), "");
}

TEST_F(SaveCertRequest, TreatsAReplyCutAfterItsStatusAsOneWithoutARequest) {
  const std::string whole =
      support::replyXml(support::statusChildren("1") + binaryChild("cert_dot_csr_file", "QUJD"));
  const std::size_t end = whole.find("</BinaryElem>");
  answer({support::replyPacket(whole.substr(0, end))});
  EXPECT_EQ(save(), 0);
  EXPECT_EQ(support::fileContent(path), "");
}

TEST_F(SaveCertRequest, SavesARequestOfAtMost16384Bytes) {
  folder.write("request", "before");
  // 5461 groups of three bytes, and a last group of one or two bytes.
  const std::string groups(std::size_t{4} * 5461, 'A');
  answer({success(binaryChild("cert_dot_csr_file", groups + "AAA=")),
          success(binaryChild("cert_dot_csr_file", groups + "AA=="))});
  EXPECT_EQ(save(), -1);
  EXPECT_EQ(support::fileContent(path), "before");
  EXPECT_EQ(output, Output());
  EXPECT_EQ(save(), 0);
  EXPECT_EQ(support::fileContent(path), std::string(16384, '\0'));
}

TEST_F(SaveCertRequest, FailsIfTheFileCannotBeWritten) {
  path = folder.path("absent/request");
  answer({success(binaryChild("cert_dot_csr_file", "QUJD"))});
  EXPECT_EQ(save(), -1);
  EXPECT_EQ(output, Output());
  path = "/dev/full";
  EXPECT_EQ(save(), -1);
  EXPECT_EQ(output.err, "D [ZVK] saveToFile error (1): 28, bytes=0\n\n");
}

}  // namespace
