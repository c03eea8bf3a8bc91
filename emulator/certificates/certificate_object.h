#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "emulator/certificates/call_reply.h"
#include "emulator/certificates/certificate_store.h"
#include "emulator/certificates/method_call.h"
#include "emulator/certificates/subject.h"

namespace emulator {

/// What a printer proposes for a certificate request unless it is told otherwise.
Subject usualSubject();

/// How the printer deals with certificates.
struct CertificateRules {
  Subject defaults = usualSubject();
  /// Whether it has a certificate from the factory.
  bool factoryCertificate = true;
  /// The bits of the RSA keys that it makes. 0 stands for keys on the curve P-256, which take a
  /// thousandth of a second instead of up to one: whoever tests a host does not care which.
  std::size_t rsaBits = 0;
};

/// The object `applications.certMgr` of the printer's object store, by whose methods a host deals
/// with the printer's certificates.
class CertificateObject {
 public:
  explicit CertificateObject(CertificateRules rules = {});

  /// Whether the object has a method of that name.
  static bool hasMethod(std::string_view name);

  /// Carries out a call and replies to it. A call that cannot be read, or names another object, has
  /// an error for its reply.
  CallReply answer(const ParsedCall& call);

  const CertificateStore& store() const { return m_Store; }

  /// Takes over the certificates of an earlier run.
  void restore(CertificateStore store) { m_Store = std::move(store); }

  /// One line in words for each certificate and request. None when there is nothing but the
  /// certificate from the factory.
  std::vector<std::string> describe() const;

 private:
  struct Method;

  static constexpr std::string_view FactoryName = "Factory";

  static const Method* findMethod(std::string_view name);
  CallReply carryOut(const MethodCall& call);

  CallReply readDefaults(const MethodCall& call);
  CallReply generate(const MethodCall& call);
  CallReply exportRequest(const MethodCall& call);
  CallReply uploadAuthority(const MethodCall& call);
  CallReply deleteAuthority(const MethodCall& call);
  CallReply listAuthorities(const MethodCall& call);
  CallReply describeAuthority(const MethodCall& call);
  CallReply uploadSigned(const MethodCall& call);
  CallReply deleteDevice(const MethodCall& call);
  CallReply listDevices(const MethodCall& call);

  bool isFactoryMade(std::string_view name) const;
  /// The key's entry of that name; throws `CallError` when there is none.
  const DeviceCertificate& deviceNamed(const std::string& name) const;

  CertificateRules m_Rules;
  CertificateStore m_Store;
};

}  // namespace emulator
