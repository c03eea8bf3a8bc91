#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "decoder/packet.h"

namespace decoder {

/// Puts what is found in the input into one JSON document (RFC 8259), a line for each packet. Bytes
/// that are no UTF-8 are replaced by U+FFFD.
class JsonReport : public Report {
 public:
  using Sink = std::function<void(std::string_view text)>;

  /// Hands the document to `sink` piece by piece. Secrets are masked unless `showSecrets`.
  JsonReport(Sink sink, bool showSecrets);

  void beginInput(const std::string& name) override;
  void packet(const Packet& packet) override;
  void problem(const Problem& problem) override;
  void unreadable(const std::string& reason) override;

  /// Completes the document, which is none before. Nothing may be reported behind it.
  void finish();

 private:
  void endInput();

  Sink m_Sink;
  bool m_ShowSecrets;
  std::size_t m_Inputs = 0;
  std::size_t m_Packets = 0;            ///< of the input
  std::vector<std::string> m_Problems;  ///< of the input, as JSON
  std::string m_Unreadable;             ///< why the input is
};

}  // namespace decoder
