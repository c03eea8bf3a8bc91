#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <openssl/asn1.h>
#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/pem.h>
#include <regex>
#include <string>
#include <tuple>

#include "cert/cert_mgr.h"
#include "testing/certificates.h"
#include "testing/files.h"
#include "testing/open_descriptors.h"
#include "testing/output.h"
#include "testing/rows.h"

namespace {

using support::certificatePem;
using support::outputOf;

// --- Dates --------------------------------------------------------------------------------------

using Date = std::tuple<int, int, int>;
constexpr Date Untouched = {-1, -2, -3};

int readDate(const std::string& text, Date& date) {
  const std::unique_ptr<ASN1_TIME, void (*)(ASN1_TIME*)> time(ASN1_TIME_new(), ASN1_TIME_free);
  ASN1_STRING_set(time.get(), text.data(), static_cast<int>(text.size()));
  auto& [year, month, day] = date;
  return CertMgr::getASN1Date(time.get(), year, month, day);
}

Date dateOf(const std::string& text) {
  Date date = Untouched;
  readDate(text, date);
  return date;
}

TEST(GetASN1Date, ReadsAUtcTimeOfThirteenCharacters) {
  EXPECT_EQ(dateOf("200105235959Z"), Date(2020, 1, 5));
  EXPECT_EQ(dateOf("000229000000Z"), Date(2000, 2, 29));
}

TEST(GetASN1Date, ReadsTwoDigitYearsFrom50OnAs19xx) {
  EXPECT_EQ(dateOf("491231000000Z"), Date(2049, 12, 31));
  EXPECT_EQ(dateOf("500101000000Z"), Date(1950, 1, 1));
  EXPECT_EQ(dateOf("991231000000Z"), Date(1999, 12, 31));
}

TEST(GetASN1Date, ReadsAGeneralizedTimeOfFourteenToTwentyCharacters) {
  EXPECT_EQ(dateOf("20500101000000Z"), Date(2050, 1, 1));
  EXPECT_EQ(dateOf("99991231235959Z"), Date(9999, 12, 31));
  EXPECT_EQ(dateOf("20240630120000"), Date(2024, 6, 30));
  EXPECT_EQ(dateOf("20240630120000+01000"), Date(2024, 6, 30));
}

TEST(GetASN1Date, FailsForALengthOutside13To20) {
  const std::string text = "202406301200000000000";
  for (std::size_t size = 0; size <= text.size(); ++size) {
    Date date = Untouched;
    const int result = size >= 13 && size <= 20 ? 0 : -1;
    EXPECT_EQ(readDate(text.substr(0, size), date), result) << size;
    EXPECT_EQ(date == Untouched, result == -1) << size;
  }
  auto [year, month, day] = Untouched;
  EXPECT_EQ(CertMgr::getASN1Date(nullptr, year, month, day), -1);
}

TEST(GetASN1Date, LeavesTheDateUnchangedForAnyOtherLength) {
  EXPECT_EQ(dateOf(""), Untouched);
  EXPECT_EQ(dateOf("2001052359Z"), Untouched);
  EXPECT_EQ(dateOf("200105235959"), Untouched);
  EXPECT_EQ(dateOf("20240630120000+010000"), Untouched);
  auto [year, month, day] = Untouched;
  CertMgr::getASN1Date(nullptr, year, month, day);
  EXPECT_EQ(Date(year, month, day), Untouched);
}

TEST(GetASN1Date, ReadsEachNumberUpToTheFirstNonDigit) {
  EXPECT_EQ(dateOf("2x1y z235959Z"), Date(2002, 1, 0));
  EXPECT_EQ(dateOf("abcdefghijklmnop"), Date(0, 0, 0));
}

// --- Validity text ------------------------------------------------------------------------------

std::string validity(Date from, Date to, int size = 128) {
  std::string out(static_cast<std::size_t>(size), '#');
  auto& [year1, month1, day1] = from;
  auto& [year2, month2, day2] = to;
  const int length =
      CertMgr::formatCMCADate(year1, month1, day1, year2, month2, day2, out.data(), size);
  if (length == 0) {
    EXPECT_EQ(out, std::string(out.size(), '#'));
    return "";
  }
  EXPECT_EQ(out.at(static_cast<std::size_t>(length)), '\0');
  return out.substr(0, static_cast<std::size_t>(length));
}

TEST(FormatCMCADate, WritesAnUnderscoreBeforeASingleDigitDay) {
  EXPECT_EQ(validity({2020, 1, 5}, {2030, 12, 25}), "Jan__5_2020_To_Dec_25_2030");
  EXPECT_EQ(validity({2020, 2, 9}, {2030, 3, 10}), "Feb__9_2020_To_Mar_10_2030");
  EXPECT_EQ(validity({2020, 4, 1}, {2030, 5, 9}), "Apr__1_2020_To_May__9_2030");
}

TEST(FormatCMCADate, NamesEveryMonth) {
  const std::array names = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                            "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  for (int month = 1; month <= 12; ++month) {
    const std::string name = names.at(static_cast<std::size_t>(month) - 1);
    EXPECT_EQ(validity({2001, month, 11}, {2002, month, 12}),
              name + "_11_2001_To_" + name + "_12_2002");
  }
}

TEST(FormatCMCADate, WritesYearsWithFourDigits) {
  EXPECT_EQ(validity({7, 1, 11}, {9999, 1, 11}), "Jan_11_0007_To_Jan_11_9999");
  EXPECT_EQ(validity({7, 1, 11}, {80, 1, 11}), "Jan_11_0007_To_Jan_11_0080");
}

TEST(FormatCMCADate, WritesNothingToABufferOf25Bytes) {
  EXPECT_EQ(validity({2020, 1, 5}, {2030, 12, 25}, 25), "");
  EXPECT_EQ(validity({2020, 1, 5}, {2030, 12, 25}, 0), "");
}

TEST(FormatCMCADate, CutsTheTextToTheSizeOfItsBuffer) {
  EXPECT_EQ(validity({2020, 1, 5}, {2030, 12, 25}, 26), "Jan__5_2020_To_Dec_25_203");
  EXPECT_EQ(validity({2020, 1, 5}, {2030, 12, 25}, 27), "Jan__5_2020_To_Dec_25_2030");
}

TEST(FormatCMCADate, WritesNothingForAnInvalidMonth) {
  for (const int month : {-1, 0, 13, 99}) {
    EXPECT_EQ(validity({2020, month, 5}, {2030, 12, 25}), "") << month;
    EXPECT_EQ(validity({2020, 1, 5}, {2030, month, 25}), "") << month;
  }
}

// --- Name of a certificate ----------------------------------------------------------------------

class GetPemCommonName : public testing::Test {
 protected:
  int name(const std::string& path) {
    const long before = support::openDescriptors();
    const auto read = [&] {
      return CertMgr::getPEMCommonName(path.c_str(), commonName, caName);
    };
    const int result = resultOf(read, output);
    EXPECT_EQ(support::openDescriptors(), before);
    EXPECT_EQ(ERR_peek_error(), 0UL);
    return result;
  }

  int nameContent(const std::string& content) { return name(folder.write("ca.pem", content)); }

  support::TemporaryFolder folder;
  std::string commonName = "(none)";
  std::string caName = "(none)";
  support::Output output;
};

constexpr const char* NotRead = "D [ZVK] PEM_read failed?!\n";

TEST_F(GetPemCommonName, JoinsCommonNameAndValidity) {
  EXPECT_EQ(nameContent(certificatePem()), 0);
  EXPECT_EQ(commonName, "RootCA");
  EXPECT_EQ(caName, "RootCA_Jan__5_2020_To_Dec_25_2030");
  EXPECT_EQ(output, support::Output());
}

TEST_F(GetPemCommonName, KeepsTheTextAfterTheCommonName) {
  EXPECT_EQ(
      nameContent(certificatePem(
          {.subject = {{"O", "Org"}, {"CN", "Root CA"}, {"emailAddress", "ca@example.com"}}})),
      0);
  EXPECT_EQ(commonName, "Root CA/emailAddress=ca@example.com");
  EXPECT_EQ(caName, "Root CA/emailAddress=ca@example.com_Jan__5_2020_To_Dec_25_2030");
}

TEST_F(GetPemCommonName, UsesTheFirstCnEqualsEvenInsideAnotherComponent) {
  EXPECT_EQ(nameContent(certificatePem({.subject = {{"O", "xCN=y"}, {"CN", "z"}}})), 0);
  EXPECT_EQ(commonName, "y/CN=z");
}

TEST_F(GetPemCommonName, FailsWithoutACommonName) {
  EXPECT_EQ(nameContent(certificatePem({.subject = {{"O", "Org"}}})), -1);
  EXPECT_EQ(nameContent(certificatePem({.subject = {}})), -1);
  EXPECT_EQ(nameContent(certificatePem({.subject = {{"CN", ""}}})), -1);
  EXPECT_EQ(commonName, "(none)");
  EXPECT_EQ(caName, "(none)");
  EXPECT_EQ(output, support::Output());
}

TEST_F(GetPemCommonName, FailsIfALongSubjectLeavesNoRoomForIt) {
  EXPECT_EQ(nameContent(certificatePem({.subject = {{"CN", std::string(300, 'x')}}})), -1);
  EXPECT_EQ(nameContent(certificatePem({.subject = {{"O", std::string(300, 'x')}, {"CN", "y"}}})),
            -1);
  EXPECT_EQ(caName, "(none)");
}

TEST_F(GetPemCommonName, AcceptsASubjectOf255Characters) {
  const std::string longest(255 - std::string("/CN=").size(), 'x');
  EXPECT_EQ(nameContent(certificatePem({.subject = {{"CN", longest}}})), 0);
  EXPECT_EQ(commonName, longest);
  EXPECT_EQ(caName, longest + "_Jan__5_2020_To_Dec_25_2030");
  EXPECT_EQ(nameContent(certificatePem({.subject = {{"CN", longest + "x"}}})), -1);
}

TEST_F(GetPemCommonName, OmitsComponentsThatDoNotFit) {
  EXPECT_EQ(nameContent(certificatePem({.subject = {{"CN", "y"}, {"O", std::string(300, 'x')}}})),
            0);
  EXPECT_EQ(commonName, "y");
}

TEST_F(GetPemCommonName, ReportsAMissingFile) {
  const std::string path = folder.path("absent");
  EXPECT_EQ(name(path), -1);
  EXPECT_EQ(output.err, "D [ZVK] Failed to read Pem file '" + path + "'?!\n");
  output = outputOf([&] { CertMgr::getPEMCommonName(nullptr, commonName, caName); });
  EXPECT_EQ(output.err, "D [ZVK] Failed to read Pem file ''?!\n");
  EXPECT_EQ(caName, "(none)");
}

TEST_F(GetPemCommonName, ReportsAFileWithoutAPemCertificate) {
  const std::string pem = certificatePem();
  for (const std::string& content :
       {std::string(), std::string("garbage"), support::certificateDer(), pem.substr(0, 300),
        pem.substr(0, 100) + "*" + pem.substr(101)}) {
    EXPECT_EQ(nameContent(content), -1);
    EXPECT_EQ(output.err, NotRead);
  }
  EXPECT_EQ(name(folder.path("")), -1);
  EXPECT_EQ(caName, "(none)");
}

TEST_F(GetPemCommonName, SkipsTextBeforeTheCertificate) {
  EXPECT_EQ(nameContent("garbage\n-----BEGIN\n\xFF\n" + certificatePem()), 0);
  EXPECT_EQ(commonName, "RootCA");
}

TEST_F(GetPemCommonName, AcceptsOtherLabelsOfCertificates) {
  for (const char* label : {"TRUSTED CERTIFICATE", "X509 CERTIFICATE"}) {
    const std::string pem =
        std::regex_replace(certificatePem(), std::regex("CERTIFICATE(?=-----)"), label);
    commonName.clear();
    EXPECT_EQ(nameContent(pem), 0) << label;
    EXPECT_EQ(commonName, "RootCA") << label;
  }
}

TEST_F(GetPemCommonName, DoesNotPromptForAPassPhrase) {
  std::string pem = certificatePem();
  const std::string begin = "-----BEGIN CERTIFICATE-----\n";
  pem.insert(begin.size(),
             "Proc-Type: 4,ENCRYPTED\nDEK-Info: AES-256-CBC,00112233445566778899AABBCCDDEEFF\n\n");
  EXPECT_EQ(nameContent(pem), -1);
  EXPECT_EQ(output, (support::Output{"", NotRead}));
}

struct DateRow : support::Row {
  const char* from;
  const char* to;
  const char* validity;  ///< empty if there is none
};

class CertificateDates : public GetPemCommonName, public testing::WithParamInterface<DateRow> {};

bool opensslReads(const std::string& pem) {
  const std::unique_ptr<BIO, decltype(&BIO_free)> bio(
      BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())), BIO_free);
  const std::unique_ptr<X509, decltype(&X509_free)> certificate(
      PEM_read_bio_X509(bio.get(), nullptr, nullptr, nullptr), X509_free);
  return certificate != nullptr;
}

TEST_P(CertificateDates, AreReadFromTheCertificate) {
  const DateRow& row = GetParam();
  const std::string content = certificatePem({.from = row.from, .to = row.to});
  if (*row.validity == '\0') {
    EXPECT_EQ(nameContent(content), -1);
    // OpenSSL 3.5 reads no certificate with a time without seconds.
    EXPECT_EQ(commonName, opensslReads(content) ? "RootCA" : "(none)");
    EXPECT_EQ(caName, "(none)");
  } else {
    EXPECT_EQ(nameContent(content), 0);
    EXPECT_EQ(caName, std::string("RootCA_") + row.validity);
  }
}

const std::vector<DateRow> DateRows = {
    {{"From1950To2049"}, "500101000000Z", "491231235959Z", "Jan__1_1950_To_Dec_31_2049"},
    {{"From2050To9999"}, "20500101000000Z", "99991231235959Z", "Jan__1_2050_To_Dec_31_9999"},
    {{"WithoutSeconds"}, "2001050000Z", "301225000000Z", ""},
    {{"EndWithoutSeconds"}, "200105000000Z", "3012250000Z", ""},
    {{"MonthOf13"}, "201305000000Z", "301225000000Z", ""},
    {{"MonthOf0"}, "200105000000Z", "300025000000Z", ""},
    {{"Letters"}, "abcdefghijklm", "301225000000Z", ""},
    {{"Overlong"}, "200105000000Z", "20301225000000.000000000Z", ""},
};

INSTANTIATE_TEST_SUITE_P(Dates, CertificateDates, testing::ValuesIn(DateRows), support::rowName);

}  // namespace
