#pragma once

#include <cstddef>
#include <string>

#include "emulator/certificates/subject.h"

namespace emulator {

/// A private key (PKCS#8) and a certificate request (PKCS#10) for it, both as PEM text.
struct KeyRequest {
  std::string key;
  std::string request;
};

/// Generates an RSA key of `rsaBits` bits, or a key on the curve P-256 if `rsaBits` is 0, and signs
/// a request with the subject. Throws `CallError` (`InvalidSubject`) if a certificate cannot have a
/// text of the subject: a text that is too long or not UTF-8, a country that does not have two
/// characters, or an invalid DNS name.
KeyRequest makeKeyRequest(const Subject& subject, std::size_t rsaBits);

/// Returns true if the texts are a private key and a request that contains the public key for it.
/// Does not verify the signature of the request.
bool isKeyRequest(const KeyRequest& pair);

/// Returns the subject of a request in one line, or an empty text if `request` is not a request.
std::string requestSubject(const std::string& request);

}  // namespace emulator
