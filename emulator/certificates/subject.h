#pragma once

#include <array>
#include <string>
#include <string_view>

namespace emulator {

/// Whom a certificate is for; empty texts stand for what is not said.
struct Subject {
  std::string organization;
  std::string unit;
  std::string country;  ///< two letters
  std::string state;
  std::string locality;
  std::string commonName;
  std::string altName;  ///< a DNS name besides the common name
};

/// One text of a subject.
struct SubjectField {
  std::string_view name;       ///< X.509's short name of it, "AN" for the DNS name
  std::string_view parameter;  ///< of method calls
  std::string Subject::*text;
};

/// In the order in which the printer tells them.
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
