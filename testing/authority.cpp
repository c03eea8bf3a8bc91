#include "testing/authority.h"

#include <openssl/bio.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include "testing/openssl_result.h"

namespace support {

namespace {

using Bio = std::unique_ptr<BIO, decltype([](BIO* bio) { ::BIO_free_all(bio); })>;
using Request = std::unique_ptr<X509_REQ, decltype([](X509_REQ* r) { ::X509_REQ_free(r); })>;
using Line = std::unique_ptr<char, decltype([](char* text) { OPENSSL_free(text); })>;

Bio readerOf(const std::string& text) {
  return Bio(::BIO_new_mem_buf(text.data(), static_cast<int>(text.size())));
}

Request parseRequest(const std::string& pem) {
  Request request(::PEM_read_bio_X509_REQ(readerOf(pem).get(), nullptr, nullptr, nullptr));
  require(request != nullptr);
  return request;
}

void setTime(ASN1_TIME* time, const std::string& text) {
  require(::ASN1_TIME_set_string_X509(time, text.c_str()) == 1);
}

std::string dnsNameOf(X509_REQ* request) {
  STACK_OF(X509_EXTENSION)* const extensions = ::X509_REQ_get_extensions(request);
  auto* const names = static_cast<GENERAL_NAMES*>(
      ::X509V3_get_d2i(extensions, NID_subject_alt_name, nullptr, nullptr));
  sk_X509_EXTENSION_pop_free(extensions, ::X509_EXTENSION_free);
  std::string text;
  if (names != nullptr && sk_GENERAL_NAME_num(names) == 1) {
    int type = 0;
    const auto* const value = static_cast<const ASN1_STRING*>(
        ::GENERAL_NAME_get0_value(sk_GENERAL_NAME_value(names, 0), &type));
    require(type == GEN_DNS);
    const unsigned char* const data = ::ASN1_STRING_get0_data(value);
    text.assign(data, data + ::ASN1_STRING_length(value));
  }
  ::GENERAL_NAMES_free(names);
  return text;
}

}  // namespace

Authority::Authority(const Name& name, const std::string& notBefore, const std::string& notAfter)
    : m_Name(::X509_NAME_new()),
      m_NotBefore(notBefore),
      m_NotAfter(notAfter),
      m_Key(::EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256")) {
  require(m_Key != nullptr);
  for (const auto& [field, text] : name) {
    const auto* const bytes = reinterpret_cast<const unsigned char*>(text.data());
    require(::X509_NAME_add_entry_by_txt(m_Name.get(), field.c_str(), MBSTRING_UTF8, bytes,
                                         static_cast<int>(text.size()), -1, 0) == 1);
  }
  m_Pem = issue(m_Name.get(), m_Key.get());
}

std::string Authority::sign(const std::string& requestPem) const {
  const Request request = parseRequest(requestPem);
  return issue(::X509_REQ_get_subject_name(request.get()), ::X509_REQ_get0_pubkey(request.get()));
}

std::string Authority::issue(const X509_NAME* subject, EVP_PKEY* key) const {
  const Certificate certificate(::X509_new());
  ::ASN1_INTEGER_set(::X509_get_serialNumber(certificate.get()), 1);
  setTime(::X509_getm_notBefore(certificate.get()), m_NotBefore);
  setTime(::X509_getm_notAfter(certificate.get()), m_NotAfter);
  require(::X509_set_subject_name(certificate.get(), subject) == 1);
  require(::X509_set_issuer_name(certificate.get(), m_Name.get()) == 1);
  require(::X509_set_pubkey(certificate.get(), key) == 1);
  require(::X509_sign(certificate.get(), m_Key.get(), ::EVP_sha256()) > 0);
  const Bio memory(::BIO_new(::BIO_s_mem()));
  require(::PEM_write_bio_X509(memory.get(), certificate.get()) == 1);
  std::string text(::BIO_ctrl_pending(memory.get()), '\0');
  require(::BIO_read(memory.get(), text.data(), static_cast<int>(text.size())) > 0);
  return text;
}

RequestContent readRequest(const std::string& pem) {
  const Request request = parseRequest(pem);
  EVP_PKEY* const key = ::X509_REQ_get0_pubkey(request.get());
  const Line subject(::X509_NAME_oneline(::X509_REQ_get_subject_name(request.get()), nullptr, 0));
  return {subject.get(), dnsNameOf(request.get()), ::EVP_PKEY_get0_type_name(key),
          ::EVP_PKEY_get_bits(key), ::X509_REQ_verify(request.get(), key) == 1};
}

}  // namespace support
