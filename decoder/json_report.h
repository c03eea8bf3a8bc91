#pragma once

#include <memory>
#include <string>

#include "decoder/packet.h"

namespace decoder {

/// Collects what is found in the input in one JSON document (RFC 8259).
class JsonReport : public Report {
 public:
  /// Secrets are masked unless `showSecrets`.
  explicit JsonReport(bool showSecrets);
  ~JsonReport() override;
  JsonReport(const JsonReport&) = delete;
  JsonReport& operator=(const JsonReport&) = delete;

  void beginInput(const std::string& name) override;
  void packet(const Packet& packet) override;
  void problem(const Problem& problem) override;
  void unreadable(const std::string& reason) override;

  /// The document with a line end behind it; bytes that are no UTF-8 are replaced by U+FFFD.
  std::string text() const;

 private:
  struct Document;

  std::unique_ptr<Document> m_Document;
  bool m_ShowSecrets;
};

}  // namespace decoder
