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

/// Returns the subject that a printer proposes for a certificate request by default.
Subject usualSubject();

/// How the printer handles certificates.
struct CertificateRules {
  /// The subject that `readCertDefaults` returns.
  Subject defaults = usualSubject();
  /// True if the printer has a certificate from the factory.
  bool factoryCertificate = true;
  /// The bits of the RSA keys that the printer generates. 0 selects keys on the curve P-256.
  /// Generating a P-256 key takes about 1 ms, and generating an RSA key takes up to 1 s. The kind
  /// of key rarely matters in a test of a host.
  std::size_t rsaBits = 0;
};

/// The object `applications.certMgr` of the printer's object store. A host calls its methods to
/// manage the printer's certificates.
///
///     CertificateObject object;
///     const CallReply reply = object.answer(parseMethodCall(xml));
class CertificateObject {
 public:
  explicit CertificateObject(CertificateRules rules = {});

  /// Returns true if the object has a method called `name`.
  static bool hasMethod(std::string_view name);

  /// Runs a call and returns the reply. If the call fails, could not be parsed or names another
  /// object, the reply has the status and the message of the error.
  CallReply answer(const ParsedCall& call);

  const CertificateStore& store() const { return m_Store; }

  /// Replaces the certificates with those of an earlier run.
  void restore(CertificateStore store) { m_Store = std::move(store); }

  /// Returns one line of text for each certificate and request. Returns no line if there is only
  /// the certificate from the factory.
  std::vector<std::string> describe() const;

 private:
  struct Method;

  static constexpr std::string_view FactoryName = "Factory";

  static const Method* findMethod(std::string_view name);
  /// Checks a call and runs its method. Throws `CallError` if the call fails.
  CallReply carryOut(const MethodCall& call);

  // The methods (certificate_methods.cpp). The parameters have been checked.

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

  /// Returns true if `name` stands for the certificate from the factory.
  bool isFactoryMade(std::string_view name) const;
  /// Returns the device certificate called `name`. Throws `CallError` if there is none.
  const DeviceCertificate& deviceNamed(const std::string& name) const;

  CertificateRules m_Rules;
  CertificateStore m_Store;
};

}  // namespace emulator
