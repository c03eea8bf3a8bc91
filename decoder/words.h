#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "decoder/packet.h"

namespace decoder {

/// The kind of a content in words, such as "query".
std::string_view kindText(Content::Kind kind);

/// Who says it, "request" or "reply": as the input tells, or else what the contents are; "packet"
/// where neither does.
std::string_view roleText(const Packet& packet);

/// Puts what is found in the input into lines of text that a terminal can show: whatever does not
/// print is escaped.
class WordsReport : public Report {
 public:
  using Sink = std::function<void(std::string_view text)>;

  /// Hands each text, lines with their ends, to `sink`. Secrets are masked unless `showSecrets`.
  /// With `namesInputs` a line with its name opens each input.
  WordsReport(Sink sink, bool showSecrets, bool namesInputs = false);

  void beginInput(const std::string& name) override;
  void packet(const Packet& packet) override;
  void problem(const Problem& problem) override;
  /// Writes nothing: whoever finds an input unreadable says so on standard error.
  void unreadable(const std::string& reason) override;

 private:
  Sink m_Sink;
  bool m_ShowSecrets;
  bool m_NamesInputs;
};

}  // namespace decoder
