// The input, in hex, is two bytes of options, then the bytes that a host writes to the emulated
// printer. Each of the bits 0 to 4 of the first byte selects a property of the printer. The second
// byte is the size of the pieces in which the host writes (0: 1 byte).
//
// All replies must be valid packets. The size of the pieces must not change the replies or the
// state. Only the replies and the state of a printer that has generated a key may differ.

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/packet_reader.h"
#include "emulator/adapter/adapter.h"
#include "emulator/adapter/message_log.h"
#include "fuzz_target.h"
#include "hex_input.h"

namespace {

using emulator::Adapter;
using npa::Bytes;

/// Returns the properties of the printer that the bits of `mode` select.
emulator::Personality personality(unsigned mode) {
  emulator::Personality result;
  result.otherRecordFirst = (mode & 1U) != 0;
  result.replyPackets = (mode & 2U) != 0 ? 3 : 1;
  result.refuseWrapped = (mode & 4U) != 0;
  if ((mode & 8U) != 0) {
    result.pieceSize = 5;
  }
  if ((mode & 16U) != 0) {
    result.settingsResult = 0;
  }
  return result;
}

bool isPrintable(std::string_view text) {
  return std::ranges::none_of(
      text, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; });
}

/// The effects of the host's writes.
struct Outcome {
  Bytes replies;
  std::vector<std::string> state;
  bool hasMadeKeys = false;
};

/// Writes the input to a new printer in pieces.
Outcome talk(const Bytes& input, unsigned mode, std::size_t pieceSize) {
  Outcome outcome;
  emulator::MessageLog log([](std::string_view line) { fuzz::require(isPrintable(line)); }, false);
  Adapter adapter(personality(mode), log, [] { return Adapter::Clock::time_point(); });
  for (std::size_t start = 0; start < input.size(); start += pieceSize) {
    const std::size_t count = std::min(pieceSize, input.size() - start);
    for (const Adapter::ReplyPiece& piece :
         adapter.receive(std::span(input).subspan(start, count))) {
      fuzz::require(!piece.bytes.empty());
      outcome.replies.insert(outcome.replies.end(), piece.bytes.begin(), piece.bytes.end());
    }
  }
  outcome.state = adapter.describe(true);
  fuzz::require(std::ranges::all_of(outcome.state, isPrintable));
  outcome.hasMadeKeys = !adapter.certificates().devices().empty();
  return outcome;
}

/// Requires that the replies are complete packets whose flag bytes are valid.
void requirePackets(const Bytes& replies) {
  catalogue::PacketReader reader;
  for (const Bytes& packet : reader.feed(replies)) {
    fuzz::require(packet.size() > npa::FlagOffset);
    const npa::Byte flag = packet[npa::FlagOffset];
    fuzz::require(flag == npa::FlagRefused || (flag & ~npa::FlagMoreFollows) == npa::RequestFlag);
  }
  fuzz::require(reader.strayBytes() == 0 && reader.pendingBytes() == 0);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes input = fuzz::readHex(fuzz::textOf(data, size));
  const unsigned mode = fuzz::takeByte(input);
  const std::size_t pieceSize = fuzz::takeByte(input);
  const Outcome whole = talk(input, mode, input.size() + 1);
  const Outcome inPieces = talk(input, mode, std::max<std::size_t>(pieceSize, 1));
  requirePackets(whole.replies);
  requirePackets(inPieces.replies);
  // If a key was made, the replies may differ, because each run generates new keys, and a
  // certificate request contains the public key.
  fuzz::require(inPieces.replies == whole.replies || whole.hasMadeKeys || inPieces.hasMadeKeys);
  fuzz::require(inPieces.state.size() == whole.state.size());
  fuzz::require(inPieces.state == whole.state || whole.hasMadeKeys);
  return 0;
}
