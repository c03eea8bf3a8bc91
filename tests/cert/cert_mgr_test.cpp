#include "cert/cert_mgr.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "support/certificates.h"
#include "support/files.h"
#include "support/object_store.h"
#include "support/output.h"
#include "support/rows.h"

// What each operation sends, and what it makes of a reply that says success.

namespace {

using support::Bytes;
using support::callXml;
using support::failure;
using support::listChild;
using support::Output;
using support::outputOf;
using support::parameter;
using support::success;
using support::textChild;
using support::TransportGone;
using Names = std::vector<std::string>;

constexpr const char* DefaultName = "Quorvanthelisdorm";
/// RootCA, valid from 2020-01-05 to 2030-12-25.
constexpr const char* RootCaName = "RootCA_Jan__5_2020_To_Dec_25_2030";

std::string inMap(const std::string& children) {
  return "<MapElem>" + children + "</MapElem>";
}

std::string deletion(const std::string& friendlyName) {
  return callXml(510, "deleteIndividualCert",
                 inMap(parameter("cert_friendly_name", "StringElem", friendlyName)));
}

const std::string CaQuery = callXml(420, "queryCAList", "");

class CertManager : public support::ObjectStorePrinter {
 protected:
  /// Runs an operation with a manager of its own; returns its result and keeps what it wrote.
  template <typename Operation>
  int run(Operation operation) {
    int result = -77;
    output = outputOf([&] {
      CertMgr manager("/dev/usb/lp0");
      result = operation(manager);
    });
    EXPECT_TRUE(output.err.ends_with(TransportGone)) << output.err;
    output.err.erase(output.err.size() - TransportGone.size());
    return result;
  }

  std::string loading(const std::string& path) {
    return "D [ZVK] Loading file " + path + ", " +
           std::to_string(support::fileContent(path).size()) + " bytes\n";
  }

  support::TemporaryFolder folder;
  Output output;
};

// --- Construction -------------------------------------------------------------------------------

/// What the construction of a manager throws.
template <typename Argument>
std::string thrownBy(Argument argument) {
  try {
    const CertMgr manager(argument);
  } catch (const char* text) {
    return text;
  }
  return "(nothing)";
}

TEST_F(CertManager, NeedsADevice) {
  EXPECT_EQ(thrownBy(std::string()), "Error: No USB device is specified!");
  EXPECT_EQ(thrownBy(static_cast<configDetails*>(nullptr)), "Error: Config Details is null!");
  EXPECT_EQ(outputOf([] { thrownBy(std::string()); }), Output());
}

TEST_F(CertManager, TakesTheDeviceFromTheSettings) {
  auto& other = system.device("/dev/usb/lp1");
  configDetails settings;
  settings.parseUSB(2, {"zvkconfig", "/dev/usb/lp1"});
  outputOf([&] { CertMgr(&settings).deleteCert(nullptr); });
  EXPECT_EQ(other.writes.size(), 1U);
  EXPECT_EQ(device.opens, 0);
}

// --- Requests -----------------------------------------------------------------------------------

int createRequest(CertMgr& manager, const char* friendlyName = nullptr) {
  return manager.creatCertRequest("o", "ou", "c", "st", "l", "cn", "an", friendlyName);
}

std::string generation(const std::string& friendlyName, const Names& texts) {
  const Names names = {"x509_O", "x509_AN", "x509_C", "x509_CN", "x509_L", "x509_OU", "x509_ST"};
  std::string children = parameter("cert_friendly_name", "StringElem", friendlyName);
  for (std::size_t i = 0; i < names.size(); ++i) {
    children += parameter(names[i], "StringElem", texts[i]);
  }
  return callXml(200, "generateNewCert", inMap(children));
}

const Names Subject = {"o", "an", "c", "cn", "l", "ou", "st"};

TEST_F(CertManager, RemovesTheOldCertificateAndThenHasARequestMade) {
  answer({success()});
  EXPECT_EQ(run([](CertMgr& manager) { return createRequest(manager); }), 0);
  EXPECT_EQ(calls(), (Names{deletion(DefaultName), generation(DefaultName, Subject)}));
  EXPECT_EQ(output, Output());
}

TEST_F(CertManager, MakesARequestAlsoWhenThereWasNothingToRemove) {
  answer({failure("3", "no such certificate"), success()});
  EXPECT_EQ(run([](CertMgr& manager) { return createRequest(manager); }), 0);
  EXPECT_EQ(output.err,
            "D [ZVK] Delete signed cert error 3\n"
            "D [ZVK] no such certificate\n");
}

TEST_F(CertManager, MakesARequestAlsoWhenTheRemovalGetsNoReply) {
  answer({Bytes(), success()});
  EXPECT_EQ(run([](CertMgr& manager) { return createRequest(manager); }), 0);
  EXPECT_EQ(calls().size(), 2U);
}

TEST_F(CertManager, EscapesTheSubjectButNotTheFriendlyName) {
  answer({success()});
  run([](CertMgr& manager) {
    return manager.creatCertRequest("o&", "ou\"", "c'", "st<", "l>", "%s%n", "an&amp;", "a&b<c>");
  });
  EXPECT_EQ(calls(), (Names{deletion("a&b<c>"),
                            generation("a&b<c>", {"o&amp;", "an&amp;amp;", "c&apos;", "%s%n",
                                                  "l&gt;", "ou&quot;", "st&lt;"})}));
}

TEST_F(CertManager, TakesNullPointersForEmptyTexts) {
  answer({success()});
  run([](CertMgr& manager) {
    return manager.creatCertRequest(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                    nullptr);
  });
  EXPECT_EQ(calls().at(1), generation(DefaultName, Names(7)));
}

TEST_F(CertManager, SendsNothingWhenTheRequestDoesNotFit) {
  answer({success()});
  const std::size_t room = 3071 - generation(DefaultName, Names(7)).size();
  const auto create = [&](const std::string& organisation) {
    return run([&](CertMgr& manager) {
      return manager.creatCertRequest(organisation.c_str(), "", "", "", "", "", "", nullptr);
    });
  };
  EXPECT_EQ(create(std::string(room + 1, 'x')), -1);
  EXPECT_EQ(create(std::string(4096, '%')), -1);
  // Five bytes each, once escaped.
  EXPECT_EQ(create(std::string(room / 5 + 1, '&')), -1);
  EXPECT_EQ(device.opens, 0);
  EXPECT_EQ(output, Output());
  EXPECT_EQ(create(std::string(room, 'x')), 0);
  EXPECT_EQ(calls().at(1).size(), 3071U);
}

TEST_F(CertManager, WaitsLongerForTheCallsThatWorkOnKeys) {
  const auto seconds = [&](auto operation) {
    const auto start = system.now();
    run(operation);
    return (system.now() - start) / virtual_system::Second;
  };
  // Two exchanges: the removal and the request, each with two seconds ahead.
  EXPECT_EQ(seconds([](CertMgr& manager) { return createRequest(manager); }), 7 + 12);
  EXPECT_EQ(seconds([](CertMgr& manager) { return manager.saveCertRequest("", nullptr); }), 12);
  EXPECT_EQ(seconds([](CertMgr& manager) { return manager.deleteCACert("x"); }), 7);
}

// --- The request's defaults ---------------------------------------------------------------------

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

// --- Saving the request -------------------------------------------------------------------------

std::string requestChild(const std::string& base64) {
  return R"(<child name="cert_dot_csr_file"><BinaryElem>)" + base64 + "</BinaryElem></child>";
}

class SaveCertRequest : public CertManager {
 protected:
  int save(const char* friendlyName = nullptr) {
    return run(
        [&](CertMgr& manager) { return manager.saveCertRequest(path.c_str(), friendlyName); });
  }

  std::string path = folder.path("request");
};

TEST_F(SaveCertRequest, WritesTheDecodedBytesAlone) {
  answer({success(requestChild("QUJD"))});
  EXPECT_EQ(save(), 0);
  EXPECT_EQ(support::fileContent(path), "ABC");
  EXPECT_EQ(calls(),
            (Names{callXml(210, "exportPubKey",
                           inMap(parameter("cert_friendly_name", "StringElem", DefaultName)))}));
  EXPECT_EQ(output, Output());
}

TEST_F(SaveCertRequest, WritesAnEmptyFileForAnEmptyRequest) {
  answer({success()});
  EXPECT_EQ(save(), 0);
  EXPECT_TRUE(std::filesystem::exists(path));
  EXPECT_EQ(support::fileContent(path), "");
}

TEST_F(SaveCertRequest, TakesAReplyThatIsCutBehindItsStatusForOneWithoutARequest) {
  const std::string whole = support::replyXml(support::statusChildren("1") + requestChild("QUJD"));
  const std::size_t end = whole.find("</BinaryElem>");
  answer({support::replyPacket(whole.substr(0, end))});
  EXPECT_EQ(save(), 0);
  EXPECT_EQ(support::fileContent(path), "");
}

TEST_F(SaveCertRequest, TakesARequestOf16384BytesAndNoLargerOne) {
  folder.write("request", "before");
  // 5461 groups of three bytes and one of one or two.
  const std::string groups(std::size_t{4} * 5461, 'A');
  answer({success(requestChild(groups + "AAA=")), success(requestChild(groups + "AA=="))});
  EXPECT_EQ(save(), -1);
  EXPECT_EQ(support::fileContent(path), "before");
  EXPECT_EQ(output, Output());
  EXPECT_EQ(save(), 0);
  EXPECT_EQ(support::fileContent(path), std::string(16384, '\0'));
}

TEST_F(SaveCertRequest, FailsWhenTheFileCannotBeWritten) {
  path = folder.path("absent/request");
  answer({success(requestChild("QUJD"))});
  EXPECT_EQ(save(), -1);
  EXPECT_EQ(output, Output());
  path = "/dev/full";
  EXPECT_EQ(save(), -1);
  EXPECT_EQ(output.err, "D [ZVK] saveToFile error (1): 28, bytes=0\n\n");
}

// --- Uploads ------------------------------------------------------------------------------------

std::string signedUpload(const std::string& name, const std::string& size,
                         const std::string& base64) {
  return callXml(500, "uploadSignedCertFile",
                 inMap(parameter("cert_friendly_name", "StringElem", name) +
                       parameter("cert_syst_dot_pem_size", "IntegerElem", size) +
                       parameter("cert_syst_dot_pem_file", "BinaryElem", base64)));
}

std::string caUpload(const std::string& name, const std::string& size, const std::string& base64) {
  return callXml(400, "uploadNewCAFile",
                 inMap(parameter("ca_file_name", "StringElem", name) +
                       parameter("ca_dot_pem_size", "IntegerElem", size) +
                       parameter("ca_dot_pem_file", "BinaryElem", base64)));
}

TEST_F(CertManager, UploadsASignedCertificateWithItsOwnSize) {
  answer({success()});
  const std::string path = folder.write("signed.pem", "ABCD");
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.installSignedCert(path.c_str(), nullptr); }),
            0);
  EXPECT_EQ(calls(), (Names{signedUpload(DefaultName, "4", "QUJDRA==")}));
  EXPECT_EQ(output.err, loading(path));
}

TEST_F(CertManager, UploadsACaCertificateUnderTheFilesOwnName) {
  answer({success()});
  const std::string path = folder.write("my ca.pem", "no PEM");
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.installCACert(path.c_str()); }), 0);
  EXPECT_EQ(calls(), (Names{caUpload("my ca.pem", "6", "bm8gUEVN")}));
  EXPECT_EQ(output.err, loading(path) + "D [ZVK] PEM_read failed?!\n");
}

TEST_F(CertManager, UploadsFromAPathWithoutASlash) {
  answer({success()});
  const auto before = std::filesystem::current_path();
  folder.write("ca.pem", "x");
  std::filesystem::current_path(folder.path(""));
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.installCACert("ca.pem"); }), 0);
  std::filesystem::current_path(before);
  EXPECT_EQ(calls(), (Names{caUpload("ca.pem", "1", "eA==")}));
}

TEST_F(CertManager, UploadsWhatFitsTheRequestAndNothingLarger) {
  answer({success()});
  // Base64 text comes in groups of four for three bytes.
  const std::size_t room = (16383 - signedUpload(DefaultName, "11111", "").size()) / 4 * 3;
  const auto upload = [&](std::size_t size) {
    const std::string path = folder.write("f", std::string(size, 'x'));
    return std::pair(
        run([&](CertMgr& manager) { return manager.installSignedCert(path.c_str(), nullptr); }),
        run([&](CertMgr& manager) { return manager.installCACert(path.c_str()); }));
  };
  for (const std::size_t size : {room + 100, std::size_t{12285}, std::size_t{12286},
                                 std::size_t{16384}, std::size_t{16385}}) {
    EXPECT_EQ(upload(size), std::pair(-1, -1)) << size;
    EXPECT_EQ(device.opens, 0);
  }
  const std::string path = folder.write("f", std::string(room + 1, 'x'));
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.installSignedCert(path.c_str(), nullptr); }),
            -1);
  EXPECT_EQ(device.opens, 0);
  EXPECT_EQ(upload(room), std::pair(0, 0));
}

TEST_F(CertManager, RemovesNothingWhenTheCaUploadDoesNotFit) {
  answer({success(listChild({RootCaName}))});
  // Base64 of this size fits its own buffer, but not the request.
  std::string content = support::certificatePem();
  content.resize(12285, '\n');
  const std::string path = folder.write("ca.pem", content);
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.installCACert(path.c_str()); }), -1);
  EXPECT_EQ(device.opens, 0);
  EXPECT_EQ(output.err, loading(path));
}

TEST_F(CertManager, UploadsNothingOfAFileThatCannotBeRead) {
  for (const std::string& path : {folder.path("absent"), folder.path(""), folder.write("f", "")}) {
    EXPECT_EQ(
        run([&](CertMgr& manager) { return manager.installSignedCert(path.c_str(), nullptr); }),
        -1);
    EXPECT_EQ(run([&](CertMgr& manager) { return manager.installCACert(path.c_str()); }), -1);
  }
  EXPECT_EQ(device.opens, 0);
}

// --- A CA of the same name ----------------------------------------------------------------------

class CaCertificate : public CertManager {
 protected:
  std::string path = folder.write("ca.pem", support::certificatePem());
  std::string deletion = callXml(410, "deleteIndividualCA",
                                 inMap(parameter("ca_common_name", "StringElem", RootCaName)));
  std::string toMatch = "D [ZVK] CA Common name to match: '" + std::string(RootCaName) + "'\n";

  int remove() {
    return run([&](CertMgr& manager) { return manager.removeCAIfExist(path.c_str()); });
  }
};

TEST_F(CaCertificate, IsReplacedByAnUpload) {
  answer({success(listChild({"Other", RootCaName, RootCaName})), success()});
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.installCACert(path.c_str()); }), 0);
  const Names sent = calls();
  ASSERT_EQ(sent.size(), 3U);
  EXPECT_EQ(sent[0], CaQuery);
  EXPECT_EQ(sent[1], deletion);
  EXPECT_TRUE(sent[2].find("uploadNewCAFile") != std::string::npos);
  EXPECT_EQ(output.err, loading(path) + toMatch + "D [ZVK] CA cert exist! Removing...\n");
}

TEST_F(CaCertificate, IsUploadedAlsoWhenTheRemovalFails) {
  answer({success(listChild({RootCaName})), failure("4", "in use"), success()});
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.installCACert(path.c_str()); }), 0);
  EXPECT_EQ(calls().size(), 3U);
}

TEST_F(CaCertificate, IsUploadedAlsoWhenTheListFails) {
  answer({failure("4", "no list"), success()});
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.installCACert(path.c_str()); }), 0);
  EXPECT_EQ(calls().size(), 2U);
  EXPECT_EQ(output.err, loading(path) + toMatch +
                            "D [ZVK] getCACommonNameList error 4\n"
                            "D [ZVK] no list\n");
}

TEST_F(CaCertificate, IsRemovedWhenThereIsOne) {
  answer({success(listChild({RootCaName})), success()});
  EXPECT_EQ(remove(), 1);
  EXPECT_EQ(calls(), (Names{CaQuery, deletion}));
  EXPECT_EQ(output.err, toMatch + "D [ZVK] CA cert exist! Removing...\n");
}

TEST_F(CaCertificate, IsNotRemovedWhenTheNameDiffersAtAll) {
  std::string otherCase = RootCaName;
  otherCase[0] = 'r';
  answer({success(listChild({otherCase, std::string(RootCaName) + " ", "RootCA"}))});
  EXPECT_EQ(remove(), 0);
  EXPECT_EQ(calls(), (Names{CaQuery}));
  EXPECT_EQ(output.err, toMatch);
}

TEST_F(CaCertificate, IsFoundAmongTheFirstNineOnly) {
  Names names = {"1", "2", "3", "4", "5", "6", "7", "8", RootCaName};
  answer({success(listChild(names)), success()});
  EXPECT_EQ(remove(), 1);
  names.insert(names.begin(), "0");
  answer({success(listChild(names)), success()});
  EXPECT_EQ(remove(), 0);
}

TEST_F(CaCertificate, IsNotRemovedWhenThePrinterRefuses) {
  answer({success(listChild({RootCaName})), failure("5", "in use")});
  EXPECT_EQ(remove(), 0);
  EXPECT_EQ(output.err, toMatch +
                            "D [ZVK] CA cert exist! Removing...\n"
                            "D [ZVK] Delete CA cert error 5\n"
                            "D [ZVK] in use\n");
}

TEST_F(CaCertificate, IsNotAskedForWithoutACommonName) {
  path = folder.write("ca.pem", support::certificatePem({.subject = {{"O", "Org"}}}));
  EXPECT_EQ(remove(), 0);
  EXPECT_EQ(device.opens, 0);
  EXPECT_EQ(output, Output());
  answer({success()});
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.installCACert(path.c_str()); }), 0);
  EXPECT_EQ(calls().size(), 1U);
}

// --- Deletions, lists, information --------------------------------------------------------------

TEST_F(CertManager, DeletesACertificateByItsFriendlyName) {
  answer({success()});
  EXPECT_EQ(run([](CertMgr& manager) { return manager.deleteCert("mine"); }), 0);
  EXPECT_EQ(run([](CertMgr& manager) { return manager.deleteCert(nullptr); }), 0);
  EXPECT_EQ(run([](CertMgr& manager) { return manager.deleteCert(""); }), 0);
  EXPECT_EQ(calls(), (Names{deletion("mine"), deletion(DefaultName), deletion("")}));
  EXPECT_EQ(output, Output());
}

TEST_F(CertManager, DeletesACaCertificateByItsName) {
  answer({success()});
  EXPECT_EQ(run([](CertMgr& manager) { return manager.deleteCACert("a %s & b"); }), 0);
  EXPECT_EQ(calls(),
            (Names{callXml(410, "deleteIndividualCA",
                           inMap(parameter("ca_common_name", "StringElem", "a %s & b")))}));
}

TEST_F(CertManager, GivesWhatThePrinterKnowsOfACaCertificate) {
  answer({success(textChild("ca_file_name", "ca.pem") + textChild("ca_dot_pem_path", "/certs/1") +
                  textChild("ca_common_name", "RootCA"))});
  Names texts(3);
  EXPECT_EQ(
      run([&](CertMgr& manager) { return manager.getCAInfo("x", texts[0], texts[1], texts[2]); }),
      0);
  EXPECT_EQ(texts, (Names{"ca.pem", "/certs/1", "RootCA"}));
  EXPECT_EQ(
      calls(),
      (Names{callXml(430, "queryCAInfo", inMap(parameter("ca_common_name", "StringElem", "x")))}));
  EXPECT_EQ(output, Output());
}

TEST_F(CertManager, ListsFriendlyNamesAndShowsThem) {
  answer({success(listChild({"first", "sec%nd"}))});
  Names names = {"old"};
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.getCertFriendlyNameList(names); }), 0);
  EXPECT_EQ(names, (Names{"first", "sec%nd"}));
  EXPECT_EQ(calls(), (Names{callXml(520, "queryCertList", "")}));
  EXPECT_EQ(output.err,
            "D [ZVK] List of friendly names (2):\n"
            "D [ZVK] [0] first\n"
            "D [ZVK] [1] sec%nd\n");
}

TEST_F(CertManager, ShowsThatThereAreNoFriendlyNames) {
  answer({success(listChild({}))});
  Names names = {"old"};
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.getCertFriendlyNameList(names); }), 0);
  EXPECT_EQ(names, Names());
  EXPECT_EQ(output.err, "D [ZVK] List of friendly names (0):\n");
}

TEST_F(CertManager, ListsCaCertificatesSilently) {
  answer({success(listChild({"first", "second"}))});
  Names names = {"old"};
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.getCACommonNameList(names); }), 0);
  EXPECT_EQ(names, (Names{"first", "second"}));
  EXPECT_EQ(calls(), (Names{CaQuery}));
  EXPECT_EQ(output, Output());
}

// --- Friendly names -----------------------------------------------------------------------------

struct NamedOperation : support::Row {
  int (*run)(CertMgr& manager, const char* file, const char* friendlyName);
};

class FriendlyName : public CertManager, public testing::WithParamInterface<NamedOperation> {
 protected:
  int runWith(const std::string& name) {
    return run([&](CertMgr& manager) {
      return GetParam().run(manager, folder.path("f").c_str(), name.c_str());
    });
  }
};

TEST_P(FriendlyName, HasAtMost31Bytes) {
  folder.write("f", "content");
  answer({success()});
  EXPECT_EQ(runWith(std::string(32, 'n')), -1);
  EXPECT_EQ(runWith(std::string(4096, 'n')), -1);
  EXPECT_EQ(device.opens, 0);
  EXPECT_EQ(output, Output());
  EXPECT_EQ(support::fileContent(folder.path("f")), "content");
  ASSERT_EQ(runWith(std::string(31, 'n')), 0);
  EXPECT_NE(calls().back().find("<StringElem>" + std::string(31, 'n') + "</StringElem>"),
            std::string::npos);
}

TEST_P(FriendlyName, ReplacesTheDefaultWholly) {
  folder.write("f", "content");
  answer({success()});
  EXPECT_EQ(runWith("short"), 0);
  EXPECT_NE(calls().back().find("<StringElem>short</StringElem>"), std::string::npos);
}

const std::vector<NamedOperation> NamedOperations = {
    {{"CreatCertRequest"},
     [](CertMgr& manager, const char* /*file*/, const char* name) {
       return createRequest(manager, name);
     }},
    {{"SaveCertRequest"},
     [](CertMgr& manager, const char* file, const char* name) {
       return manager.saveCertRequest(file, name);
     }},
    {{"InstallSignedCert"},
     [](CertMgr& manager, const char* file, const char* name) {
       return manager.installSignedCert(file, name);
     }},
    {{"DeleteCert"},
     [](CertMgr& manager, const char* /*file*/, const char* name) {
       return manager.deleteCert(name);
     }},
};

INSTANTIATE_TEST_SUITE_P(Operations, FriendlyName, testing::ValuesIn(NamedOperations),
                         support::rowName);

}  // namespace
