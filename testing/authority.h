#pragma once

#include <memory>
#include <openssl/evp.h>
#include <openssl/x509.h>
#include <string>
#include <utility>
#include <vector>

namespace support {

/// A certificate authority of the tests' own: its certificate, and what it signs.
class Authority {
 public:
  /// Short names and texts, such as {"CN", "RootCA"}.
  using Name = std::vector<std::pair<std::string, std::string>>;

  /// One that has nothing but a common name.
  explicit Authority(const std::string& commonName) : Authority(Name{{"CN", commonName}}) {}

  /// Times as ASN.1 has them, such as 20200105000000Z.
  explicit Authority(const Name& name, const std::string& notBefore = "20200105000000Z",
                     const std::string& notAfter = "20301225235959Z");

  std::string pem() const { return m_Pem; }

  /// A certificate for the key and the subject of a request; both are PEM texts.
  std::string sign(const std::string& requestPem) const;

 private:
  template <typename Object, auto Free>
  struct Freed {
    void operator()(Object* object) const { Free(object); }
  };
  using Key = std::unique_ptr<EVP_PKEY, Freed<EVP_PKEY, ::EVP_PKEY_free>>;
  using Certificate = std::unique_ptr<X509, Freed<X509, ::X509_free>>;

  /// The PEM text of a certificate that this authority issues.
  std::string issue(const X509_NAME* subject, EVP_PKEY* key) const;

  std::unique_ptr<X509_NAME, Freed<X509_NAME, ::X509_NAME_free>> m_Name;
  std::string m_NotBefore;
  std::string m_NotAfter;
  Key m_Key;
  std::string m_Pem;
};

/// What a certificate request in a PEM text says.
struct RequestContent {
  std::string subject;  ///< in one line
  std::string dnsName;  ///< the alternative name; empty for none
  std::string keyType;  ///< EC, RSA
  int keyBits = 0;
  bool isSignedByItsKey = false;
};

RequestContent readRequest(const std::string& pem);

}  // namespace support
