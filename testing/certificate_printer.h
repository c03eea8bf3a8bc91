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

/// The certificate object, called by texts and answering in texts. After each call libcrypto's
/// error queue is to be empty.
class CertificatePrinter {
 public:
  explicit CertificatePrinter(emulator::CertificateRules rules = {}) : object(std::move(rules)) {}

  ReplyText call(const std::string& xml) {
    lastXml = object.answer(emulator::parseMethodCall(xml)).xml();
    EXPECT_EQ(::ERR_peek_error(), 0U);
    return ReplyText(lastXml);
  }

  int status(const std::string& xml) { return call(xml).status(); }

  std::vector<std::string> authorities() { return call(callText("queryCAList", 420)).list(); }
  std::vector<std::string> certificates() { return call(callText("queryCertList", 520)).list(); }

  /// The request of that name; empty when the printer has none.
  std::string request(const std::string& name) {
    const std::string text = call(exportText(name)).binary("cert_dot_csr_file");
    return decoded(text);
  }

  emulator::CertificateObject object;
  std::string lastXml;
};

}  // namespace support
