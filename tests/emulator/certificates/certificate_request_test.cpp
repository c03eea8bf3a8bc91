#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "emulator/certificates/certificate_object.h"
#include "testing/certificate_printer.h"
#include "testing/rows.h"

// Requests for device certificates: creation, export and deletion.

namespace {

using emulator::CallStatus;
using support::callText;
using support::CertificatePrinter;
using support::generateText;
using support::readRequest;
using support::text;
using Names = std::vector<std::string>;

constexpr int Success = static_cast<int>(CallStatus::Success);

TEST(GenerateNewCert, CreatesARequestWithTheSubject) {
  CertificatePrinter printer;
  EXPECT_EQ(printer.status(callText(
                "generateNewCert", 200,
                {text("cert_friendly_name", "n"), text("x509_O", "Org"),
                 text("x509_AN", "a.example"), text("x509_C", "DE"), text("x509_CN", "p &amp; q"),
                 text("x509_L", "City"), text("x509_OU", "Unit"), text("x509_ST", "State")})),
            Success);
  const support::RequestContent request = readRequest(printer.request("n"));
  EXPECT_EQ(request.subject, "/O=Org/OU=Unit/C=DE/ST=State/L=City/CN=p & q");
  EXPECT_EQ(request.dnsName, "a.example");
  EXPECT_EQ(request.keyType, "EC");
  EXPECT_EQ(request.keyBits, 256);
  EXPECT_TRUE(request.isSignedByItsKey);
}

TEST(GenerateNewCert, OmitsEmptyComponents) {
  CertificatePrinter printer;
  EXPECT_EQ(printer.status(generateText("n", "p")), Success);
  EXPECT_EQ(readRequest(printer.request("n")).subject, "/CN=p");
  EXPECT_EQ(readRequest(printer.request("n")).dnsName, "");
  EXPECT_EQ(printer.status(generateText("empty", "")), Success);
  EXPECT_EQ(readRequest(printer.request("empty")).subject, "");
}

TEST(GenerateNewCert, CreatesANewKeyEachTime) {
  CertificatePrinter printer;
  EXPECT_EQ(printer.status(generateText("a")), Success);
  EXPECT_EQ(printer.status(generateText("b")), Success);
  EXPECT_NE(printer.object.store().findDevice("a")->keyPem,
            printer.object.store().findDevice("b")->keyPem);
}

TEST(GenerateNewCert, CreatesRsaKeysIfTheRulesSaySo) {
  CertificatePrinter printer({.rsaBits = 1024});
  EXPECT_EQ(printer.status(generateText("n")), Success);
  const support::RequestContent request = readRequest(printer.request("n"));
  EXPECT_EQ(request.keyType, "RSA");
  EXPECT_EQ(request.keyBits, 1024);
}

TEST(GenerateNewCert, AcceptsTextsOfTheGreatestLength) {
  CertificatePrinter printer;
  EXPECT_EQ(printer.status(generateText("n", std::string(64, 'c'), "", std::string(253, 'd'))),
            Success);
  EXPECT_EQ(readRequest(printer.request("n")).dnsName, std::string(253, 'd'));
}

TEST(GenerateNewCert, StoresTheDnsNameUnchanged) {
  CertificatePrinter printer;
  const std::string name = "a,IP:1.2.3.4,@x";
  EXPECT_EQ(printer.status(generateText("n", "p", "", name)), Success);
  EXPECT_EQ(readRequest(printer.request("n")).dnsName, name);
}

struct SubjectRow : support::Row {
  std::string commonName;
  std::string country;
  std::string altName;
  const char* detail;
};

class RefusedSubject : public testing::TestWithParam<SubjectRow> {};

TEST_P(RefusedSubject, CreatesNoRequest) {
  CertificatePrinter printer;
  const SubjectRow& row = GetParam();
  const support::ReplyText reply =
      printer.call(generateText("n", row.commonName, row.country, row.altName));
  EXPECT_EQ(reply.status(), static_cast<int>(CallStatus::InvalidSubject));
  EXPECT_EQ(reply.message(), std::string("the subject is invalid: ") + row.detail);
  EXPECT_EQ(printer.status(support::exportText("n")), static_cast<int>(CallStatus::UnknownName));
}

INSTANTIATE_TEST_SUITE_P(
    Texts, RefusedSubject,
    testing::Values(
        SubjectRow{{"CommonNameTooLong"}, std::string(65, 'c'), "", "", "x509_CN, string too long"},
        SubjectRow{
            {"CommonNameVeryLong"}, std::string(60000, 'c'), "", "", "x509_CN, string too long"},
        SubjectRow{{"CommonNameNoUtf8"}, "\xE4", "", "", "x509_CN, invalid utf8string"},
        SubjectRow{{"CountryOfOneLetter"}, "p", "D", "", "x509_C, string too short"},
        SubjectRow{{"CountryOfThreeLetters"}, "p", "DEU", "", "x509_C, string too long"},
        SubjectRow{
            {"CountryNotInLetters"}, "p", "\xC3\xA4\xC3\xA4", "", "x509_C, illegal characters"},
        SubjectRow{{"DnsNameTooLong"}, "p", "", std::string(254, 'd'), "x509_AN"},
        SubjectRow{{"DnsNameNotInAscii"}, "p", "", "\xC3\xA4", "x509_AN"},
        SubjectRow{{"DnsNameWithABlank"}, "p", "", "a b", "x509_AN"}),
    support::rowName);

TEST(GenerateNewCert, RefusesAnExistingName) {
  CertificatePrinter printer;
  EXPECT_EQ(printer.status(generateText("n")), Success);
  const std::string request = printer.request("n");
  EXPECT_EQ(printer.status(generateText("n", "q")), static_cast<int>(CallStatus::NameExists));
  EXPECT_EQ(printer.request("n"), request);
}

TEST(GenerateNewCert, AcceptsNamesThatLookLikePaths) {
  CertificatePrinter printer;
  for (const char* name : {"../../etc/passwd", "/", "..", "a&lt;b&gt; 'c' &quot;", "\xC3\xA4"}) {
    EXPECT_EQ(printer.status(generateText(name)), Success) << name;
    EXPECT_NE(printer.request(name), "") << name;
  }
}

class InvalidName : public testing::TestWithParam<std::string> {};

TEST_P(InvalidName, IsRefused) {
  CertificatePrinter printer;
  EXPECT_EQ(printer.status(generateText(GetParam())), static_cast<int>(CallStatus::InvalidName));
  EXPECT_EQ(printer.object.store().revision(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Names, InvalidName,
                         testing::Values("", "\x01", "a&#10;b", "\x7F", "\xE0", "\xC3", "\xFF",
                                         "a\xE4"));

TEST(ExportPubKey, RefusesNamesWithoutARequest) {
  CertificatePrinter printer;
  EXPECT_EQ(printer.status(support::exportText("n")), static_cast<int>(CallStatus::UnknownName));
  EXPECT_EQ(printer.status(support::exportText("Factory")), static_cast<int>(CallStatus::NoKey));
}

TEST(DeleteIndividualCert, DeletesARequest) {
  CertificatePrinter printer;
  EXPECT_EQ(printer.status(generateText("n")), Success);
  EXPECT_EQ(printer.status(support::deleteCertText("n")), Success);
  EXPECT_EQ(printer.request("n"), "");
  EXPECT_EQ(printer.status(support::deleteCertText("n")),
            static_cast<int>(CallStatus::UnknownName));
  EXPECT_EQ(printer.status(generateText("n")), Success);
}

TEST(QueryCertList, DoesNotListRequests) {
  CertificatePrinter printer;
  EXPECT_EQ(printer.status(generateText("n")), Success);
  EXPECT_EQ(printer.certificates(), Names{"Factory"});
}

TEST(FactoryCertificate, CannotBeChanged) {
  CertificatePrinter printer;
  constexpr int factoryMade = static_cast<int>(CallStatus::FactoryMade);
  EXPECT_EQ(printer.status(support::deleteCertText("Factory")), factoryMade);
  EXPECT_EQ(printer.status(generateText("Factory")), factoryMade);
  EXPECT_EQ(printer.status(support::uploadSignedText("Factory", "x")), factoryMade);
  EXPECT_EQ(printer.certificates(), Names{"Factory"});
}

TEST(FactoryCertificate, IsOptional) {
  CertificatePrinter printer({.factoryCertificate = false});
  EXPECT_EQ(printer.certificates(), Names{});
  EXPECT_EQ(printer.status(support::deleteCertText("Factory")),
            static_cast<int>(CallStatus::UnknownName));
  EXPECT_EQ(printer.status(generateText("Factory")), Success);
  EXPECT_EQ(printer.status(support::deleteCertText("Factory")), Success);
}

TEST(FactoryCertificate, IsHiddenByAnotherCertificateOfItsName) {
  CertificatePrinter without({.factoryCertificate = false});
  EXPECT_EQ(without.status(generateText("Factory")), Success);
  CertificatePrinter with;
  with.object.restore(without.object.store());
  EXPECT_EQ(with.certificates(), Names{});
  EXPECT_EQ(with.status(support::deleteCertText("Factory")), Success);
  EXPECT_EQ(with.certificates(), Names{"Factory"});
}

}  // namespace
