#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "emulator/certificates/certificate_object.h"
#include "testing/certificate_printer.h"
#include "testing/rows.h"

// CA certificates and signed certificates: upload, list and deletion.

namespace {

using emulator::CallStatus;
using support::Authority;
using support::callText;
using support::CertificatePrinter;
using support::generateText;
using support::uploadCaText;
using support::uploadSignedText;
using Names = std::vector<std::string>;

constexpr int Success = static_cast<int>(CallStatus::Success);
constexpr const char* RootName = "RootCA_Jan__5_2020_To_Dec_25_2030";

TEST(UploadNewCaFile, StoresACaCertificateUnderItsNameAndValidity) {
  CertificatePrinter printer;
  EXPECT_EQ(printer.status(uploadCaText("../ca.pem", Authority("RootCA").pem())), Success);
  EXPECT_EQ(printer.authorities(), Names{RootName});
  const support::ReplyText about = printer.call(support::caInfoText(RootName));
  EXPECT_EQ(about.status(), Success);
  EXPECT_EQ(about.value("ca_file_name"), "../ca.pem");
  EXPECT_EQ(about.value("ca_dot_pem_path"), "/certs/../ca.pem");
  EXPECT_EQ(about.value("ca_common_name"), RootName);
}

TEST(UploadNewCaFile, RefusesAnExistingCaCertificate) {
  CertificatePrinter printer;
  EXPECT_EQ(printer.status(uploadCaText("a.pem", Authority("RootCA").pem())), Success);
  EXPECT_EQ(printer.status(uploadCaText("b.pem", Authority("RootCA").pem())),
            static_cast<int>(CallStatus::NameExists));
  EXPECT_EQ(printer.call(support::caInfoText(RootName)).value("ca_file_name"), "a.pem");
}

TEST(UploadNewCaFile, NeedsAFileName) {
  CertificatePrinter printer;
  EXPECT_EQ(printer.status(uploadCaText("", Authority("RootCA").pem())),
            static_cast<int>(CallStatus::InvalidName));
}

TEST(UploadNewCaFile, StoresTheFirstCertificateOfAFile) {
  CertificatePrinter printer;
  const std::string chain =
      "Some text\n" + Authority("First").pem() + Authority("Second").pem() + "more";
  EXPECT_EQ(printer.status(uploadCaText("chain.pem", chain)), Success);
  EXPECT_EQ(printer.authorities(), Names{"First_Jan__5_2020_To_Dec_25_2030"});
}

TEST(DeleteIndividualCa, DeletesACaCertificate) {
  CertificatePrinter printer;
  EXPECT_EQ(printer.status(uploadCaText("ca.pem", Authority("RootCA").pem())), Success);
  EXPECT_EQ(printer.status(support::deleteCaText("RootCA")),
            static_cast<int>(CallStatus::UnknownName));
  EXPECT_EQ(printer.status(support::deleteCaText(RootName)), Success);
  EXPECT_EQ(printer.authorities(), Names{});
  EXPECT_EQ(printer.status(support::caInfoText(RootName)),
            static_cast<int>(CallStatus::UnknownName));
}

TEST(QueryCaList, ListsTwentyCaCertificatesInTheirOrder) {
  CertificatePrinter printer;
  Names expected;
  for (int i = 20; i > 0; --i) {
    const std::string commonName = "CA " + std::to_string(i);
    EXPECT_EQ(printer.status(uploadCaText("ca.pem", Authority(commonName).pem())), Success);
    expected.push_back(commonName + "_Jan__5_2020_To_Dec_25_2030");
  }
  EXPECT_EQ(printer.authorities(), expected);
}

TEST(UploadSignedCertFile, TurnsARequestIntoACertificate) {
  CertificatePrinter printer;
  const Authority authority("RootCA");
  EXPECT_EQ(printer.status(generateText("n")), Success);
  EXPECT_EQ(printer.status(generateText("pending")), Success);
  const std::string request = printer.request("n");
  EXPECT_EQ(printer.status(uploadSignedText("n", authority.sign(request))), Success);
  EXPECT_EQ(printer.certificates(), (Names{"Factory", "n"}));
  EXPECT_EQ(printer.request("n"), request);
  // Renew the certificate.
  EXPECT_EQ(printer.status(uploadSignedText("n", authority.sign(request))), Success);
  EXPECT_EQ(printer.status(support::deleteCertText("n")), Success);
  EXPECT_EQ(printer.certificates(), Names{"Factory"});
}

TEST(UploadSignedCertFile, NeedsTheKeyOfTheName) {
  CertificatePrinter printer;
  const Authority authority("RootCA");
  EXPECT_EQ(printer.status(generateText("a")), Success);
  EXPECT_EQ(printer.status(generateText("b")), Success);
  const std::string forB = authority.sign(printer.request("b"));
  EXPECT_EQ(printer.status(uploadSignedText("c", forB)), static_cast<int>(CallStatus::UnknownName));
  EXPECT_EQ(printer.status(uploadSignedText("a", forB)), static_cast<int>(CallStatus::KeyMismatch));
  EXPECT_EQ(printer.status(uploadSignedText("a", authority.pem())),
            static_cast<int>(CallStatus::KeyMismatch));
  EXPECT_EQ(printer.certificates(), Names{"Factory"});
}

struct FileRow : support::Row {
  std::string size;
  std::string base64;
  CallStatus status;
};

const std::string& rootPem() {
  static const std::string pem = Authority("RootCA").pem();
  return pem;
}

std::string sizeOf(const std::string& content) {
  return std::to_string(content.size());
}

FileRow content(const char* name, const std::string& file, CallStatus status) {
  return {{name}, sizeOf(file), support::base64(file), status};
}

class BadFile : public testing::TestWithParam<FileRow> {};

TEST_P(BadFile, IsNotStoredAsACaCertificate) {
  CertificatePrinter printer;
  EXPECT_EQ(printer.status(callText("uploadNewCAFile", 400,
                                    {support::text("ca_file_name", "a"),
                                     {"ca_dot_pem_size", "IntegerElem", GetParam().size},
                                     {"ca_dot_pem_file", "BinaryElem", GetParam().base64}})),
            static_cast<int>(GetParam().status));
  EXPECT_EQ(printer.authorities(), Names{});
}

TEST_P(BadFile, IsNotStoredAsASignedCertificate) {
  CertificatePrinter printer;
  EXPECT_EQ(printer.status(generateText("n")), Success);
  EXPECT_EQ(printer.status(callText("uploadSignedCertFile", 500,
                                    {support::text("cert_friendly_name", "n"),
                                     {"cert_syst_dot_pem_size", "IntegerElem", GetParam().size},
                                     {"cert_syst_dot_pem_file", "BinaryElem", GetParam().base64}})),
            static_cast<int>(GetParam().status));
  EXPECT_EQ(printer.certificates(), Names{"Factory"});
}

/// Returns a certificate with the header of an encrypted PEM text. OpenSSL could prompt for a
/// password when it reads the certificate.
std::string encryptedPem() {
  std::string pem = rootPem();
  return pem.insert(pem.find('\n') + 1,
                    "Proc-Type: 4,ENCRYPTED\nDEK-Info: AES-256-CBC,00112233445566778899AABBCCDDEEFF"
                    "\n\n");
}

INSTANTIATE_TEST_SUITE_P(
    Files, BadFile,
    testing::Values(
        FileRow{{"SizeTooSmall"}, "1", support::base64(rootPem()), CallStatus::WrongSize},
        FileRow{{"SizeOfTheBase64Text"},
                sizeOf(support::base64(rootPem())),
                support::base64(rootPem()),
                CallStatus::WrongSize},
        FileRow{{"SizeNegative"}, "-1", support::base64(rootPem()), CallStatus::WrongSize},
        FileRow{{"SizeBeyondAnyNumber"},
                std::string(100, '9'),
                support::base64(rootPem()),
                CallStatus::WrongSize},
        FileRow{{"BrokenBase64"}, "3", "Zm9*", CallStatus::NotBase64},
        FileRow{{"CutBase64"}, "3", "Zm9", CallStatus::NotBase64},
        content("Nothing", "", CallStatus::NoCertificate),
        content("NoPem", "text", CallStatus::NoCertificate),
        content("Zeros", std::string(40000, '\0'), CallStatus::NoCertificate),
        content("CutPem", rootPem().substr(0, rootPem().size() / 2), CallStatus::NoCertificate),
        content("PemOfNothing", "-----BEGIN CERTIFICATE-----\n-----END CERTIFICATE-----\n",
                CallStatus::NoCertificate),
        content("PemOfJunk", "-----BEGIN CERTIFICATE-----\nAAAA\n-----END CERTIFICATE-----\n",
                CallStatus::NoCertificate),
        content("EncryptedPem", encryptedPem(), CallStatus::NoCertificate)),
    support::rowName);

TEST(DescribeCertificates, OmitsTheFactoryCertificate) {
  CertificatePrinter printer;
  EXPECT_EQ(printer.object.describe(), Names{});
}

TEST(DescribeCertificates, ListsCaCertificatesCertificatesAndRequests) {
  CertificatePrinter printer;
  const Authority authority("RootCA");
  EXPECT_EQ(printer.status(generateText("waiting", "q")), Success);
  EXPECT_EQ(printer.status(generateText("\xC3\xA4", "p")), Success);
  EXPECT_EQ(
      printer.status(uploadSignedText("\xC3\xA4", authority.sign(printer.request("\xC3\xA4")))),
      Success);
  EXPECT_EQ(printer.status(uploadCaText("ca.pem", authority.pem())), Success);
  EXPECT_EQ(printer.object.describe(),
            (Names{"CA certificate = \"RootCA_Jan__5_2020_To_Dec_25_2030\", file \"ca.pem\"",
                   "device certificate = \"Factory\", factory-made",
                   "device certificate = \"\\xC3\\xA4\", subject \"/CN=p\", issuer \"/CN=RootCA\"",
                   "certificate request = \"waiting\", subject \"/CN=q\""}));
}

}  // namespace
