// The texts of object-store calls beside a pass of memcpy over the same bytes.

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "cert/cert_mgr.h"
#include "contest.h"
#include "documents.h"
#include "npa/packet.h"
#include "xml/simple_sax_parser.h"

namespace {

constexpr std::size_t Mebi = 1 << 20;

/// A text of a size in which `mark` stands at every 64th place.
std::string textWith(const std::string& mark, std::size_t size) {
  std::string text;
  while (text.size() + 64 <= size) {
    text += std::string(64 - mark.size(), 'x') + mark;
  }
  return text + std::string(size - text.size(), 'x');
}

auto copyOf(std::string text) {
  return [copy = std::vector<char>(text.size()), text = std::move(text)]() mutable {
    std::memcpy(copy.data(), text.data(), text.size());
    benchmark::DoNotOptimize(copy.data());
  };
}

auto escapingOf(std::size_t size) {
  return [text = textWith("&", size)] {
    benchmark::DoNotOptimize(CertMgr::symbolToEntities(text.c_str()));
  };
}

/// Replaces in a copy, since the replacement uses its text up.
auto replacementOf(std::size_t size) {
  return [text = textWith("&amp;", size), copy = std::string()]() mutable {
    SimpleSAXHandler handler;
    const SimpleSAXParser parser(handler);
    copy = text;
    parser.replaceEntities(copy);
    benchmark::DoNotOptimize(copy.data());
  };
}

/// The bytes of a reply whose text has the command byte of a further packet every 64 bytes.
std::string rawReply(std::size_t size) {
  const std::string begin =
      "\xE0\xC0\x03" + std::string(1, '\0') + "\x01" + std::string(1, '\0') + "\xE0";
  return begin + textWith("\xE0", size - begin.size());
}

auto extractionOf(std::size_t size) {
  return [reply = rawReply(size)]() mutable {
    auto* bytes = reinterpret_cast<unsigned char*>(reply.data());
    if (CertMgr::getXmlResponse(bytes, static_cast<int>(reply.size())).empty()) {
      std::abort();
    }
  };
}

[[maybe_unused]] const bool AreAdded = [] {
  const std::string peer = "one memcpy pass";
  bench::contest("symbolToEntities", bench::Ours, {Mebi}, escapingOf);
  bench::contest("symbolToEntities", peer, {Mebi},
                 [](std::size_t size) { return copyOf(textWith("&", size)); });
  bench::growth("symbolToEntities", 16 << 10, escapingOf);
  bench::contest("replaceEntities", bench::Ours, {Mebi}, replacementOf);
  bench::contest("replaceEntities", peer, {Mebi},
                 [](std::size_t size) { return copyOf(textWith("&amp;", size)); });
  bench::growth("replaceEntities", 16 << 10, replacementOf);
  bench::contest("getXmlResponse", bench::Ours, {Mebi}, extractionOf);
  bench::contest("getXmlResponse", peer, {Mebi},
                 [](std::size_t size) { return copyOf(rawReply(size)); });
  bench::growth("getXmlResponse", 16 << 10, extractionOf);
  return true;
}();

}  // namespace
