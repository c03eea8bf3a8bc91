#include "cert/cert_mgr.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/certificate_manager.h"
#include "testing/rows.h"

// The certificate manager: construction, deletions, lists, information and friendly names.

namespace {

using support::callText;
using support::CertManager;
using support::DefaultFriendlyName;
using support::deleteCertText;
using support::listChild;
using support::Output;
using support::outputOf;
using support::success;
using support::textChild;
using Names = std::vector<std::string>;

// --- Construction -------------------------------------------------------------------------------

/// Returns the text that the construction of a manager throws.
template <typename Argument>
std::string thrownBy(Argument argument) {
  try {
    const CertMgr manager(argument);
  } catch (const char* text) {
    return text;
  }
  return "(nothing)";
}

TEST_F(CertManager, ThrowsWithoutADevice) {
  EXPECT_EQ(thrownBy(std::string()), "Error: No USB device is specified!");
  EXPECT_EQ(thrownBy(static_cast<configDetails*>(nullptr)), "Error: Config Details is null!");
  EXPECT_EQ(outputOf([] { thrownBy(std::string()); }), Output());
}

TEST_F(CertManager, UsesTheDeviceOfTheSettings) {
  auto& other = system.device("/dev/usb/lp1");
  configDetails settings;
  settings.parseUSB(2, {"zvkconfig", "/dev/usb/lp1"});
  outputOf([&] { CertMgr(&settings).deleteCert(nullptr); });
  EXPECT_EQ(other.writes.size(), 1U);
  EXPECT_EQ(device.opens, 0);
}

// --- Deletions, lists, information --------------------------------------------------------------

TEST_F(CertManager, DeletesACertificateByItsFriendlyName) {
  answer({success()});
  EXPECT_EQ(run([](CertMgr& manager) { return manager.deleteCert("mine"); }), 0);
  EXPECT_EQ(run([](CertMgr& manager) { return manager.deleteCert(nullptr); }), 0);
  EXPECT_EQ(run([](CertMgr& manager) { return manager.deleteCert(""); }), 0);
  EXPECT_EQ(calls(), (Names{deleteCertText("mine"), deleteCertText(DefaultFriendlyName),
                            deleteCertText("")}));
  EXPECT_EQ(output, Output());
}

TEST_F(CertManager, DeletesACaCertificateByItsName) {
  answer({success()});
  EXPECT_EQ(run([](CertMgr& manager) { return manager.deleteCACert("a %s & b"); }), 0);
  EXPECT_EQ(calls(), Names{support::deleteCaText("a %s & b")});
}

TEST_F(CertManager, ReturnsThePrintersDataOfACaCertificate) {
  answer({success(textChild("ca_file_name", "ca.pem") + textChild("ca_dot_pem_path", "/certs/1") +
                  textChild("ca_common_name", "RootCA"))});
  Names texts(3);
  EXPECT_EQ(
      run([&](CertMgr& manager) { return manager.getCAInfo("x", texts[0], texts[1], texts[2]); }),
      0);
  EXPECT_EQ(texts, (Names{"ca.pem", "/certs/1", "RootCA"}));
  EXPECT_EQ(calls(), Names{support::caInfoText("x")});
  EXPECT_EQ(output, Output());
}

TEST_F(CertManager, ReturnsAndLogsTheFriendlyNames) {
  answer({success(listChild({"first", "sec%nd"}))});
  Names names = {"old"};
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.getCertFriendlyNameList(names); }), 0);
  EXPECT_EQ(names, (Names{"first", "sec%nd"}));
  EXPECT_EQ(calls(), Names{callText("queryCertList", 520)});
  EXPECT_EQ(output.err,
            "D [ZVK] List of friendly names (2):\n"
            "D [ZVK] [0] first\n"
            "D [ZVK] [1] sec%nd\n");
}

TEST_F(CertManager, LogsAnEmptyListOfFriendlyNames) {
  answer({success(listChild({}))});
  Names names = {"old"};
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.getCertFriendlyNameList(names); }), 0);
  EXPECT_EQ(names, Names());
  EXPECT_EQ(output.err, "D [ZVK] List of friendly names (0):\n");
}

TEST_F(CertManager, ReturnsTheCaCertificatesAndLogsNothing) {
  answer({success(listChild({"first", "second"}))});
  Names names = {"old"};
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.getCACommonNameList(names); }), 0);
  EXPECT_EQ(names, (Names{"first", "second"}));
  EXPECT_EQ(calls(), Names{callText("queryCAList", 420)});
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

TEST_P(FriendlyName, ReplacesTheDefault) {
  folder.write("f", "content");
  answer({success()});
  EXPECT_EQ(runWith("short"), 0);
  EXPECT_NE(calls().back().find("<StringElem>short</StringElem>"), std::string::npos);
}

const std::vector<NamedOperation> NamedOperations = {
    {{"CreatCertRequest"},
     [](CertMgr& manager, const char* /*file*/, const char* name) {
       return manager.creatCertRequest("", "", "", "", "", "", "", name);
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
