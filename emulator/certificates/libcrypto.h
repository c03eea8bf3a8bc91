#pragma once

#include <memory>
#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>
#include <string>
#include <string_view>

/// Helpers for libcrypto (OpenSSL): pointers that own objects, functions for the error queue, and
/// streams that read or write a text. The pointer types free their objects:
///
///     const KeyPtr key(::PEM_read_bio_PrivateKey(...));
namespace emulator {

/// Frees an object with the libcrypto function `Free`.
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

/// Clears libcrypto's error queue at the end of a scope, so that no later call reports old errors.
class CleanErrorQueue {
 public:
  CleanErrorQueue() = default;
  ~CleanErrorQueue() { ::ERR_clear_error(); }
  CleanErrorQueue(const CleanErrorQueue&) = delete;
  CleanErrorQueue& operator=(const CleanErrorQueue&) = delete;
};

/// Returns the reason of libcrypto's last error, or an empty text if there is none.
std::string lastReason();

/// Throws `std::runtime_error` with the reason of libcrypto's last error if `result` is false. Use
/// this function for calls that fail only if memory runs out or the library is broken.
void demand(bool result);

/// Returns a stream that reads `text`. The text must outlive the stream.
BioPtr readerOf(std::string_view text);

/// Returns the text that `write` writes to a stream. `write` must return 1 on success. If `write`
/// fails, throws `std::runtime_error`:
///
///     textBy([&](BIO* out) { return ::PEM_write_bio_X509(out, certificate); });
template <typename Write>
std::string textBy(Write write);

/// Returns the text in a memory stream and empties the stream.
std::string textIn(BIO* memory);

template <typename Write>
std::string textBy(Write write) {
  const BioPtr memory(::BIO_new(::BIO_s_mem()));
  demand(memory != nullptr);
  demand(write(memory.get()) == 1);
  return textIn(memory.get());
}

/// The password callback for libcrypto's PEM readers. It provides no password. Without a callback
/// the readers would ask for a password on the terminal.
int noPassword(char* buffer, int size, int forWriting, void* data);

}  // namespace emulator
