#pragma once

#include <memory>
#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>
#include <string>
#include <string_view>

/// Ownership, errors and texts of libcrypto (OpenSSL).
namespace emulator {

/// Frees an object by the function that libcrypto has for it.
template <auto Free>
struct FreeBy {
  template <typename Object>
  void operator()(Object* object) const {
    Free(object);
  }
};

using BioPtr = std::unique_ptr<BIO, FreeBy<::BIO_free_all>>;
using ExtensionPtr = std::unique_ptr<X509_EXTENSION, FreeBy<::X509_EXTENSION_free>>;
using GeneralNamePtr = std::unique_ptr<GENERAL_NAME, FreeBy<::GENERAL_NAME_free>>;
using GeneralNamesPtr = std::unique_ptr<GENERAL_NAMES, FreeBy<::GENERAL_NAMES_free>>;
using KeyPtr = std::unique_ptr<EVP_PKEY, FreeBy<::EVP_PKEY_free>>;
using RequestPtr = std::unique_ptr<X509_REQ, FreeBy<::X509_REQ_free>>;
using CertificatePtr = std::unique_ptr<X509, FreeBy<::X509_free>>;

/// Leaves libcrypto's error queue empty when it goes.
class CleanErrorQueue {
 public:
  CleanErrorQueue() = default;
  ~CleanErrorQueue() { ::ERR_clear_error(); }
  CleanErrorQueue(const CleanErrorQueue&) = delete;
  CleanErrorQueue& operator=(const CleanErrorQueue&) = delete;
};

/// Why the last call of libcrypto failed; empty when it has not said.
std::string lastReason();

/// Throws `std::runtime_error` with the reason unless `result`, of a call of libcrypto that fails
/// only for lack of memory or the like.
void demand(bool result);

/// A stream over the text, which must outlive it.
BioPtr readerOf(std::string_view text);

/// The text that `write` writes to a stream.
template <typename Write>
std::string textBy(Write write);

/// The text that a stream in memory holds.
std::string textIn(BIO* memory);

template <typename Write>
std::string textBy(Write write) {
  const BioPtr memory(::BIO_new(::BIO_s_mem()));
  demand(memory != nullptr);
  demand(write(memory.get()) == 1);
  return textIn(memory.get());
}

/// For libcrypto's readers of PEM: there is no password, and nobody is asked for one. (Without a
/// callback they would ask at the terminal.)
int noPassword(char* buffer, int size, int forWriting, void* data);

}  // namespace emulator
