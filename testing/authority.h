#pragma once

#include <memory>
#include <openssl/evp.h>
#include <openssl/x509.h>
#include <string>
#include <utility>
#include <vector>

namespace support {

/// A certificate authority (CA) for tests. It has a self-signed certificate and signs requests.
///
///     const Authority ca("RootCA");
///     const std::string certificate = ca.sign(requestPem);
class Authority {
 public:
  /// The components of a subject in order: short name and text, such as {"CN", "RootCA"}.
  using Name = std::vector<std::pair<std::string, std::string>>;

  /// Creates an authority whose subject is only a common name.
  explicit Authority(const std::string& commonName) : Authority(Name{{"CN", commonName}}) {}

  /// Creates an authority. The authority's certificate, and the certificates that the authority
  /// signs, are valid from `notBefore` to `notAfter`. Both are ASN.1 texts, such as
  /// 20200105000000Z. Throws `std::runtime_error` if libcrypto rejects a value.
  explicit Authority(const Name& name, const std::string& notBefore = "20200105000000Z",
                     const std::string& notAfter = "20301225235959Z");

  /// Returns the authority's certificate as PEM.
  std::string pem() const { return m_Pem; }

  /// Returns a certificate (PEM) for the key and the subject of a request (PEM). Throws an
  /// exception if the request is invalid.
  std::string sign(const std::string& requestPem) const;

 private:
  template <typename Object, auto Free>
  struct Freed {
    void operator()(Object* object) const { Free(object); }
  };
  using Key = std::unique_ptr<EVP_PKEY, Freed<EVP_PKEY, ::EVP_PKEY_free>>;
  using Certificate = std::unique_ptr<X509, Freed<X509, ::X509_free>>;

  /// Returns a certificate (PEM) that this authority signs.
  std::string issue(const X509_NAME* subject, EVP_PKEY* key) const;

  std::unique_ptr<X509_NAME, Freed<X509_NAME, ::X509_NAME_free>> m_Name;
  std::string m_NotBefore;
  std::string m_NotAfter;
  Key m_Key;
  std::string m_Pem;
};

/// The content of a certificate request.
struct RequestContent {
  std::string subject;  ///< in one line, such as "/O=Example/CN=printer"
  std::string dnsName;  ///< the alternative name; empty if there is none or more than one
  std::string keyType;  ///< "EC" or "RSA"
  int keyBits = 0;
  bool isSignedByItsKey = false;
};

/// Returns the content of a request (PEM). Throws an exception if the request is invalid.
RequestContent readRequest(const std::string& pem);

}  // namespace support
