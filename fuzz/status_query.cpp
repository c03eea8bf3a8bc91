// The input, in hex, is a byte of options, then the replies to the requests, separated by
// semicolons. If there are more requests than replies, the further requests get the last reply.
// Bits 0 to 4 of the first byte select the query. Bit 5 switches the wrapper off. If bit 6 is set,
// the replies are sent unchanged. Otherwise each reply is sent as the content of a packet.
//
// Each query must return a documented result. A second run must have the same effects.

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "fuzz_target.h"
#include "hex_input.h"
#include "outputs.h"
#include "scripted_printer.h"
#include "settings/config_details.h"
#include "wireless/wnpa_generator.h"

namespace {

using fuzz::Bytes;
using G = wnpaGenerator;

/// An operation, its lowest and its highest result, and the most requests that it sends.
struct Query {
  int (G::*operation)();
  int lowest;
  int highest;
  std::size_t requests;
  /// Returns the expected result for a collected reply. The pointer is null if there is no simple
  /// rule for the result.
  int (*expected)(const Bytes& reply) = nullptr;
};

/// Calls `result` for each record of the 802.1x setting `object`, and returns the results. The
/// argument of `result` is the part of the reply that begins at the size of the value.
std::vector<int> visit(const Bytes& reply, char object, int (*result)(const std::string& rest)) {
  const std::string text(reply.begin(), reply.end());
  const std::string key = {'\x50', '\xE0', '\xD8', '\0', '\x2A', object};
  std::vector<int> results;
  for (std::size_t at = text.find(key, 3); at != std::string::npos; at = text.find(key, at + 1)) {
    const std::size_t rest = at + key.size();
    if (text[at - 3] == '\xA5' && text.size() - rest >= 2) {
      results.push_back(result(text.substr(rest)));
    }
  }
  return results;
}

/// Returns the status from the first record that contains a status. Returns -1 if no record
/// contains one.
template <char Object>
int firstStatus(const Bytes& reply) {
  const std::vector<int> all = visit(reply, Object, [](const std::string& rest) {
    return rest.size() > 2 ? static_cast<unsigned char>(rest[2]) : -1;
  });
  const auto found = std::ranges::find_if(all, [](int status) { return status >= 0; });
  return found == all.end() ? -1 : *found;
}

/// Returns 0 if there is a record with a complete value, otherwise -1.
int organization(const Bytes& reply) {
  const std::vector<int> all = visit(reply, '\x06', [](const std::string& rest) {
    const Bytes size(rest.begin(), rest.begin() + 2);
    return rest.size() - 2 >= size[0] * 256U + size[1] ? 0 : -1;
  });
  return std::ranges::find(all, 0) == all.end() ? -1 : 0;
}

constexpr std::array Queries = {
    Query{&G::get802AuthStatus, -1, 255, 1, firstStatus<'\x1D'>},
    Query{&G::get802AuthEnabled, -1, 255, 1, firstStatus<'\x13'>},
    Query{&G::getCertAuthInstalled, -1, 255, 1},
    Query{&G::getAllSecuritySettings, -1, -1, 1},
    Query{&G::get802AuthCommonName, -1, -1, 1},
    Query{&G::getCertOrganization, -1, 0, 1, organization},
    Query{&G::getCertSettings, 0, 0, 2},
    Query{&G::getCertCert, -1, -1, 1},
    Query{&G::getCertCA, -1, -1, 1},
    Query{&G::getCertCommonName, -1, -1, 1},
    Query{&G::getCertFriendlyName, -1, -1, 1},
    Query{&G::getCertAlternateName, -1, -1, 1},
    Query{&G::getCSR, -1, -1, 1},
    Query{&G::generateCertStatus, -1, -1, 1},
    Query{&G::generateCertificate, -1, -1, 1},
    Query{&G::createCertSignRequest, 0, 0, 1},
    Query{&G::construct802ValidateCert, 0, 9, 2},
    Query{&G::getSSID, -1, 1, 7},
    Query{&G::getIP, -1, 1, 7},
    Query{&G::getTroubleCode, -1, 255, 4},
    Query{&G::getAdapterDescriptor, 0, 1, 6},
};

struct Outcome {
  int result = 0;
  fuzz::Output output;

  bool operator==(const Outcome&) const = default;
};

/// Runs a query with a printer that sends these replies.
Outcome ask(const Query& query, const std::vector<Bytes>& replies, bool isWrapped) {
  fuzz::ScriptedPrinter printer;
  printer.answer(replies);
  configDetails configuration;
  Outcome outcome;
  outcome.output = fuzz::outputOf([&] {
    wnpaGenerator generator(&configuration);
    generator.setWrapMode(isWrapped);
    outcome.result = (generator.*query.operation)();
  });
  constexpr virtual_system::Microseconds longest = 120;
  printer.requireEnded(query.requests, longest);
  fuzz::require(!printer.device.writes.empty());
  fuzz::require(outcome.result >= query.lowest && outcome.result <= query.highest);
  return outcome;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<Bytes> replies = fuzz::readHexParts(fuzz::textOf(data, size));
  const unsigned mode = fuzz::takeByte(replies.front());
  const Query& query = Queries[(mode & 0x1FU) % Queries.size()];
  const bool isWrapped = (mode & 0x20U) == 0;
  const bool isContent = (mode & 0x40U) == 0;
  const Bytes collected = replies.front();
  if (isContent) {
    for (Bytes& reply : replies) {
      reply = fuzz::replyPacket(reply);
    }
  }
  const Outcome outcome = ask(query, replies, isWrapped);
  fuzz::require(ask(query, replies, isWrapped) == outcome);
  if (isContent && query.expected != nullptr) {
    fuzz::require(outcome.result == query.expected(collected));
  }
  return 0;
}
