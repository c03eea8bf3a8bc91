#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "emulator/adapter/message.h"

namespace emulator {

/// Says line by line what the emulated printer receives and answers, in hex and in words.
class MessageLog {
 public:
  using Sink = std::function<void(std::string_view line)>;

  /// Hands each line, without an end, to `sink`. Keys and passwords are masked unless
  /// `showSecrets`.
  MessageLog(Sink sink, bool showSecrets);

  void received(const Message& message);
  void answered(std::span<const npa::Byte> reply, std::string_view meaning);
  void note(std::string_view text);

 private:
  Sink m_Sink;
  bool m_ShowSecrets;
};

}  // namespace emulator
