#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "decoder/packet.h"

namespace decoder {

/// A report as one JSON document (RFC 8259) with one line per packet. U+FFFD replaces bytes that
/// are not UTF-8. The manual page zvknpa(1) describes the members.
///
///     JsonReport report(print, false);
///     ...  // decode the inputs
///     report.finish();
class JsonReport : public Report {
 public:
  using Sink = std::function<void(std::string_view text)>;

  /// Passes the document to `sink` in pieces. Masks secrets unless `showSecrets` is set.
  JsonReport(Sink sink, bool showSecrets);

  void beginInput(const std::string& name) override;
  void packet(const Packet& packet) override;
  void problem(const Problem& problem) override;
  void unreadable(const std::string& reason) override;

  /// Writes the end of the document. Nothing may be reported afterwards.
  void finish();

 private:
  void endInput();

  Sink m_Sink;
  bool m_ShowSecrets;
  std::size_t m_Inputs = 0;
  std::size_t m_Packets = 0;            ///< of the current input
  std::vector<std::string> m_Problems;  ///< of the current input, as JSON
  std::string m_Unreadable;             ///< why the current input cannot be read; empty if it can
};

}  // namespace decoder
