// Compares the conversions of object-store texts with one memcpy pass over the same bytes.

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "cert/cert_mgr.h"
#include "contest.h"
#include "documents.h"
#include "growth.h"
#include "npa/packet.h"
#include "xml/simple_sax_parser.h"

namespace {

constexpr std::size_t Mebi = 1 << 20;

/// Distances between two marks, in characters. With far marks, most of the cost is the pass over
/// the bytes. With near marks, most of the cost is the handling of the marks.
constexpr std::size_t Far = 1024;
constexpr std::size_t Near = 64;

/// Returns a text of `size` characters. Each whole piece of `Distance` characters ends with `mark`.
template <std::size_t Distance>
std::string textWith(const std::string& mark, std::size_t size) {
  std::string text;
  while (text.size() + Distance <= size) {
    text += std::string(Distance - mark.size(), 'x') + mark;
  }
  return text + std::string(size - text.size(), 'x');
}

/// The peer: copies the text once.
auto copyOf(std::string text) {
  return [copy = std::vector<char>(text.size()), text = std::move(text)]() mutable {
    std::memcpy(copy.data(), text.data(), text.size());
    benchmark::DoNotOptimize(copy.data());
  };
}

template <std::size_t Distance>
auto escapingOf(std::size_t size) {
  return [text = textWith<Distance>("&", size)] {
    benchmark::DoNotOptimize(CertMgr::symbolToEntities(text.c_str()));
  };
}

/// Replaces entities in a copy, because the operation changes its argument.
template <std::size_t Distance>
auto replacementOf(std::size_t size) {
  return [text = textWith<Distance>("&amp;", size), copy = std::string()]() mutable {
    SimpleSAXHandler handler;
    const SimpleSAXParser parser(handler);
    copy = text;
    parser.replaceEntities(copy);
    benchmark::DoNotOptimize(copy.data());
  };
}

/// Returns the bytes of a collected reply. The marks are the command bytes of further packets.
template <std::size_t Distance>
std::string rawReply(std::size_t size) {
  const std::string begin =
      "\xE0\xC0\x03" + std::string(1, '\0') + "\x01" + std::string(1, '\0') + "\xE0";
  return begin + textWith<Distance>("\xE0", size - begin.size());
}

template <std::size_t Distance>
auto extractionOf(std::size_t size) {
  return [reply = rawReply<Distance>(size)]() mutable {
    auto* bytes = reinterpret_cast<unsigned char*>(reply.data());
    if (CertMgr::getXmlResponse(bytes, static_cast<int>(reply.size())).empty()) {
      std::abort();
    }
  };
}

/// Registers the three conversions and their peer for one distance.
template <std::size_t Distance>
void addAll() {
  const std::string peer = "one memcpy pass";
  const std::string density = ", 1 in " + std::to_string(Distance);
  const auto copy = [](std::size_t size) {
    return copyOf(textWith<Distance>("&", size));
  };
  bench::contest("symbolToEntities" + density, bench::Ours, {Mebi}, escapingOf<Distance>);
  bench::contest("symbolToEntities" + density, peer, {Mebi}, copy);
  bench::contest("replaceEntities" + density, bench::Ours, {Mebi}, replacementOf<Distance>);
  bench::contest("replaceEntities" + density, peer, {Mebi}, copy);
  bench::contest("getXmlResponse" + density, bench::Ours, {Mebi}, extractionOf<Distance>);
  bench::contest("getXmlResponse" + density, peer, {Mebi}, copy);
}

[[maybe_unused]] const bool AreAdded = [] {
  addAll<Near>();
  addAll<Far>();
  bench::growth("symbolToEntities", 16 << 10, escapingOf<Near>);
  bench::growth("replaceEntities", 16 << 10, replacementOf<Near>);
  bench::growth("getXmlResponse", 16 << 10, extractionOf<Near>);
  return true;
}();

}  // namespace
