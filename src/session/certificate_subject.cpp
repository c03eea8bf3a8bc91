// The rules of a certificate request's subject.

#include "session/certificate_subject.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "cert/cert_mgr.h"
#include "session/profile.h"
#include "session/translatable.h"

namespace session {

namespace {

/// Returns the count of characters of a UTF-8 text. Returns nothing if the text has ASCII control
/// characters, bytes that UTF-8 never uses, or characters with missing or surplus bytes.
std::optional<std::size_t> charactersOf(std::string_view text) {
  std::size_t count = 0;
  std::size_t expected = 0;  // further bytes of the current character
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const bool continues = (byte & 0xC0U) == 0x80U;
    if (continues != (expected > 0)) {
      return std::nullopt;
    }
    if (continues) {
      --expected;
      continue;
    }
    if (byte < 0x20 || byte == 0x7F || byte == 0xC0 || byte == 0xC1 || byte > 0xF4) {
      return std::nullopt;
    }
    ++count;
    expected = byte < 0x80 ? 0U : byte < 0xE0 ? 1U : byte < 0xF0 ? 2U : 3U;
  }
  return expected == 0 ? std::optional(count) : std::nullopt;
}

bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isText(std::string_view text, std::size_t limit) {
  const auto count = charactersOf(text);
  return count && *count >= 1 && *count <= limit;
}

bool isCountry(std::string_view text, std::size_t limit) {
  return text.size() == limit && std::ranges::all_of(text, isLetter);
}

bool isHostName(std::string_view text, std::size_t limit) {
  return !text.empty() && text.size() <= limit &&
         std::ranges::all_of(text, [](char c) { return c > ' ' && c <= '~'; });
}

/// One part of the subject. The limits are those of RFC 5280, appendix A.1, and of RFC 1035.
struct PartRule {
  std::string_view key;
  std::string CertificateSubject::*text;
  std::size_t limit;
  bool (*isAllowed)(std::string_view text, std::size_t limit);
  const char* expected;
};

constexpr const char* ShortText = translatable("1 to 64 characters, no control characters");
constexpr const char* LongText = translatable("1 to 128 characters, no control characters");

constexpr auto PartRules = std::to_array<PartRule>({
    {"common-name", &CertificateSubject::commonName, 64, isText, ShortText},
    {"organization", &CertificateSubject::organization, 64, isText, ShortText},
    {"unit", &CertificateSubject::unit, 64, isText, ShortText},
    {"country", &CertificateSubject::country, 2, isCountry,
     translatable("a country code of two letters, such as DE")},
    {"state", &CertificateSubject::state, 128, isText, LongText},
    {"city", &CertificateSubject::city, 128, isText, LongText},
    {"alternative-name", &CertificateSubject::alternativeName, 253, isHostName,
     translatable("a host name of at most 253 ASCII characters, no spaces")},
});

}  // namespace

CertificateSubject readSubject(std::span<const std::pair<std::string, std::string>> values) {
  CertificateSubject subject;
  for (const auto& [key, value] : values) {
    const auto* const rule = std::ranges::find(PartRules, key, &PartRule::key);
    if (rule == PartRules.end()) {
      throw ProfileError("--" + key, "", translatable("a part of a subject"));
    }
    if (!rule->isAllowed(value, rule->limit)) {
      throw ProfileError("--" + key, value, rule->expected);
    }
    subject.*rule->text = value;
  }
  if (subject.commonName.empty()) {
    throw ProfileError("--common-name", "", translatable("the common name, which is required"));
  }
  std::ranges::for_each(subject.country, [](char& c) { c = c >= 'a' ? char(c - 'a' + 'A') : c; });
  const auto& s = subject;
  if (!CertMgr::fitsRequest(s.organization.c_str(), s.unit.c_str(), s.country.c_str(),
                            s.state.c_str(), s.city.c_str(), s.commonName.c_str(),
                            s.alternativeName.c_str(), CertMgr::LongestName.data())) {
    throw ProfileError("--common-name", "",
                       translatable("a shorter subject, which fits a request"));
  }
  return subject;
}

std::string checkedCertificateName(const std::string& name, const std::string& subject) {
  if (name.empty()) {
    return std::string(CertMgr::DefaultName);
  }
  // The name is sent unchanged inside XML, so it must not have the special characters of XML.
  const bool isPlain = charactersOf(name) && name.find_first_of("&<>\"'") == std::string::npos;
  if (!isPlain || name.size() > CertMgr::LongestName.size()) {
    throw ProfileError(subject, name,
                       translatable("a name of at most 31 bytes, without & < > \" and '"));
  }
  return name;
}

}  // namespace session
