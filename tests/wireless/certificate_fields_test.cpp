#include <gtest/gtest.h>
#include <string>

#include "testing/setting_encoder.h"

// The certificate fields that are no plain texts; those are tested with all other texts.

namespace {

using support::bytes;
using support::SettingRow;

class CertificateField : public support::SettingTable {};

TEST_P(CertificateField, AppendsItsObjectAndTells) {
  expectRow();
}

constexpr auto Country = &wnpaGenerator::constructCertCountry;

SettingRow countryRow(const char* name, const char* option, const char* object, const char* log) {
  return {{name}, Country, {option}, object, log};
}

INSTANTIATE_TEST_SUITE_P(
    Country, CertificateField,
    testing::Values(countryRow("TwoLetters", "--cer-country=DE", "2A 09 00 00 02 44 45",
                               "D [ZVK] Cer country = DE (2 bytes)\n"),
                    countryRow("OneLetter", "--cer-country=D", "2A 09 00 00 02 44 00",
                               "D [ZVK] Cer country = D (1 bytes)\n"),
                    countryRow("ThreeLetters", "--cer-country=DEU", "2A 09 00 00 02 44 45",
                               "D [ZVK] Cer country = DEU (3 bytes)\n"),
                    countryRow("HighBytes", "--cer-country=\xC3\x84\n", "2A 09 00 00 02 C3 84",
                               "D [ZVK] Cer country = \xC3\x84\n (3 bytes)\n"),
                    countryRow("Empty", "--cer-country=", "",
                               "D [ZVK] Cer country =  (0 bytes)\n")),
    support::rowName);

INSTANTIATE_TEST_SUITE_P(SignRequest, CertificateField,
                         testing::Values(SettingRow{{"IsAFlag"},
                                                    &wnpaGenerator::constructCertSignRequest,
                                                    {},
                                                    "2A 12 00 00 01 01",
                                                    "D [ZVK] Cer construct CSR\n"}),
                         support::rowName);

TEST_F(CertificateField, CutsACountryOf64KiB) {
  const std::string country(65536, 'x');
  expectObject(Country, {"--cer-country=" + country}, bytes("2A 09 00 00 02 78 78"),
               "D [ZVK] Cer country = " + country + " (65536 bytes)\n");
}

}  // namespace
