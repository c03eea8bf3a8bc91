#include <gtest/gtest.h>
#include <string>

#include "testing/setting_encoder.h"

// The certificate fields that are not plain texts. setting_encoding_test.cpp tests the texts.

namespace {

using support::SettingRow;

class CertificateField : public support::SettingTable {};

TEST_P(CertificateField, AppendsItsObjectAndLogsIt) {
  expectRow();
}

constexpr auto Country = &wnpaGenerator::constructCertCountry;

SettingRow countryRow(const char* name, const std::string& country, const std::string& object) {
  return {{name},
          Country,
          {"--cer-country=" + country},
          object,
          "D [ZVK] Cer country = " + country + " (" + std::to_string(country.size()) + " bytes)\n"};
}

INSTANTIATE_TEST_SUITE_P(
    Country, CertificateField,
    testing::Values(countryRow("TwoLetters", "DE", "2A 09 00 00 02 44 45"),
                    countryRow("OneLetter", "D", "2A 09 00 00 02 44 00"),
                    countryRow("ThreeLetters", "DEU", "2A 09 00 00 02 44 45"),
                    countryRow("HighBytes", "\xC3\x84\n", "2A 09 00 00 02 C3 84"),
                    countryRow("Empty", "", ""),
                    countryRow("Size64KiB", std::string(65536, 'x'), "2A 09 00 00 02 78 78")),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(SignRequest, CertificateField,
                         testing::Values(SettingRow{{"IsAFlag"},
                                                    &wnpaGenerator::constructCertSignRequest,
                                                    {},
                                                    "2A 12 00 00 01 01",
                                                    "D [ZVK] Cer construct CSR\n"}),
                         support::rowName);

}  // namespace
