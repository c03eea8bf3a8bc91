#include "session/certificates.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "testing/answering_printer.h"
#include "testing/authority.h"
#include "testing/certificates.h"
#include "testing/files.h"

namespace {

using session::AuthorityEntry;
using session::CertificateFile;
using session::CertificateReport;
using session::Certificates;
using session::CertificateSubject;
using session::CertificateUse;
using session::NewFile;
using session::Result;
using session::Step;
using support::Bytes;
using virtual_system::Second;
using Names = std::vector<std::string>;
using Problem = CertificateReport::Problem;

const std::string Usual(CertMgr::DefaultName);
const std::string CaName = "RootCA_Jan__5_2020_To_Dec_25_2030";
constexpr std::time_t Now = 1700000000;

/// A fixture for the certificate commands, with an emulated printer.
class CertificatesTest : public support::AnsweringPrinter {
 protected:
  CertificatesTest() { plugIn({}); }

  Certificates certificates() {
    return Certificates({.device = "/dev/usb/lp0", .node = "/dev/usb/lp0"},
                        {.onStep = [this](Step step) { steps.push_back(step); },
                         .isInterrupted =
                             [this] {
                               return system.now() >= interruptedAt;
                             }});
  }

  /// Returns a function that answers a question with `yes` and stores the question's name in
  /// `questions`.
  Certificates::Question answer(bool yes) {
    return [this, yes](const std::string& name) {
      questions.push_back(name);
      return yes;
    };
  }

  static CertificateFile authorityFile(const std::string& path = "ca.pem",
                                       const support::CertificateText& text = {
                                           .isAuthority = true}) {
    return session::checkCertificate(support::certificatePem(text), path, CertificateUse::Authority,
                                     Now);
  }

  CertificateReport installAuthority(bool yes = false) {
    return certificates().installAuthority(authorityFile(), answer(yes));
  }

  CertificateReport request(bool yes = false) {
    std::filesystem::remove(requestPath);
    NewFile file(requestPath, "--output");
    return certificates().request({.commonName = "printer"}, Usual, file, answer(yes));
  }

  /// Returns the signed certificate for the last request.
  CertificateFile signedFile() const {
    const support::Authority authority("RootCA");
    return session::checkCertificate(authority.sign(support::fileContent(requestPath)),
                                     "signed.pem", CertificateUse::Printer, Now);
  }

  CertificateReport install(bool yes = false) {
    return certificates().install(signedFile(), Usual, answer(yes));
  }

  Names authorityNames() const {
    Names names;
    for (const auto& authority : printer->adapter.certificates().authorities()) {
      names.push_back(authority.name);
    }
    return names;
  }

  /// Returns true if the printer has a certificate, not just a request, under the usual name.
  bool isInstalled() const {
    const auto* const entry = printer->adapter.certificates().findDevice(Usual);
    return entry != nullptr && !entry->isPending();
  }

  support::TemporaryFolder folder;
  std::string requestPath = folder.path("request.pem");
  virtual_system::Microseconds interruptedAt = 1'000'000 * Second;
  std::vector<Step> steps;
  Names questions;
};

// --- list ---------------------------------------------------------------------------------------

TEST_F(CertificatesTest, ListHasTheNamesAndTheDescriptions) {
  EXPECT_EQ(installAuthority().report.result, Result::Ok);
  const CertificateReport report = certificates().list();
  EXPECT_EQ(report.report.result, Result::Ok);
  EXPECT_EQ(report.certificates, Names{"Factory"});
  ASSERT_EQ(report.authorities.size(), 1U);
  EXPECT_EQ(report.authorities[0].name, CaName);
  EXPECT_EQ(report.authorities[0].file, "ca.pem");
  EXPECT_EQ(report.authorities[0].commonName, CaName);
  EXPECT_FALSE(report.report.sentSettings);
}

TEST_F(CertificatesTest, ListKeepsAnAuthorityThatIsNotDescribed) {
  plugIn({.objectReplies = {{.method = "queryCAInfo", .file = {}, .status = 99}}});
  EXPECT_EQ(installAuthority().report.result, Result::Ok);
  const CertificateReport report = certificates().list();
  EXPECT_EQ(report.report.result, Result::Ok);
  ASSERT_EQ(report.authorities.size(), 1U);
  EXPECT_EQ(report.authorities[0].name, CaName);
  EXPECT_EQ(report.authorities[0].file, "");
}

TEST_F(CertificatesTest, ListDescribesNamesWithSpecialCharacters) {
  const auto file = authorityFile("a&b.pem", {.subject = {{"CN", "A & <B>"}}, .isAuthority = true});
  EXPECT_EQ(certificates().installAuthority(file, answer(false)).report.result, Result::Ok);
  const CertificateReport report = certificates().list();
  ASSERT_EQ(report.authorities.size(), 1U);
  EXPECT_EQ(report.authorities[0].name, file.caName);
  EXPECT_EQ(report.authorities[0].file, "a&b.pem");
  EXPECT_EQ(certificates().removeAuthority(file.caName).report.result, Result::Ok);
  EXPECT_EQ(authorityNames(), Names{});
}

TEST_F(CertificatesTest, ListAsksTwiceBeforeThereIsNoAnswer) {
  plugIn({.silent = true});
  const CertificateReport report = certificates().list();
  EXPECT_EQ(report.report.result, Result::NoAnswer);
  EXPECT_EQ(device.writes.size(), 2U);
}

TEST_F(CertificatesTest, ListIsRefusedByAnAdapterThatRefusesThePacket) {
  plugIn({.refuseAll = true});
  const CertificateReport report = certificates().list();
  EXPECT_EQ(report.report.result, Result::Refused);
  EXPECT_EQ(report.lastCall.status, 0);
  EXPECT_EQ(device.writes.size(), 1U);
}

TEST_F(CertificatesTest, ListSaysWhyThePrinterCannotBeOpened) {
  device.openErrno = EACCES;
  EXPECT_EQ(certificates().list().report.result, Result::NoPermission);
  device.openErrno = EBUSY;
  EXPECT_EQ(certificates().list().report.result, Result::Busy);
  device.openErrno = ENOENT;
  EXPECT_EQ(certificates().list().report.result, Result::NoSuchPrinter);
  EXPECT_TRUE(device.writes.empty());
}

TEST_F(CertificatesTest, ListEndsWithTheCallUnderWay) {
  interruptedAt = 1 * Second;
  const CertificateReport report = certificates().list();
  EXPECT_EQ(report.report.result, Result::Interrupted);
  EXPECT_EQ(device.writes.size(), 1U);
}

// --- request ------------------------------------------------------------------------------------

TEST_F(CertificatesTest, RequestWritesTheFile) {
  const CertificateReport report = request();
  EXPECT_EQ(report.report.result, Result::Ok);
  EXPECT_TRUE(report.report.sentSettings);
  EXPECT_EQ(support::readRequest(support::fileContent(requestPath)).subject, "/CN=printer");
  EXPECT_EQ(steps, (std::vector{Step::Open, Step::ReadCertificates, Step::MakeRequest,
                                Step::MakeRequest}));
  EXPECT_EQ(questions, Names{});
}

TEST_F(CertificatesTest, RequestLeavesNoFileIfItIsRefused) {
  plugIn({.objectReplies = {{.method = "exportPubKey", .file = {}, .status = 42}}});
  const CertificateReport report = request();
  EXPECT_EQ(report.report.result, Result::Refused);
  EXPECT_EQ(report.lastCall.status, 42);
  EXPECT_TRUE(std::filesystem::is_empty(folder.path("")));
}

TEST_F(CertificatesTest, RequestLeavesNoFileIfThePrinterSendsNone) {
  plugIn({.objectReplies = {{.method = "exportPubKey", .file = {}, .status = 1}}});
  EXPECT_EQ(request().report.result, Result::Refused);
  EXPECT_TRUE(std::filesystem::is_empty(folder.path("")));
}

TEST_F(CertificatesTest, RequestReplacesACertificateOnlyIfItMay) {
  EXPECT_EQ(request().report.result, Result::Ok);
  EXPECT_EQ(install().report.result, Result::Ok);
  const CertificateReport refused = request(false);
  EXPECT_EQ(refused.report.result, Result::Invalid);
  EXPECT_EQ(refused.problem, Problem::Exists);
  EXPECT_FALSE(refused.report.sentSettings);
  EXPECT_EQ(questions, Names{Usual});
  EXPECT_TRUE(isInstalled());

  const CertificateReport allowed = request(true);
  EXPECT_EQ(allowed.report.result, Result::Ok);
  EXPECT_TRUE(allowed.deletedOld);
  EXPECT_FALSE(isInstalled());
}

TEST_F(CertificatesTest, RequestReportsTheEndDuringTheQuestion) {
  EXPECT_EQ(request().report.result, Result::Ok);
  EXPECT_EQ(install().report.result, Result::Ok);
  NewFile file(folder.path("second.pem"), "--output");
  const CertificateReport report =
      certificates().request({.commonName = "p"}, Usual, file, [this](const std::string&) {
        interruptedAt = 0;
        return false;
      });
  EXPECT_EQ(report.report.result, Result::Interrupted);
  EXPECT_FALSE(report.report.sentSettings);
}

// --- install-ca ---------------------------------------------------------------------------------

TEST_F(CertificatesTest, AuthorityIsInstalled) {
  const CertificateReport report = installAuthority();
  EXPECT_EQ(report.report.result, Result::Ok);
  EXPECT_EQ(report.name, CaName);
  EXPECT_TRUE(report.report.sentSettings);
  EXPECT_FALSE(report.deletedOld);
  EXPECT_EQ(authorityNames(), Names{CaName});
  EXPECT_EQ(questions, Names{});
}

TEST_F(CertificatesTest, AuthorityIsReplacedOnlyIfItMayBe) {
  EXPECT_EQ(installAuthority().report.result, Result::Ok);
  device.writes.clear();
  const CertificateReport refused = installAuthority(false);
  EXPECT_EQ(refused.report.result, Result::Invalid);
  EXPECT_EQ(refused.problem, Problem::Exists);
  EXPECT_EQ(questions, Names{CaName});
  // The only request queries the list.
  EXPECT_EQ(device.writes.size(), 1U);

  const CertificateReport allowed = installAuthority(true);
  EXPECT_EQ(allowed.report.result, Result::Ok);
  EXPECT_TRUE(allowed.deletedOld);
  EXPECT_EQ(authorityNames(), Names{CaName});
}

TEST_F(CertificatesTest, AuthorityIsNotSentIfTheOldOneCannotBeDeleted) {
  plugIn({.objectReplies = {{.method = "deleteIndividualCA", .file = {}, .status = 42}}});
  EXPECT_EQ(installAuthority().report.result, Result::Ok);
  const CertificateReport report = installAuthority(true);
  EXPECT_EQ(report.report.result, Result::Refused);
  EXPECT_FALSE(report.deletedOld);
  EXPECT_EQ(steps.back(), Step::DeleteCertificate);
}

TEST_F(CertificatesTest, AuthorityThatGetsNoAnswerIsSentOnce) {
  // The printer replies to the upload with a packet without data.
  plugIn({.objectReplies = {{.method = "uploadNewCAFile", .file = {}}}});
  const CertificateReport report = installAuthority();
  EXPECT_EQ(report.report.result, Result::NoAnswer);
  EXPECT_TRUE(report.report.sentSettings);
  EXPECT_EQ(device.writes.size(), 2U);
}

// --- install ------------------------------------------------------------------------------------

TEST_F(CertificatesTest, SignedCertificateIsInstalledAndReplacedOnlyIfItMayBe) {
  EXPECT_EQ(request().report.result, Result::Ok);
  EXPECT_EQ(install().report.result, Result::Ok);
  EXPECT_TRUE(isInstalled());
  EXPECT_EQ(questions, Names{});
  EXPECT_EQ(install(false).problem, Problem::Exists);
  EXPECT_EQ(install(true).report.result, Result::Ok);
  EXPECT_EQ(questions, (Names{Usual, Usual}));
}

TEST_F(CertificatesTest, SignedCertificateForAnotherKeyIsRefused) {
  EXPECT_EQ(request().report.result, Result::Ok);
  const CertificateFile other = signedFile();
  EXPECT_EQ(request().report.result, Result::Ok);
  const CertificateReport report = certificates().install(other, Usual, answer(false));
  EXPECT_EQ(report.report.result, Result::Refused);
  EXPECT_EQ(report.lastCall.status, 20);
  EXPECT_EQ(report.lastCall.message, "the certificate does not belong to the key");
}

// --- delete, delete-ca --------------------------------------------------------------------------

TEST_F(CertificatesTest, ListedCertificatesAreDeleted) {
  EXPECT_EQ(request().report.result, Result::Ok);
  EXPECT_EQ(install().report.result, Result::Ok);
  EXPECT_EQ(installAuthority().report.result, Result::Ok);
  EXPECT_EQ(certificates().remove(Usual).report.result, Result::Ok);
  EXPECT_EQ(certificates().removeAuthority(CaName).report.result, Result::Ok);
  EXPECT_FALSE(isInstalled());
  EXPECT_EQ(authorityNames(), Names{});
}

TEST_F(CertificatesTest, NamesThatAreNotListedAreNotDeleted) {
  EXPECT_EQ(installAuthority().report.result, Result::Ok);
  device.writes.clear();
  // Each name is in the other list.
  for (const CertificateReport& report :
       {certificates().remove(CaName), certificates().removeAuthority("Factory")}) {
    EXPECT_EQ(report.report.result, Result::Invalid);
    EXPECT_EQ(report.problem, Problem::NotListed);
    EXPECT_FALSE(report.report.sentSettings);
  }
  EXPECT_EQ(device.writes.size(), 2U);
}

TEST_F(CertificatesTest, NameAfterAFullListIsDeleted) {
  for (int i = 0; i < 10; ++i) {
    const auto file = authorityFile(
        "f.pem", {.subject = {{"CN", "CA" + std::to_string(i)}}, .isAuthority = true});
    EXPECT_EQ(certificates().installAuthority(file, answer(false)).report.result, Result::Ok);
  }
  const std::string last = authorityNames().back();
  EXPECT_EQ(certificates().list().authorities.size(), 9U);
  EXPECT_EQ(certificates().removeAuthority(last).report.result, Result::Ok);
  EXPECT_EQ(authorityNames().size(), 9U);
}

TEST_F(CertificatesTest, FactoryCertificateIsKept) {
  const CertificateReport report = certificates().remove("Factory");
  EXPECT_EQ(report.report.result, Result::Refused);
  EXPECT_EQ(report.lastCall.status, 15);
}

}  // namespace
