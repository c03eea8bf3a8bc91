#pragma once

#include <span>
#include <string>
#include <utility>

namespace session {

/// The subject of a certificate request. The common name is not empty. Every other part may be
/// empty.
struct CertificateSubject {
  std::string commonName = {};
  std::string organization = {};
  std::string unit = {};
  std::string country = {};
  std::string state = {};
  std::string city = {};
  std::string alternativeName = {};  ///< a host name
};

/// Checks the values and returns the subject that has them. The keys are "common-name",
/// "organization", "unit", "country", "state", "city" and "alternative-name". If a key or a value
/// is wrong, throws a `ProfileError` that names the option, such as "--city".
[[nodiscard]] CertificateSubject readSubject(
    std::span<const std::pair<std::string, std::string>> values);

/// Returns the name for one of the printer's own certificates: `name`, or the default name if
/// `name` is empty. Throws `ProfileError` if the printer cannot store the name. `subject` names the
/// option in errors.
[[nodiscard]] std::string checkedCertificateName(const std::string& name,
                                                 const std::string& subject);

}  // namespace session
