// The input, in hex, is a byte that selects an exchange, a byte with the size of the pieces in
// which replies arrive (0: whole), and the replies, separated by semicolons. If there are more
// requests than replies, the further requests get the last reply. The result must equal the result
// of a simple model of the exchange.

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <vector>

#include "fuzz_target.h"
#include "hex_input.h"
#include "npa/send_config.h"
#include "outputs.h"
#include "scripted_printer.h"
#include "testing/packets.h"

namespace {

using fuzz::Bytes;

const Bytes& Request = packets::QueryIp;

enum class Kind { SetConfig, Reset, Descriptor, TroubleCode, Ssid, Ip };

/// The documented values of an exchange: its operation, the size of the buffer in bytes, the
/// seconds between request and reading, the count of attempts, and the seconds between two
/// attempts.
struct Promise {
  Kind kind;
  int (sendConfig::*operation)(unsigned char*, int);
  std::size_t bufferSize;
  unsigned int pause;
  std::size_t attempts;
  unsigned int pauseBetween;
};

constexpr std::array Promises = {
    Promise{Kind::SetConfig, &sendConfig::setConfig, 1000, 5, 1, 0},
    Promise{Kind::Reset, &sendConfig::resetINA, 255, 5, 2, 50},
    Promise{Kind::Descriptor, &sendConfig::getAdapterDescriptor, 255, 0, 6, 10},
    Promise{Kind::TroubleCode, &sendConfig::getTroubleCode, 255, 2, 4, 0},
    Promise{Kind::Ssid, &sendConfig::getSSID, 512, 2, 7, 0},
    Promise{Kind::Ip, &sendConfig::getIP, 255, 3, 7, 0},
};

/// The observable effects of a run.
struct Outcome {
  int result = 1;
  std::string printed;
  std::size_t requests = 0;
  std::vector<unsigned int> sleeps;

  bool operator==(const Outcome&) const = default;
};

/// Returns the SSID in `reply`. The SSID follows the copy of the request and the size field of two
/// bytes, and ends before the first zero byte.
std::string ssidIn(const Bytes& reply) {
  const std::string text(reply.begin() + static_cast<std::ptrdiff_t>(Request.size() + 2),
                         reply.end());
  return text.substr(0, text.find('\0')) + "\n";
}

/// Returns the last four bytes as an address in text form.
std::string addressIn(const Bytes& reply) {
  std::string text;
  for (std::size_t i = reply.size() - 4; i < reply.size(); ++i) {
    text += std::to_string(reply[i]) + (i + 1 < reply.size() ? "." : "\n");
  }
  return text;
}

/// Returns the result of the exchange after one attempt, or nothing if another attempt follows.
std::optional<int> judge(Kind kind, const Bytes& reply, std::string& printed) {
  const int last = reply.empty() ? -1 : reply.back();
  const bool canRefuse = kind != Kind::Reset && kind != Kind::Descriptor;
  if (canRefuse && reply.size() > 3 && reply[3] == 0xD4) {
    return -1;
  }
  switch (kind) {
    case Kind::SetConfig:
      return reply.empty() ? -1 : (last == 1 ? 0 : 1);
    case Kind::Reset:
      return last == 1 ? std::optional(0) : std::nullopt;
    case Kind::Descriptor:
      return last == '-' ? std::optional(0) : std::nullopt;
    case Kind::TroubleCode:
      return last == 0 ? std::optional(0) : std::nullopt;
    case Kind::Ssid:
      printed = reply.size() > Request.size() + 2 ? ssidIn(reply) : "";
      break;
    case Kind::Ip:
      printed = reply.size() >= 4 ? addressIn(reply) : "";
      printed = printed == "0.0.0.0\n" ? "" : printed;
      break;
  }
  return printed.empty() ? std::nullopt : std::optional(0);
}

/// The model of an exchange.
Outcome expectedOutcome(const Promise& promise, const std::vector<Bytes>& replies) {
  Outcome outcome;
  Bytes waiting;
  Bytes read;
  std::optional<int> result;
  while (!result && outcome.requests < promise.attempts) {
    if (outcome.requests > 0 && promise.pauseBetween > 0) {
      outcome.sleeps.push_back(promise.pauseBetween);
    }
    const Bytes& reply = replies[std::min(outcome.requests++, replies.size() - 1)];
    if (promise.pause > 0) {
      outcome.sleeps.push_back(promise.pause);
    }
    // Bytes that do not fit into the buffer are read in the next attempt.
    waiting.insert(waiting.end(), reply.begin(), reply.end());
    const auto count = static_cast<std::ptrdiff_t>(std::min(waiting.size(), promise.bufferSize));
    read.assign(waiting.begin(), waiting.begin() + count);
    waiting.erase(waiting.begin(), waiting.begin() + count);
    result = judge(promise.kind, read, outcome.printed);
  }
  const bool hasCode = promise.kind == Kind::TroubleCode && !read.empty();
  outcome.result = result.value_or(hasCode ? read.back() : 1);
  return outcome;
}

/// Runs the exchange with a printer that sends these replies.
Outcome outcomeOf(const Promise& promise, const std::vector<Bytes>& replies,
                  std::size_t pieceSize) {
  fuzz::ScriptedPrinter printer;
  printer.answer(replies, pieceSize);
  Bytes request = Request;
  Outcome outcome;
  const fuzz::Output output = fuzz::outputOf([&] {
    sendConfig exchange("/dev/usb/lp0");
    outcome.result =
        (exchange.*promise.operation)(request.data(), static_cast<int>(request.size()));
    fuzz::require(!printer.device.isOpen);
  });
  constexpr virtual_system::Microseconds longest = 140;  // seconds
  printer.requireEnded(promise.attempts, longest);
  fuzz::require(output.err == "D [ZVK] Destroying last instance of usb transport.\n");
  for (const Bytes& sent : printer.device.writes) {
    fuzz::require(sent == Request);
  }
  outcome.printed = output.out;
  outcome.requests = printer.device.writes.size();
  outcome.sleeps = printer.system.sleeps;
  return outcome;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<Bytes> replies = fuzz::readHexParts(fuzz::textOf(data, size));
  const Promise& promise = Promises[fuzz::takeByte(replies.front()) % Promises.size()];
  const std::size_t pieceSize = fuzz::takeByte(replies.front());
  fuzz::require(outcomeOf(promise, replies, pieceSize) == expectedOutcome(promise, replies));
  return 0;
}
