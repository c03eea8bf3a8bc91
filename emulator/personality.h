#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

#include "npa/packet.h"

namespace emulator {

/// How an emulated printer answers. The defaults are a well-behaved adapter that is connected.
struct Personality {
  bool refuseWrapped = false;
  bool refuseAll = false;
  bool silent = false;
  bool garbage = false;
  std::chrono::seconds answerAfter{0};
  /// Replies are cut to this size.
  std::optional<std::size_t> cutAt;
  /// Replies go out in pieces of this size.
  std::optional<std::size_t> pieceSize;
  /// The last byte of the answer to settings; 0x01 accepts them.
  npa::Byte settingsResult = 0x01;

  std::array<npa::Byte, 4> ipAddress = {192, 168, 1, 20};
  npa::Byte troubleCode = 0;
  std::string ssid;
  std::string descriptor = "Emulated wireless adapter -";
};

}  // namespace emulator
