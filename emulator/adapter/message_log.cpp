// MessageLog: writes the lines of the log. zvknpa parses the lines that begin with an arrow.

#include "emulator/adapter/message_log.h"

#include <utility>

#include "catalogue/hex_text.h"

namespace emulator {

MessageLog::MessageLog(Sink sink, bool showSecrets)
    : m_Sink(std::move(sink)), m_ShowSecrets(showSecrets) {}

void MessageLog::received(const Message& message) {
  const auto hidden = m_ShowSecrets ? std::vector<bool>() : message.secretBytes;
  m_Sink("<- " + catalogue::hexText(message.packet, hidden));
  m_Sink("   " + describe(message, m_ShowSecrets));
}

void MessageLog::replied(std::span<const npa::Byte> reply, std::string_view meaning) {
  if (!reply.empty()) {
    m_Sink("-> " + catalogue::hexText(reply));
  }
  m_Sink("   " + std::string(meaning));
}

void MessageLog::note(std::string_view text) {
  m_Sink("   " + std::string(text));
}

}  // namespace emulator
