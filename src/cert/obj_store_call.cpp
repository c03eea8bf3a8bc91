// CertMgr's method calls: the bytes of a request and the XML text of a reply.

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "cert/cert_mgr.h"
#include "npa/packet.h"
#include "util/c_text.h"
#include "util/format.h"
#include "util/output.h"

namespace {

/// Returns true if a packet can carry `xmlSize` bytes of XML.
bool fitsPacket(std::size_t xmlSize) {
  return npa::canBeFramed(npa::ObjStoreNpaHeader.size() + xmlSize);
}

/// The command byte of every reply packet.
constexpr unsigned char ReplyCommand = 0xE0;
/// The first bytes of a collected object-store reply. In a reply of several packets, the last of
/// these bytes is the command byte of the second packet. A reply of one packet has the byte 0xE0
/// there too.
constexpr std::array<unsigned char, 7> ReplyMarker = {ReplyCommand, 0xC0, 0x03,        0x00,
                                                      0x01,         0x00, ReplyCommand};

/// Returns the XML text of a collected reply, or nothing if it is not an object-store reply.
std::optional<std::string> xmlIn(std::span<const unsigned char> reply) {
  if (reply.size() < ReplyMarker.size() ||
      !std::ranges::equal(reply.first(ReplyMarker.size()), ReplyMarker)) {
    return std::nullopt;
  }
  std::string_view rest(reinterpret_cast<const char*>(reply.data()), reply.size());
  rest.remove_prefix(ReplyMarker.size());
  std::string text;
  text.reserve(rest.size());
  // The bytes 0xE0 inside the text are dropped as well, on purpose.
  while (!rest.empty()) {
    const std::string_view run = rest.substr(0, rest.find(static_cast<char>(ReplyCommand)));
    text.append(run);
    rest.remove_prefix(std::min(run.size() + 1, rest.size()));
  }
  return text;
}

/// Returns the bytes of a reply, or an empty span for a null pointer or a length of 0 or less.
std::span<const unsigned char> replyOf(const unsigned char* reply, int length) {
  return reply == nullptr || length <= 0
             ? std::span<const unsigned char>()
             : std::span<const unsigned char>(reply, static_cast<std::size_t>(length));
}

/// A special character of XML and its entity.
struct Symbol {
  char character;
  std::string_view entity;
};

constexpr std::array<Symbol, 5> Symbols = {{
    {'&', "&amp;"},
    {'"', "&quot;"},
    {'\'', "&apos;"},
    {'<', "&lt;"},
    {'>', "&gt;"},
}};

}  // namespace

unsigned int CertMgr::makeObjStoreCmd(const char* xml, unsigned char*& cmd) {
  std::string text(util::textOf(xml));
  if (!fitsPacket(text.size())) {
    return 0;
  }
  // The fixed packet, then the packet with the text.
  std::vector<unsigned char> bytes(npa::usbSniff.begin(), npa::usbSniff.end());
  appendObjStoreCmd(bytes, reinterpret_cast<unsigned char*>(text.data()),
                    static_cast<unsigned int>(text.size()));
  return ByteArrayToUCharArray(bytes, cmd);
}

void CertMgr::appendObjStoreCmd(std::vector<unsigned char>& out, unsigned char* xml,
                                unsigned int xmlLen) {
  if (!fitsPacket(xmlLen)) {
    return;
  }
  auto header = npa::objStoreHeader(xmlLen);
  appendToArray(out, header.data(), static_cast<unsigned int>(header.size()));
  appendToArray(out, xml, xmlLen);
}

void CertMgr::appendToArray(std::vector<unsigned char>& out, unsigned char* bytes, unsigned int n) {
  out.insert(out.end(), bytes, bytes + n);
}

unsigned int CertMgr::ByteArrayToUCharArray(std::vector<unsigned char>& v, unsigned char*& out) {
  if (!v.empty()) {
    auto copy = std::make_unique<unsigned char[]>(v.size());
    std::ranges::copy(v, copy.get());
    out = copy.release();
  }
  return static_cast<unsigned int>(v.size());
}

void CertMgr::deleteByteArrayPtr(unsigned char*& p) {
  delete[] p;
  p = nullptr;
}

int CertMgr::getObjStoreResponse(const char* xml, char*& xmlOut, int timeoutSeconds) {
  unsigned char* command = nullptr;
  const unsigned int commandSize = makeObjStoreCmd(xml, command);
  const std::unique_ptr<unsigned char[]> ownedCommand(command);
  if (commandSize == 0) {
    return -1;
  }
  unsigned char* reply = nullptr;
  const int size =
      m_Sender.sendQuery(command, static_cast<int>(commandSize), reply, timeoutSeconds);
  const std::unique_ptr<unsigned char[]> ownedReply(reply);
  if (size > 0) {
    // The text of a reply is shorter than the reply, so the text and its zero byte fit into the
    // size of the reply.
    const auto capacity = static_cast<unsigned int>(size);
    auto text = std::make_unique<char[]>(capacity);
    getXmlResponse(reply, size, text.get(), capacity);
    xmlOut = text.release();
  }
  return size;
}

int CertMgr::getXmlResponse(unsigned char* reply, int replyLen, char* out, unsigned int outSize) {
  const auto bytes = replyOf(reply, replyLen);
  const auto text = xmlIn(bytes);
  if (!text || bytes.size() > outSize) {
    return 0;
  }
  std::fill_n(out, outSize, '\0');
  std::ranges::copy(*text, out);
  return static_cast<int>(std::strlen(out));
}

std::string CertMgr::getXmlResponse(unsigned char* reply, int replyLen) {
  std::string text = xmlIn(replyOf(reply, replyLen)).value_or(std::string());
  // The text ends at its first zero byte, as in the other overload.
  text.resize(std::min(text.find('\0'), text.size()));
  return text;
}

std::string CertMgr::symbolToEntities(const char* text) {
  const std::string_view all = util::textOf(text);
  // The next position of each symbol. Five searches through the text are faster than a test of
  // every character.
  std::array<std::size_t, Symbols.size()> next{};
  std::ranges::transform(Symbols, next.begin(),
                         [all](const Symbol& symbol) { return all.find(symbol.character); });
  // Reserves enough capacity for a text with a few symbols.
  std::string result;
  result.reserve(all.size() + all.size() / 8);
  std::size_t position = 0;
  for (;;) {
    auto* const nearest = std::ranges::min_element(next);
    result.append(all.substr(position, *nearest - position));
    if (*nearest == std::string_view::npos) {
      return result;
    }
    const Symbol& symbol = Symbols[static_cast<std::size_t>(nearest - next.begin())];
    result.append(symbol.entity);
    position = *nearest + 1;
    *nearest = all.find(symbol.character, position);
  }
}

void CertMgr::showByteArray(const std::vector<unsigned char>& bytes) {
  std::string text;
  for (const unsigned char byte : bytes) {
    text.append(util::formatted("%02X", byte));
  }
  util::writeDiagnostic(text);
}
