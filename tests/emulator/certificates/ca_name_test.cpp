#include <gtest/gtest.h>
#include <string>

#include "emulator/certificates/x509_certificate.h"
#include "testing/certificate_printer.h"
#include "testing/rows.h"

// The printer's name for a CA certificate.

namespace {

using support::Authority;

struct NameRow : support::Row {
  Authority::Name subject;
  std::string notBefore;
  std::string notAfter;
  std::string caName;
};

class CaName : public testing::TestWithParam<NameRow> {};

TEST_P(CaName, ConsistsOfCommonNameAndValidity) {
  const NameRow& row = GetParam();
  const auto certificate =
      emulator::X509Certificate::fromPem(Authority(row.subject, row.notBefore, row.notAfter).pem());
  ASSERT_TRUE(certificate);
  EXPECT_EQ(certificate->caName().value_or("none"), row.caName);
}

INSTANTIATE_TEST_SUITE_P(
    Certificates, CaName,
    testing::Values(
        NameRow{{"DayOfOneDigitAndOfTwo"},
                {{"CN", "RootCA"}},
                "20200105000000Z",
                "20301225235959Z",
                "RootCA_Jan__5_2020_To_Dec_25_2030"},
        NameRow{{"NinthAndTenth"},
                {{"CN", "a"}},
                "20210209000000Z",
                "20210310000000Z",
                "a_Feb__9_2021_To_Mar_10_2021"},
        NameRow{{"LastMonths"},
                {{"CN", "a"}},
                "20211130000000Z",
                "20221001000000Z",
                "a_Nov_30_2021_To_Oct__1_2022"},
        NameRow{{"YearsOfTwoDigits"},
                {{"CN", "a"}},
                "19500101000000Z",
                "20491231000000Z",
                "a_Jan__1_1950_To_Dec_31_2049"},
        NameRow{{"YearsOfFourDigits"},
                {{"CN", "a"}},
                "20500401000000Z",
                "99991231235959Z",
                "a_Apr__1_2050_To_Dec_31_9999"},
        NameRow{{"ComponentsAfterTheCommonName"},
                {{"O", "Org"}, {"CN", "Root CA"}, {"emailAddress", "a@example.org"}},
                "20200105000000Z",
                "20301225235959Z",
                "Root CA/emailAddress=a@example.org_Jan__5_2020_To_Dec_25_2030"},
        NameRow{{"CnEqualsInAnEarlierText"},
                {{"O", "xCN=y"}, {"CN", "z"}},
                "20200105000000Z",
                "20301225235959Z",
                "y/CN=z_Jan__5_2020_To_Dec_25_2030"},
        NameRow{{"BytesOutsideAscii"},
                {{"CN", "\xC3\xA4"}},
                "20200105000000Z",
                "20301225235959Z",
                "\\xC3\\xA4_Jan__5_2020_To_Dec_25_2030"},
        NameRow{{"NoCommonName"}, {{"O", "Org"}}, "20200105000000Z", "20301225235959Z", "none"},
        NameRow{{"EmptySubject"}, {}, "20200105000000Z", "20301225235959Z", "none"},
        NameRow{{"NothingAfterCnEquals"},
                {{"O", "CN="}},
                "20200105000000Z",
                "20301225235959Z",
                "none"}),
    support::rowName);

TEST(CaName, IsTheNameOfTheFileWithoutACommonName) {
  support::CertificatePrinter printer;
  const std::string pem = Authority(Authority::Name{{"O", "Org"}}).pem();
  EXPECT_EQ(printer.status(support::uploadCaText("a.pem", pem)), 1);
  EXPECT_EQ(printer.authorities(), std::vector<std::string>{"a.pem"});
  EXPECT_EQ(printer.status(support::uploadCaText("b.pem", pem)), 1);
  EXPECT_EQ(printer.status(support::deleteCaText("a.pem")), 1);
  EXPECT_EQ(printer.authorities(), std::vector<std::string>{"b.pem"});
}

}  // namespace
