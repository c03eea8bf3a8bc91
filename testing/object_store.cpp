#include "testing/object_store.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>

namespace support {

namespace {

const Bytes Sniff = bytes("A5 00 10 80 A4 5B A4 5B 10 EF A4 5B 11 EE 00 FF 13 EC 2E");
constexpr std::size_t HeaderSize = 9;

/// A packet with the length filled in.
Bytes packet(const char* flagAndCommand, const Bytes& data) {
  const Bytes head = bytes(flagAndCommand);
  const std::size_t length = head.size() + data.size();
  return joined(
      {{0xA5, static_cast<std::uint8_t>(length / 256), static_cast<std::uint8_t>(length % 256)},
       head,
       data});
}

}  // namespace

std::string replyXml(std::string_view children) {
  return R"(<?xml version="1.0" encoding="UTF-8"?><response><MapElem>)" + std::string(children) +
         "</MapElem></response>";
}

std::string statusChildren(std::string_view code, std::string_view message) {
  return R"(<child name="status_code"><IntegerElem>)" + std::string(code) +
         "</IntegerElem></child>" + textChild("status_mesg", message);
}

std::string textChild(std::string_view name, std::string_view value) {
  return "<child name=\"" + std::string(name) + "\"><StringElem>" + std::string(value) +
         "</StringElem></child>";
}

std::string listChild(const std::vector<std::string>& names) {
  std::string entries;
  for (const std::string& name : names) {
    entries += "<StringElem>" + name + "</StringElem>";
  }
  return R"(<child name="cert_list"><ListElem>)" + entries + "</ListElem></child>";
}

Bytes replyPacket(std::string_view xml) {
  return packet("50 E0", joined({bytes("C0 03 00 01 00 E0"), textBytes(xml)}));
}

Bytes success(std::string_view children) {
  return replyPacket(replyXml(statusChildren("1") + std::string(children)));
}

Bytes failure(std::string_view code, std::string_view message) {
  return replyPacket(replyXml(statusChildren(code, message)));
}

Bytes callPackets(std::string_view xml) {
  return joined({Sniff, packet("50 E0", joined({bytes("C0 03 00 01"), textBytes(xml)}))});
}

std::string callXml(int requestId, std::string_view method, std::string_view params) {
  return R"(<?xml version="1.0" encoding="UTF-8"?><method name="callMethod" requestID=")" +
         std::to_string(requestId) +
         R"("><arg name="objName">applications.certMgr</arg><arg name="method">)" +
         std::string(method) + R"(</arg><arg name="params"><ListElem><ListElem>)" +
         std::string(params) + "</ListElem></ListElem></arg></method>";
}

std::string parameter(std::string_view name, std::string_view element, std::string_view value) {
  const std::string type(element);
  return "<child name=\"" + std::string(name) + "\"><" + type + ">" + std::string(value) + "</" +
         type + "></child>";
}

std::vector<std::string> ObjectStorePrinter::calls() const {
  std::vector<std::string> texts;
  for (const Bytes& write : device.writes) {
    if (write.size() < Sniff.size() + HeaderSize ||
        !std::equal(Sniff.begin(), Sniff.end(), write.begin())) {
      throw std::runtime_error("no method call");
    }
    texts.emplace_back(write.begin() + static_cast<std::ptrdiff_t>(Sniff.size() + HeaderSize),
                       write.end());
  }
  return texts;
}

}  // namespace support
