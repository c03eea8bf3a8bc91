// The methods of CertificateObject. Each reads its parameters from the call and returns the reply.

#include <algorithm>
#include <openssl/asn1.h>
#include <optional>
#include <utility>

#include "emulator/certificates/binary_text.h"
#include "emulator/certificates/certificate_object.h"
#include "emulator/certificates/key_request.h"
#include "emulator/certificates/x509_certificate.h"

namespace emulator {

namespace {

/// The folder that the printer names in its description of a CA certificate.
constexpr std::string_view CaFolder = "/certs/";

/// Returns the value of a parameter. The call must have it.
const std::string& valueOf(const MethodCall& call, std::string_view name) {
  return std::ranges::find(call.parameters, name, &MethodCall::Parameter::name)->value;
}

/// Returns true if the text is valid UTF-8 without ASCII control characters.
bool isPrintableUtf8(std::string_view text) {
  constexpr unsigned long firstPrintable = 0x20;
  constexpr unsigned long delete_ = 0x7F;
  while (!text.empty()) {
    unsigned long character = 0;
    const int size = ::UTF8_getc(reinterpret_cast<const unsigned char*>(text.data()),
                                 static_cast<int>(text.size()), &character);
    if (size <= 0 || character < firstPrintable || character == delete_) {
      return false;
    }
    text.remove_prefix(static_cast<std::size_t>(size));
  }
  return true;
}

/// Returns `name`. Throws `CallError` if the name is empty or not printable UTF-8. Hosts take an
/// empty name for the end of a list of names.
const std::string& checkedName(const std::string& name) {
  if (name.empty() || !isPrintableUtf8(name)) {
    throw CallError(CallStatus::InvalidName);
  }
  return name;
}

/// Returns the certificate in the uploaded file of a call. `sizeName` is the name of the parameter
/// that holds the file's size. `fileName` is the name of the parameter that holds the file's
/// content in Base64. Throws `CallError` if the content is not Base64, if the size is wrong, or if
/// the file is not a certificate.
X509Certificate uploadedCertificate(const MethodCall& call, std::string_view sizeName,
                                    std::string_view fileName) {
  const std::optional<std::string> content = fromBase64(valueOf(call, fileName));
  if (!content) {
    throw CallError(CallStatus::NotBase64);
  }
  if (valueOf(call, sizeName) != std::to_string(content->size())) {
    throw CallError(CallStatus::WrongSize, "it has " + std::to_string(content->size()) + " bytes");
  }
  std::optional<X509Certificate> certificate = X509Certificate::fromPem(*content);
  if (!certificate) {
    throw CallError(CallStatus::NoCertificate);
  }
  return std::move(*certificate);
}

}  // namespace

bool CertificateObject::isFactoryMade(std::string_view name) const {
  // If the printer has no factory certificate, a host can give the name `FactoryName` to its own
  // certificate. A later run with a factory certificate keeps the certificate of the host.
  return m_Rules.factoryCertificate && name == FactoryName && m_Store.findDevice(name) == nullptr;
}

const DeviceCertificate& CertificateObject::deviceNamed(const std::string& name) const {
  const DeviceCertificate* const device = m_Store.findDevice(name);
  if (device == nullptr) {
    throw CallError(CallStatus::UnknownName);
  }
  return *device;
}

CallReply CertificateObject::readDefaults(const MethodCall& /*call*/) {
  CallReply reply;
  for (const SubjectField& field : SubjectFields) {
    reply.addText(field.parameter, m_Rules.defaults.*field.text);
  }
  return reply;
}

CallReply CertificateObject::generate(const MethodCall& call) {
  const std::string& name = checkedName(valueOf(call, "cert_friendly_name"));
  if (isFactoryMade(name)) {
    throw CallError(CallStatus::FactoryMade);
  }
  if (m_Store.findDevice(name) != nullptr) {
    throw CallError(CallStatus::NameExists);
  }
  Subject subject;
  for (const SubjectField& field : SubjectFields) {
    subject.*field.text = valueOf(call, field.parameter);
  }
  KeyRequest made = makeKeyRequest(subject, m_Rules.rsaBits);
  m_Store.add(DeviceCertificate{0, name, std::move(made.key), std::move(made.request), {}});
  return {};
}

CallReply CertificateObject::exportRequest(const MethodCall& call) {
  const std::string& name = valueOf(call, "cert_friendly_name");
  if (isFactoryMade(name)) {
    throw CallError(CallStatus::NoKey);
  }
  CallReply reply;
  reply.addBinary("cert_dot_csr_file", toBase64(deviceNamed(name).requestPem));
  return reply;
}

CallReply CertificateObject::uploadAuthority(const MethodCall& call) {
  const std::string& fileName = checkedName(valueOf(call, "ca_file_name"));
  const X509Certificate certificate =
      uploadedCertificate(call, "ca_dot_pem_size", "ca_dot_pem_file");
  const std::string name = certificate.caName().value_or(fileName);
  if (m_Store.findAuthority(name) != nullptr) {
    throw CallError(CallStatus::NameExists);
  }
  m_Store.add(CaCertificate{0, name, fileName, certificate.pem()});
  return {};
}

CallReply CertificateObject::deleteAuthority(const MethodCall& call) {
  if (!m_Store.removeAuthority(valueOf(call, "ca_common_name"))) {
    throw CallError(CallStatus::UnknownName);
  }
  return {};
}

CallReply CertificateObject::listAuthorities(const MethodCall& /*call*/) {
  std::vector<std::string> names;
  for (const CaCertificate& authority : m_Store.authorities()) {
    names.push_back(authority.name);
  }
  CallReply reply;
  reply.addList("cert_list", std::move(names));
  return reply;
}

CallReply CertificateObject::describeAuthority(const MethodCall& call) {
  const CaCertificate* const authority = m_Store.findAuthority(valueOf(call, "ca_common_name"));
  if (authority == nullptr) {
    throw CallError(CallStatus::UnknownName);
  }
  CallReply reply;
  reply.addText("ca_file_name", authority->fileName);
  reply.addText("ca_dot_pem_path", std::string(CaFolder).append(authority->fileName));
  reply.addText("ca_common_name", authority->name);
  return reply;
}

CallReply CertificateObject::uploadSigned(const MethodCall& call) {
  const std::string& name = valueOf(call, "cert_friendly_name");
  if (isFactoryMade(name)) {
    throw CallError(CallStatus::FactoryMade);
  }
  const DeviceCertificate& device = deviceNamed(name);
  const X509Certificate certificate =
      uploadedCertificate(call, "cert_syst_dot_pem_size", "cert_syst_dot_pem_file");
  if (!certificate.fitsKey(device.keyPem)) {
    throw CallError(CallStatus::KeyMismatch);
  }
  m_Store.complete(name, certificate.pem());
  return {};
}

CallReply CertificateObject::deleteDevice(const MethodCall& call) {
  const std::string& name = valueOf(call, "cert_friendly_name");
  if (isFactoryMade(name)) {
    throw CallError(CallStatus::FactoryMade);
  }
  if (!m_Store.removeDevice(name)) {
    throw CallError(CallStatus::UnknownName);
  }
  return {};
}

CallReply CertificateObject::listDevices(const MethodCall& /*call*/) {
  std::vector<std::string> names;
  if (isFactoryMade(FactoryName)) {
    names.emplace_back(FactoryName);
  }
  for (const DeviceCertificate& device : m_Store.devices()) {
    if (!device.isPending()) {
      names.push_back(device.name);
    }
  }
  CallReply reply;
  reply.addList("cert_list", std::move(names));
  return reply;
}

}  // namespace emulator
