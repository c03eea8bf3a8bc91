// The packet framing of wnpaGenerator: the headers of setting objects, configuration packets and
// wrappers.

#include <algorithm>
#include <cstddef>

#include "npa/packet.h"
#include "util/debug_line.h"
#include "util/utility.h"
#include "wireless/wnpa_generator.h"

wnpaGenerator::wnpaGenerator(configDetails* configuration)
    : m_Configuration(configuration), m_Sender(configuration->getUSB()) {}

int wnpaGenerator::constructHeader(unsigned char* object, unsigned int valueSize, char number,
                                   char group) {
  const auto header =
      npa::objectHeader(static_cast<npa::Byte>(group), static_cast<npa::Byte>(number), valueSize);
  std::ranges::copy(header, object);
  return 0;
}

int wnpaGenerator::mergeHeaderData(char* value, unsigned char* object, int objectSize) {
  const int valueSize = objectSize - static_cast<int>(npa::ObjectHeaderSize);
  std::copy_n(value, std::max(valueSize, 0), object + npa::ObjectHeaderSize);
  return 0;
}

int wnpaGenerator::appendDataToNPA(int count, unsigned char* bytes) {
  m_Packet.insert(m_Packet.end(), bytes, bytes + std::max(count, 0));
  return 0;
}

int wnpaGenerator::constructGrouping(int size, npa::DataKind kind) {
  const auto header = npa::groupingHeader(static_cast<std::size_t>(size), kind);
  m_Packet.insert(m_Packet.begin(), header.begin(), header.end());
  return size + static_cast<int>(header.size());
}

int wnpaGenerator::constructAtomicGrouping(int size) {
  return constructGrouping(size, npa::DataSettings);
}

int wnpaGenerator::constructLongNetwork(int size) {
  return constructGrouping(size, npa::DataSingleSettings);
}

int wnpaGenerator::constructWrapping(std::vector<unsigned char>& packet, int size) {
  const auto header = npa::wrapHeader(static_cast<std::size_t>(size));
  packet.insert(packet.begin(), header.begin(), header.end());
  return size + static_cast<int>(header.size());
}

std::vector<unsigned char> wnpaGenerator::outgoing(std::span<const npa::Byte> packet) {
  std::vector<unsigned char> bytes(packet.begin(), packet.end());
  if (m_WrapMode) {
    constructWrapping(bytes, static_cast<int>(bytes.size()));
  }
  return bytes;
}

// The result is 0 after any reply and without a reply, on purpose.
int wnpaGenerator::sendNPAData(unsigned char* data, int length, int timeout) {
  std::vector<unsigned char> reply =
      m_Sender.query({data, static_cast<std::size_t>(std::max(length, 0))}, timeout);
  const int count = static_cast<int>(reply.size());
  util::debugLine("sendNPA response (%d bytes)", count);
  Utility::ShowBytes(reply.data(), count);
  return 0;
}
