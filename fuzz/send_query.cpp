// The input, in hex, is two bytes of options, then the bytes that the printer sends after a
// request. Bits 0 and 1 of the first byte select the time limit, bits 2 and 3 the time between two
// pieces. Bit 4 unplugs the printer after the last piece. The second byte is the size of the pieces
// (0: one piece).
//
// The collected reply must equal the reply that a simple model finds, or the beginning of that
// reply if the time limit has passed.

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <optional>

#include "fuzz_target.h"
#include "hex_input.h"
#include "npa/send_config.h"
#include "outputs.h"
#include "scripted_printer.h"
#include "testing/packets.h"

namespace {

using fuzz::Bytes;
using virtual_system::Microseconds;
using virtual_system::Second;

/// The time limits in seconds.
constexpr std::array TimeLimits = {0, 3, 5, 10};
constexpr std::array<Microseconds, 4> Delays = {0, 20'000, Second, 6 * Second};
/// A pause of this length between two bytes ends a read.
constexpr Microseconds Silence = 5 * Second;
/// The pause between the request and the first read, in seconds.
constexpr Microseconds PauseAfterRequest = 2;
/// The longest last pass in seconds. A pass reads a start byte, a length and the rest of a packet,
/// and each of these reads can end after a silence.
constexpr Microseconds LongestLastPass = 18;

/// The options of the input.
struct Options {
  explicit Options(unsigned first, unsigned second)
      : timeLimit(TimeLimits[first & 3U]),
        delay(Delays[first >> 2U & 3U]),
        isUnplugged((first & 0x10U) != 0),
        pieceSize(second) {}

  int timeLimit;
  Microseconds delay;
  bool isUnplugged;
  std::size_t pieceSize;
};

/// Makes the pieces arrive after the request. Then unplugs the printer if the options say so.
void script(fuzz::ScriptedPrinter& printer, const Bytes& stream, const Options& options) {
  virtual_system::Device& device = printer.device;
  device.onWrite = [&device, &stream, options](const Bytes& /*request*/) {
    Microseconds at = 0;
    for (const Bytes& piece : fuzz::inPieces(stream, options.pieceSize)) {
      device.reply(piece, at);
      at += options.delay;
    }
  };
  if (options.isUnplugged) {
    device.readResult = [&device] {
      return device.arrivals.empty() ? -ENODEV : 0;
    };
    // An unplugged device is always ready. Here, too, each probe takes 1 s.
    device.readSelectResult = [&printer, ordinary = device.readSelectResult] {
      if (!printer.device.arrivals.empty()) {
        return ordinary();
      }
      printer.system.advance(Second);
      return 1;
    };
  }
}

/// Returns the reply that sendQuery collects.
Bytes collected(const Bytes& stream, const Options& options) {
  fuzz::ScriptedPrinter printer;
  script(printer, stream, options);
  Bytes request = packets::QueryCommonName;
  unsigned char marker = 0;
  unsigned char* reply = &marker;
  int count = -1;
  fuzz::outputOf([&] {
    sendConfig exchange("/dev/usb/lp0");
    count = exchange.sendQuery(request.data(), static_cast<int>(request.size()), reply,
                               options.timeLimit);
    fuzz::require(!printer.device.isOpen);
  });
  const auto pieces = static_cast<Microseconds>(fuzz::inPieces(stream, options.pieceSize).size());
  printer.requireEnded(
      1, PauseAfterRequest + options.timeLimit + pieces * options.delay / Second + LongestLastPass);
  fuzz::require(printer.device.opens == 1);
  fuzz::require(printer.device.writes == std::vector<Bytes>{packets::QueryCommonName});
  fuzz::require(count >= 0);
  fuzz::require((count == 0) == (reply == &marker));
  if (count == 0) {
    return {};
  }
  const std::unique_ptr<unsigned char[]> owned(reply);
  return {reply, reply + count};
}

/// The model: returns the reply in a stream that arrives in time. If `passes` is set, makes at most
/// that many passes. A pass takes a packet or a stray byte.
Bytes contents(const Bytes& stream, std::optional<int> passes) {
  Bytes result;
  for (std::size_t at = 0; at < stream.size() && (!passes || (*passes)-- > 0);) {
    if (stream[at] != 0xA5) {
      ++at;
      continue;
    }
    if (stream.size() - at < 3) {
      break;
    }
    const std::size_t size = stream[at + 1] * 256U + stream[at + 2];
    at += 3;
    if (size == 0) {
      continue;
    }
    if (stream.size() - at < size || (stream[at] & 0x80U) != 0) {
      break;
    }
    const auto first = stream.begin() + static_cast<std::ptrdiff_t>(at);
    result.insert(result.end(), first + 1, first + static_cast<std::ptrdiff_t>(size));
    if ((stream[at] & 0x20U) == 0) {
      break;
    }
    at += size;
  }
  return result;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes stream = fuzz::readHex(fuzz::textOf(data, size));
  const unsigned first = fuzz::takeByte(stream);
  const Options options(first, fuzz::takeByte(stream));
  const Bytes result = collected(stream, options);
  fuzz::require(collected(stream, options) == result);
  fuzz::require(result.size() <= stream.size());
  if (options.delay >= Silence) {
    return 0;
  }
  // The pieces do not change the reply, but the time limit can end the reply early.
  const Bytes whole = contents(stream, options.timeLimit > 0 ? std::nullopt : std::optional(1));
  fuzz::require(result.size() <= whole.size() &&
                std::equal(result.begin(), result.end(), whole.begin()));
  fuzz::require(options.delay > 0 || result == whole);
  return 0;
}
