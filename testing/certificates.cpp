#include "testing/certificates.h"

#include <memory>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include "testing/openssl_result.h"

namespace support {

namespace {

struct FreeObject {
  void operator()(X509* certificate) const { X509_free(certificate); }
  void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
  void operator()(BIO* bio) const { BIO_free(bio); }
};

using Certificate = std::unique_ptr<X509, FreeObject>;

/// Stores the text without a check, because tests need wrong times too.
void setUncheckedTime(ASN1_TIME* time, const std::string& text) {
  constexpr std::size_t utcTimeSize = 13;
  time->type = text.size() == utcTimeSize ? V_ASN1_UTCTIME : V_ASN1_GENERALIZEDTIME;
  require(ASN1_STRING_set(time, text.data(), static_cast<int>(text.size())) == 1);
}

void addExtension(X509* certificate, int id, const std::string& value) {
  X509_EXTENSION* const extension = X509V3_EXT_conf_nid(nullptr, nullptr, id, value.c_str());
  require(extension != nullptr);
  const bool added = X509_add_ext(certificate, extension, -1) == 1;
  X509_EXTENSION_free(extension);
  require(added);
}

Certificate makeCertificate(const CertificateText& text) {
  static const std::unique_ptr<EVP_PKEY, FreeObject> key(EVP_EC_gen("P-256"));
  Certificate certificate(X509_new());
  require(key && certificate);
  X509_set_version(certificate.get(), X509_VERSION_3);
  ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
  X509_NAME* const name = X509_get_subject_name(certificate.get());
  for (const auto& [field, value] : text.subject) {
    // OpenSSL's size limits do not apply to a UTF8String.
    require(X509_NAME_add_entry_by_NID(name, OBJ_txt2nid(field.c_str()), V_ASN1_UTF8STRING,
                                       reinterpret_cast<const unsigned char*>(value.data()),
                                       static_cast<int>(value.size()), -1, 0) == 1);
  }
  X509_set_issuer_name(certificate.get(), name);
  setUncheckedTime(X509_getm_notBefore(certificate.get()), text.from);
  setUncheckedTime(X509_getm_notAfter(certificate.get()), text.to);
  X509_set_pubkey(certificate.get(), key.get());
  if (text.isAuthority) {
    addExtension(certificate.get(), NID_basic_constraints,
                 *text.isAuthority ? "critical,CA:TRUE" : "CA:FALSE");
  }
  if (text.commentSize > 0) {
    addExtension(certificate.get(), NID_netscape_comment, std::string(text.commentSize, 'x'));
  }
  require(X509_sign(certificate.get(), key.get(), EVP_sha256()) > 0);
  return certificate;
}

template <typename Write>
std::string written(const CertificateText& text, Write write) {
  const std::unique_ptr<BIO, FreeObject> memory(BIO_new(BIO_s_mem()));
  require(write(memory.get(), makeCertificate(text).get()) == 1);
  char* data = nullptr;
  const long size = BIO_get_mem_data(memory.get(), &data);
  return {data, static_cast<std::size_t>(size)};
}

}  // namespace

std::string certificatePem(const CertificateText& text) {
  return written(text, PEM_write_bio_X509);
}

std::string certificateDer(const CertificateText& text) {
  return written(text, i2d_X509_bio);
}

}  // namespace support
