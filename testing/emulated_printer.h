#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "emulator/adapter/adapter.h"
#include "testing/bytes.h"

namespace support {

/// An emulated adapter, its log and its clock. The clock changes only when the test sets `now`.
///
///     EmulatedPrinter printer;
///     const Bytes reply = printer.ask(packets::QuerySsid);
class EmulatedPrinter {
 public:
  explicit EmulatedPrinter(emulator::Personality personality = {})
      : m_Log([this](std::string_view line) { log.emplace_back(line); }, false),
        adapter(std::move(personality), m_Log, [this] { return now; }) {}

  /// Sends a request and returns all bytes of the reply, joined.
  Bytes ask(const Bytes& request) {
    Bytes all;
    for (const emulator::Adapter::ReplyPiece& piece : adapter.receive(request)) {
      all.insert(all.end(), piece.bytes.begin(), piece.bytes.end());
    }
    return all;
  }

 private:
  emulator::MessageLog m_Log;

 public:
  std::vector<std::string> log;
  emulator::Adapter::Clock::time_point now;
  emulator::Adapter adapter;
};

}  // namespace support
