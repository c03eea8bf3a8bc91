#pragma once

#include <span>
#include <string>
#include <utility>

namespace session {

/// The subject of a certificate request. Only the common name is never empty.
struct CertificateSubject {
  std::string commonName;
  std::string organization;
  std::string unit;
  std::string country;
  std::string state;
  std::string city;
  std::string alternativeName;  ///< a host name
};

/// Returns the subject with these values, checked. The keys are "common-name", "organization",
/// "unit", "country", "state", "city" and "alternative-name". Throws `ProfileError` whose subject
/// is the key after two dashes.
[[nodiscard]] CertificateSubject readSubject(
    std::span<const std::pair<std::string, std::string>> values);

/// Returns the name for one of the printer's own certificates: `name`, or the usual name if it is
/// empty. Throws `ProfileError` if the printer cannot store it. `subject` names the option.
[[nodiscard]] std::string checkedCertificateName(const std::string& name,
                                                 const std::string& subject);

}  // namespace session
