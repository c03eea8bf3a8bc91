#pragma once

#include <gtest/gtest.h>
#include <openssl/err.h>
#include <string>
#include <utility>

#include "emulator/certificates/certificate_object.h"
#include "testing/authority.h"
#include "testing/object_store.h"
#include "testing/reply_text.h"

namespace support {

/// The emulated printer's certificate object, with calls and replies as XML texts. Expects that
/// libcrypto's error queue is empty after each call.
class CertificatePrinter {
 public:
  explicit CertificatePrinter(emulator::CertificateRules rules = {}) : object(std::move(rules)) {}

  /// Carries out a call and returns the reply. Stores the XML text of the reply in `lastXml`.
  ReplyText call(const std::string& xml) {
    lastXml = object.answer(emulator::parseMethodCall(xml)).xml();
    EXPECT_EQ(::ERR_peek_error(), 0U);
    return ReplyText(lastXml);
  }

  /// Carries out a call and returns the status of its reply.
  int status(const std::string& xml) { return call(xml).status(); }

  /// Return the names of the CA certificates, and the names of the printer's own certificates.
  std::vector<std::string> authorities() { return call(callText("queryCAList", 420)).list(); }
  std::vector<std::string> certificates() { return call(callText("queryCertList", 520)).list(); }

  /// Returns the certificate request (PEM) with the friendly name `name`, or an empty text if there
  /// is none.
  std::string request(const std::string& name) {
    const std::string text = call(exportText(name)).binary("cert_dot_csr_file");
    return decoded(text);
  }

  emulator::CertificateObject object;
  std::string lastXml;
};

}  // namespace support
