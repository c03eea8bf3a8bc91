#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "cert/cert_mgr.h"
#include "testing/certificate_manager.h"
#include "testing/certificates.h"

// Uploads of certificates, and the deletion of a CA certificate before its upload.

namespace {

using support::CertManager;
using support::DefaultFriendlyName;
using support::failure;
using support::listChild;
using support::Output;
using support::success;
using support::uploadCaText;
using support::uploadSignedText;
using Names = std::vector<std::string>;

const std::string CaQuery = support::callText("queryCAList", 420);

/// The printer's name for the certificate "RootCA", which is valid from 2020-01-05 to 2030-12-25.
constexpr const char* RootCaName = "RootCA_Jan__5_2020_To_Dec_25_2030";

// --- Uploads ------------------------------------------------------------------------------------

TEST_F(CertManager, UploadsASignedCertificateWithItsSize) {
  answer({success()});
  const std::string path = folder.write("signed.pem", "ABCD");
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.installSignedCert(path.c_str(), nullptr); }),
            0);
  EXPECT_EQ(calls(), Names{uploadSignedText(DefaultFriendlyName, "ABCD")});
  EXPECT_EQ(output.err, loading(path));
}

TEST_F(CertManager, UploadsACaCertificateUnderTheNameOfTheFile) {
  answer({success()});
  const std::string path = folder.write("my ca.pem", "no PEM");
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.installCACert(path.c_str()); }), 0);
  EXPECT_EQ(calls(), Names{uploadCaText("my ca.pem", "no PEM")});
  EXPECT_EQ(output.err, loading(path) + "D [ZVK] PEM_read failed?!\n");
}

TEST_F(CertManager, UploadsFromAPathWithoutASlash) {
  answer({success()});
  const auto before = std::filesystem::current_path();
  folder.write("ca.pem", "x");
  std::filesystem::current_path(folder.path(""));
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.installCACert("ca.pem"); }), 0);
  std::filesystem::current_path(before);
  EXPECT_EQ(calls(), Names{uploadCaText("ca.pem", "x")});
}

TEST_F(CertManager, UploadsAFileThatFitsIntoTheRequestAndNoLargerOne) {
  answer({success()});
  // Base64 needs four characters for three bytes. The size in the request has five digits, not one.
  const std::size_t empty = uploadSignedText(DefaultFriendlyName, "").size() + 4;
  const std::size_t room = (16383 - empty) / 4 * 3;
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

TEST_F(CertManager, DeletesNothingIfTheCaUploadIsTooLarge) {
  answer({success(listChild({RootCaName}))});
  // The Base64 text of this size fits into its own buffer, but not into the request.
  std::string content = support::certificatePem();
  content.resize(12285, '\n');
  const std::string path = folder.write("ca.pem", content);
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.installCACert(path.c_str()); }), -1);
  EXPECT_EQ(device.opens, 0);
  EXPECT_EQ(output.err, loading(path));
}

TEST_F(CertManager, SendsNothingIfTheFileCannotBeRead) {
  for (const std::string& path : {folder.path("absent"), folder.path(""), folder.write("f", "")}) {
    EXPECT_EQ(
        run([&](CertMgr& manager) { return manager.installSignedCert(path.c_str(), nullptr); }),
        -1);
    EXPECT_EQ(run([&](CertMgr& manager) { return manager.installCACert(path.c_str()); }), -1);
  }
  EXPECT_EQ(device.opens, 0);
}

// --- A CA certificate of the same name ----------------------------------------------------------

class CaCertificate : public CertManager {
 protected:
  std::string path = folder.write("ca.pem", support::certificatePem());
  std::string deletion = support::deleteCaText(RootCaName);
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

TEST_F(CaCertificate, IsUploadedEvenIfTheDeletionFails) {
  answer({success(listChild({RootCaName})), failure("4", "in use"), success()});
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.installCACert(path.c_str()); }), 0);
  EXPECT_EQ(calls().size(), 3U);
}

TEST_F(CaCertificate, IsUploadedEvenIfTheListFails) {
  answer({failure("4", "no list"), success()});
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.installCACert(path.c_str()); }), 0);
  EXPECT_EQ(calls().size(), 2U);
  EXPECT_EQ(output.err, loading(path) + toMatch +
                            "D [ZVK] getCACommonNameList error 4\n"
                            "D [ZVK] no list\n");
}

TEST_F(CaCertificate, IsDeletedIfThePrinterHasIt) {
  answer({success(listChild({RootCaName})), success()});
  EXPECT_EQ(remove(), 1);
  EXPECT_EQ(calls(), (Names{CaQuery, deletion}));
  EXPECT_EQ(output.err, toMatch + "D [ZVK] CA cert exist! Removing...\n");
}

TEST_F(CaCertificate, IsNotDeletedIfTheNameDiffers) {
  std::string otherCase = RootCaName;
  otherCase[0] = 'r';
  answer({success(listChild({otherCase, std::string(RootCaName) + " ", "RootCA"}))});
  EXPECT_EQ(remove(), 0);
  EXPECT_EQ(calls(), (Names{CaQuery}));
  EXPECT_EQ(output.err, toMatch);
}

TEST_F(CaCertificate, IsFoundOnlyAmongTheFirstNine) {
  Names names = {"1", "2", "3", "4", "5", "6", "7", "8", RootCaName};
  answer({success(listChild(names)), success()});
  EXPECT_EQ(remove(), 1);
  names.insert(names.begin(), "0");
  answer({success(listChild(names)), success()});
  EXPECT_EQ(remove(), 0);
}

TEST_F(CaCertificate, IsNotDeletedIfThePrinterRefuses) {
  answer({success(listChild({RootCaName})), failure("5", "in use")});
  EXPECT_EQ(remove(), 0);
  EXPECT_EQ(output.err, toMatch +
                            "D [ZVK] CA cert exist! Removing...\n"
                            "D [ZVK] Delete CA cert error 5\n"
                            "D [ZVK] in use\n");
}

TEST_F(CaCertificate, IsNotSearchedForWithoutACommonName) {
  path = folder.write("ca.pem", support::certificatePem({.subject = {{"O", "Org"}}}));
  EXPECT_EQ(remove(), 0);
  EXPECT_EQ(device.opens, 0);
  EXPECT_EQ(output, Output());
  answer({success()});
  EXPECT_EQ(run([&](CertMgr& manager) { return manager.installCACert(path.c_str()); }), 0);
  EXPECT_EQ(calls().size(), 1U);
}

}  // namespace
