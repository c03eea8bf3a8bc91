// The encoders of wnpaGenerator for the fields of a certificate request. The table rows that
// `encode` takes are in setting_encodings.h.

#include "util/debug_line.h"
#include "wireless/setting_encodings.h"
#include "wireless/wnpa_generator.h"

int wnpaGenerator::constructCertFriendlyName() {
  return encode(encodings::CertFriendlyName);
}

int wnpaGenerator::constructCertAltName() {
  return encode(encodings::CertAltName);
}

int wnpaGenerator::constructCertCity() {
  return encode(encodings::CertCity);
}

int wnpaGenerator::constructCertState() {
  return encode(encodings::CertState);
}

int wnpaGenerator::constructCertUnit() {
  return encode(encodings::CertUnit);
}

int wnpaGenerator::constructCertOrg() {
  return encode(encodings::CertOrganization);
}

int wnpaGenerator::constructCertCommonName() {
  return encode(encodings::CertCommonName);
}

int wnpaGenerator::constructCertCountry() {
  return encode(encodings::CertCountry);
}

int wnpaGenerator::constructCertSignRequest() {
  util::debugLine("Cer construct CSR");
  return appendFlag(npa::settings::CertSignRequest, true);
}
