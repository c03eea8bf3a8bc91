#pragma once

#include <array>
#include <string>
#include <string_view>

namespace emulator {

/// The subject of a certificate. If a text is empty, the field is absent.
struct Subject {
  std::string organization;
  std::string unit;
  std::string country;  ///< two letters
  std::string state;
  std::string locality;
  std::string commonName;
  std::string altName;  ///< a DNS name besides the common name
};

/// One field of a subject.
struct SubjectField {
  std::string_view name;       ///< the short name in X.509; "AN" for the DNS name
  std::string_view parameter;  ///< the parameter of method calls
  std::string Subject::*text;
};

/// All fields, in the order in which the printer sends them.
inline constexpr std::array<SubjectField, 7> SubjectFields = {{
    {"O", "x509_O", &Subject::organization},
    {"OU", "x509_OU", &Subject::unit},
    {"C", "x509_C", &Subject::country},
    {"ST", "x509_ST", &Subject::state},
    {"L", "x509_L", &Subject::locality},
    {"CN", "x509_CN", &Subject::commonName},
    {"AN", "x509_AN", &Subject::altName},
}};

}  // namespace emulator
