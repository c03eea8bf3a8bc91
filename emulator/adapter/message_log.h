#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "emulator/adapter/message.h"

namespace emulator {

/// Logs the requests and replies of the emulated printer, in hex and in words:
///
///     MessageLog log([](std::string_view line) { std::cerr << line << '\n'; }, false);
class MessageLog {
 public:
  using Sink = std::function<void(std::string_view line)>;

  /// Passes each line to `sink`, without a line end. Masks keys and passwords unless `showSecrets`
  /// is set.
  MessageLog(Sink sink, bool showSecrets);

  void received(const Message& message);
  /// Logs a reply and its meaning. An empty reply means that the adapter does not reply.
  void replied(std::span<const npa::Byte> reply, std::string_view meaning);
  /// Logs an event other than a request or a reply.
  void note(std::string_view text);

 private:
  Sink m_Sink;
  bool m_ShowSecrets;
};

}  // namespace emulator
