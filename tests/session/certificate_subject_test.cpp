#include "session/certificate_subject.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

#include "cert/cert_mgr.h"
#include "profiles.h"

namespace {

using profiles::NoProblem;
using profiles::Problem;
using profiles::problemOf;
using session::CertificateSubject;
using session::readSubject;
using Values = std::vector<std::pair<std::string, std::string>>;

/// Returns the problem of a subject with a common name and this value.
Problem problemWith(const std::string& key, const std::string& value) {
  return problemOf([&] { (void)readSubject(Values{{"common-name", "p"}, {key, value}}); });
}

constexpr const char* ShortText = "1 to 64 characters, no control characters";
constexpr const char* LongText = "1 to 128 characters, no control characters";
constexpr const char* Country = "a country code of two letters, such as DE";
constexpr const char* HostName = "a host name of at most 253 ASCII characters, no spaces";

std::string repeated(std::size_t count, const std::string& text) {
  std::string result;
  for (std::size_t i = 0; i < count; ++i) {
    result += text;
  }
  return result;
}

TEST(CertificateSubject, TakesEachPart) {
  const CertificateSubject subject = readSubject(Values{{"common-name", "printer"},
                                                        {"organization", "Example & <Sons>"},
                                                        {"unit", "100 %s"},
                                                        {"country", "de"},
                                                        {"state", "State"},
                                                        {"city", "M\u00fcnchen"},
                                                        {"alternative-name", "printer.example"}});
  EXPECT_EQ(subject.commonName, "printer");
  EXPECT_EQ(subject.organization, "Example & <Sons>");
  EXPECT_EQ(subject.unit, "100 %s");
  EXPECT_EQ(subject.country, "DE");
  EXPECT_EQ(subject.state, "State");
  EXPECT_EQ(subject.city, "M\u00fcnchen");
  EXPECT_EQ(subject.alternativeName, "printer.example");
}

TEST(CertificateSubject, NeedsACommonName) {
  const Problem required = {"--common-name", "", "the common name, which is required"};
  EXPECT_EQ(problemOf([] { (void)readSubject(Values{}); }), required);
  EXPECT_EQ(problemOf([] { (void)readSubject(Values{{"city", "x"}}); }), required);
  EXPECT_EQ(problemWith("common-name", ""), (Problem{"--common-name", "", ShortText}));
}

TEST(CertificateSubject, HasLimitsInCharacters) {
  for (const char* key : {"common-name", "organization", "unit"}) {
    for (const char* character : {"a", "\u00fc", "\U0001F5A8"}) {
      EXPECT_EQ(problemWith(key, repeated(64, character)), NoProblem);
      EXPECT_EQ(problemWith(key, repeated(65, character)).expected, ShortText);
    }
  }
  for (const char* key : {"state", "city"}) {
    EXPECT_EQ(problemWith(key, std::string(128, 'a')), NoProblem);
    EXPECT_EQ(problemWith(key, std::string(129, 'a')).expected, LongText);
  }
  EXPECT_EQ(problemWith("alternative-name", std::string(253, 'a')), NoProblem);
  EXPECT_EQ(problemWith("alternative-name", std::string(254, 'a')).expected, HostName);
}

TEST(CertificateSubject, HasACountryOfTwoLetters) {
  EXPECT_EQ(problemWith("country", "FR"), NoProblem);
  for (const char* wrong : {"", "D", "DEU", "D1", "D ", "\u00fc"}) {
    EXPECT_EQ(problemWith("country", wrong), (Problem{"--country", wrong, Country}));
  }
}

TEST(CertificateSubject, HasNoControlBytesAndIsUtf8) {
  for (const char* wrong : {"a\nb", "a\x1b", "\x7f", "\xFF", "\xC3",
                            "\xC3"
                            "a",
                            "\x80", "\xC0\x80"}) {
    EXPECT_EQ(problemWith("organization", wrong), (Problem{"--organization", wrong, ShortText}));
  }
  for (const char* wrong : {"a b", "a\n", "\u00fc.example"}) {
    EXPECT_EQ(problemWith("alternative-name", wrong),
              (Problem{"--alternative-name", wrong, HostName}));
  }
}

TEST(CertificateSubject, FitsARequest) {
  // Each quotation mark becomes an entity of six bytes.
  const std::string quotes(128, '"');
  EXPECT_EQ(problemOf([&] {
              (void)readSubject(Values{{"common-name", quotes.substr(64)},
                                       {"organization", quotes.substr(64)},
                                       {"unit", quotes.substr(64)},
                                       {"state", quotes},
                                       {"city", quotes}});
            }),
            (Problem{"--common-name", "", "a shorter subject, which fits a request"}));
}

TEST(CertificateName, IsTheUsualOneUnlessGiven) {
  EXPECT_EQ(session::checkedCertificateName("", "--name"), CertMgr::DefaultName);
  EXPECT_EQ(session::checkedCertificateName("mine", "--name"), "mine");
}

TEST(CertificateName, FitsThePrinter) {
  const auto problem = [](const std::string& name) {
    return problemOf([&] { (void)session::checkedCertificateName(name, "--name"); });
  };
  EXPECT_EQ(problem(std::string(31, 'x')), NoProblem);
  for (const std::string& wrong :
       {std::string(32, 'x'), std::string("a&b"), std::string("<"), std::string("a\n")}) {
    EXPECT_EQ(problem(wrong),
              (Problem{"--name", wrong, "a name of at most 31 bytes, without & < > \" and '"}));
  }
}

}  // namespace
