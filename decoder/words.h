#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "decoder/packet.h"

namespace decoder {

/// Returns the kind of a content as text, such as "query".
std::string_view kindText(Content::Kind kind);

/// Returns "request" or "reply", as the direction of the stream shows. If this direction is
/// unknown, the kinds of the contents decide. Returns "packet" if neither shows the role.
std::string_view roleText(const Packet& packet);

/// A report as lines of text for a terminal. Bytes that are not printable ASCII are escaped.
///
///     line 1: reply, bare, 16 bytes: value
///         wireless network 28 08: SSID = "home"
class WordsReport : public Report {
 public:
  using Sink = std::function<void(std::string_view text)>;

  /// Passes whole lines, with their line ends, to `sink`. Masks secrets unless `showSecrets` is
  /// set. If `namesInputs` is set, each input begins with a line with its name.
  WordsReport(Sink sink, bool showSecrets, bool namesInputs = false);

  void beginInput(const std::string& name) override;
  void packet(const Packet& packet) override;
  void problem(const Problem& problem) override;
  /// Writes nothing: the program prints the reason on standard error.
  void unreadable(const std::string& reason) override;

 private:
  Sink m_Sink;
  bool m_ShowSecrets;
  bool m_NamesInputs;
};

}  // namespace decoder
