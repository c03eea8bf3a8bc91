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

/// Makes an RSA key of so many bits, or one on the curve P-256 for 0 bits, and signs a request with
/// the subject's texts in it. Throws `CallError` (`InvalidSubject`) for texts that a certificate
/// cannot have: too long, a country that is not two letters, no UTF-8, a DNS name that is none.
KeyRequest makeKeyRequest(const Subject& subject, std::size_t rsaBits);

/// Whether the texts are a key and a request for it, as `makeKeyRequest` made them.
bool isKeyRequest(const KeyRequest& pair);

/// The subject of a request in one line; empty when the text is no request.
std::string requestSubject(const std::string& request);

}  // namespace emulator
