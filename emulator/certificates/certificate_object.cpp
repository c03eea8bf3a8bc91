// The table of methods, and the checks that every call passes before its method runs.

#include "emulator/certificates/certificate_object.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "catalogue/hex_text.h"
#include "emulator/certificates/key_request.h"
#include "emulator/certificates/libcrypto.h"
#include "emulator/certificates/x509_certificate.h"

namespace emulator {

namespace {

using Type = MethodCall::Type;

/// A parameter that a method requires: its name and its type.
struct ParameterRule {
  std::string_view name;
  Type type;
};

constexpr std::string_view ObjectName = "applications.certMgr";

// The parameters of the methods. Their order in a request does not matter.

constexpr std::array<ParameterRule, 1> FriendlyName = {{{"cert_friendly_name", Type::Text}}};
constexpr std::array<ParameterRule, 1> AuthorityName = {{{"ca_common_name", Type::Text}}};
constexpr std::array<ParameterRule, 8> RequestTexts = {{
    {"cert_friendly_name", Type::Text},
    {"x509_O", Type::Text},
    {"x509_AN", Type::Text},
    {"x509_C", Type::Text},
    {"x509_CN", Type::Text},
    {"x509_L", Type::Text},
    {"x509_OU", Type::Text},
    {"x509_ST", Type::Text},
}};
constexpr std::array<ParameterRule, 3> AuthorityFile = {{
    {"ca_file_name", Type::Text},
    {"ca_dot_pem_size", Type::Number},
    {"ca_dot_pem_file", Type::Binary},
}};
constexpr std::array<ParameterRule, 3> SignedFile = {{
    {"cert_friendly_name", Type::Text},
    {"cert_syst_dot_pem_size", Type::Number},
    {"cert_syst_dot_pem_file", Type::Binary},
}};

/// Returns true if the text is a decimal integer.
bool isNumber(std::string_view text) {
  text.remove_prefix(text.starts_with('-') ? 1 : 0);
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// Throws `CallError` unless the call has each parameter of the rules exactly once and with the
/// right type, and no other parameter.
void checkParameters(const MethodCall& call, std::span<const ParameterRule> rules) {
  std::vector<bool> given(rules.size(), false);
  for (const MethodCall::Parameter& parameter : call.parameters) {
    const auto rule = std::ranges::find(rules, parameter.name, &ParameterRule::name);
    if (rule == rules.end()) {
      throw CallError(CallStatus::UnknownParameter, catalogue::quoted(parameter.name));
    }
    const auto index = static_cast<std::size_t>(rule - rules.begin());
    if (given[index]) {
      throw CallError(CallStatus::RepeatedParameter, rule->name);
    }
    if (rule->type != parameter.type ||
        (parameter.type == Type::Number && !isNumber(parameter.value))) {
      throw CallError(CallStatus::WrongType, rule->name);
    }
    given[index] = true;
  }
  for (std::size_t i = 0; i < rules.size(); ++i) {
    if (!given[i]) {
      throw CallError(CallStatus::MissingParameter, rules[i].name);
    }
  }
}

}  // namespace

Subject usualSubject() {
  return {.organization = "Example",
          .unit = "Printing",
          .country = "US",
          .state = "State",
          .locality = "City",
          .commonName = "printer",
          .altName = "printer.example"};
}

/// A method: its name, the id that its calls must have, its parameters, and the member function
/// that runs it.
struct CertificateObject::Method {
  std::string_view name;
  std::string_view requestId;
  std::span<const ParameterRule> parameters;
  CallReply (CertificateObject::*carryOut)(const MethodCall& call);
};

const CertificateObject::Method* CertificateObject::findMethod(std::string_view name) {
  using Self = CertificateObject;
  static constexpr std::array<Method, 10> methods = {{
      {"readCertDefaults", "100", {}, &Self::readDefaults},
      {"generateNewCert", "200", RequestTexts, &Self::generate},
      {"exportPubKey", "210", FriendlyName, &Self::exportRequest},
      {"uploadNewCAFile", "400", AuthorityFile, &Self::uploadAuthority},
      {"deleteIndividualCA", "410", AuthorityName, &Self::deleteAuthority},
      {"queryCAList", "420", {}, &Self::listAuthorities},
      {"queryCAInfo", "430", AuthorityName, &Self::describeAuthority},
      {"uploadSignedCertFile", "500", SignedFile, &Self::uploadSigned},
      {"deleteIndividualCert", "510", FriendlyName, &Self::deleteDevice},
      {"queryCertList", "520", {}, &Self::listDevices},
  }};
  const auto* const found = std::ranges::find(methods, name, &Method::name);
  return found == methods.end() ? nullptr : found;
}

CertificateObject::CertificateObject(CertificateRules rules) : m_Rules(std::move(rules)) {}

bool CertificateObject::hasMethod(std::string_view name) {
  return findMethod(name) != nullptr;
}

CallReply CertificateObject::answer(const ParsedCall& call) {
  const CleanErrorQueue cleanErrorQueue;
  if (const auto* const error = std::get_if<CallError>(&call)) {
    return CallReply(*error);
  }
  try {
    return carryOut(std::get<MethodCall>(call));
  } catch (const CallError& error) {
    return CallReply(error);
  }
}

CallReply CertificateObject::carryOut(const MethodCall& call) {
  if (call.object != ObjectName) {
    throw CallError(CallStatus::UnknownObject, catalogue::quoted(call.object));
  }
  const Method* const method = findMethod(call.method);
  if (method == nullptr) {
    throw CallError(CallStatus::UnknownMethod, catalogue::quoted(call.method));
  }
  if (call.requestId != method->requestId) {
    throw CallError(CallStatus::WrongId, catalogue::quoted(call.requestId));
  }
  checkParameters(call, method->parameters);
  return (this->*method->carryOut)(call);
}

std::vector<std::string> CertificateObject::describe() const {
  const CleanErrorQueue cleanErrorQueue;
  std::vector<std::string> lines;
  for (const CaCertificate& authority : m_Store.authorities()) {
    lines.push_back("CA certificate = " + catalogue::quoted(authority.name) + ", file " +
                    catalogue::quoted(authority.fileName));
  }
  const bool onlyFactoryMade = lines.empty() && m_Store.devices().empty();
  if (!onlyFactoryMade && isFactoryMade(FactoryName)) {
    lines.push_back("device certificate = " + catalogue::quoted(FactoryName) + ", factory-made");
  }
  std::vector<std::string> requests;
  for (const DeviceCertificate& device : m_Store.devices()) {
    if (device.isPending()) {
      requests.push_back("certificate request = " + catalogue::quoted(device.name) + ", subject " +
                         catalogue::quoted(requestSubject(device.requestPem)));
    } else if (const auto certificate = X509Certificate::fromPem(device.certificatePem)) {
      lines.push_back("device certificate = " + catalogue::quoted(device.name) + ", subject " +
                      catalogue::quoted(certificate->subject()) + ", issuer " +
                      catalogue::quoted(certificate->issuer()));
    }
  }
  std::ranges::move(requests, std::back_inserter(lines));
  return lines;
}

}  // namespace emulator
