// Makes keys and certificate requests with libcrypto.

#include "emulator/certificates/key_request.h"

#include <algorithm>
#include <openssl/pem.h>

#include "emulator/certificates/call_status.h"
#include "emulator/certificates/libcrypto.h"
#include "emulator/certificates/x509_certificate.h"

namespace emulator {

namespace {

/// The most characters of a DNS name in text form. RFC 1035 allows 255 bytes in the binary form.
constexpr std::size_t LongestDnsName = 253;

/// Generates an RSA key of `rsaBits` bits, or a key on the curve P-256 if `rsaBits` is 0.
KeyPtr makeKey(std::size_t rsaBits) {
  KeyPtr key(rsaBits == 0 ? ::EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256")
                          : ::EVP_PKEY_Q_keygen(nullptr, nullptr, "RSA", rsaBits));
  demand(key != nullptr);
  return key;
}

/// Adds a field to the subject. Throws `CallError` if a certificate cannot have this text.
void addText(X509_NAME* name, const SubjectField& field, const std::string& text) {
  const int id = ::OBJ_sn2nid(std::string(field.name).c_str());
  const auto* const bytes = reinterpret_cast<const unsigned char*>(text.data());
  if (::X509_NAME_add_entry_by_NID(name, id, MBSTRING_UTF8, bytes, static_cast<int>(text.size()),
                                   -1, 0) != 1) {
    throw CallError(CallStatus::InvalidSubject,
                    std::string(field.parameter).append(", ").append(lastReason()));
  }
}

/// Adds a DNS name as the subject alternative name. Throws `CallError` if the name has a blank,
/// a character outside printable ASCII, or too many characters.
void addDnsName(X509_REQ* request, const std::string& dnsName) {
  const bool isPlain = std::ranges::all_of(dnsName, [](char c) { return c > ' ' && c <= '~'; });
  if (!isPlain || dnsName.size() > LongestDnsName) {
    throw CallError(CallStatus::InvalidSubject, "x509_AN");
  }
  // Builds the extension by hand, because libcrypto's parser of extensions treats commas and colons
  // as its syntax.
  GeneralNamePtr name(::GENERAL_NAME_new());
  ASN1_IA5STRING* const text = ::ASN1_IA5STRING_new();
  demand(name != nullptr && text != nullptr);
  ::GENERAL_NAME_set0_value(name.get(), GEN_DNS, text);
  demand(::ASN1_STRING_set(text, dnsName.data(), static_cast<int>(dnsName.size())) == 1);
  const GeneralNamesPtr names(::GENERAL_NAMES_new());
  demand(names != nullptr && sk_GENERAL_NAME_push(names.get(), name.get()) > 0);
  // `names` owns the object of `name` now.
  static_cast<void>(name.release());
  STACK_OF(X509_EXTENSION)* extensions = nullptr;
  const bool added = ::X509V3_add1_i2d(&extensions, NID_subject_alt_name, names.get(), 0,
                                       X509V3_ADD_DEFAULT) == 1 &&
                     ::X509_REQ_add_extensions(request, extensions) == 1;
  sk_X509_EXTENSION_pop_free(extensions, ::X509_EXTENSION_free);
  demand(added);
}

RequestPtr readRequest(const std::string& pem) {
  const BioPtr reader = readerOf(pem);
  return RequestPtr(::PEM_read_bio_X509_REQ(reader.get(), nullptr, noPassword, nullptr));
}

}  // namespace

KeyRequest makeKeyRequest(const Subject& subject, std::size_t rsaBits) {
  const RequestPtr request(::X509_REQ_new());
  demand(request != nullptr);
  X509_NAME* const name = ::X509_REQ_get_subject_name(request.get());
  for (const SubjectField& field : SubjectFields) {
    const std::string& text = subject.*field.text;
    if (text.empty()) {
      continue;
    }
    if (field.text == &Subject::altName) {
      addDnsName(request.get(), text);
    } else {
      addText(name, field, text);
    }
  }
  const KeyPtr key = makeKey(rsaBits);
  demand(::X509_REQ_set_pubkey(request.get(), key.get()) == 1);
  demand(::X509_REQ_sign(request.get(), key.get(), ::EVP_sha256()) > 0);
  return {textBy([&](BIO* out) {
            return ::PEM_write_bio_PrivateKey(out, key.get(), nullptr, nullptr, 0, nullptr,
                                              nullptr);
          }),
          textBy([&](BIO* out) { return ::PEM_write_bio_X509_REQ(out, request.get()); })};
}

bool isKeyRequest(const KeyRequest& pair) {
  const BioPtr reader = readerOf(pair.key);
  const KeyPtr key(::PEM_read_bio_PrivateKey(reader.get(), nullptr, noPassword, nullptr));
  const RequestPtr request = readRequest(pair.request);
  return key && request && ::X509_REQ_check_private_key(request.get(), key.get()) == 1;
}

std::string requestSubject(const std::string& request) {
  const RequestPtr read = readRequest(request);
  return read ? oneLine(::X509_REQ_get_subject_name(read.get())) : std::string();
}

}  // namespace emulator
