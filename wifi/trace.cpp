#include "wifi/trace.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "catalogue/packet_text.h"
#include "util/format.h"
#include "util/unique_fd.h"

namespace wifi {

Trace::Trace(const std::string& path, bool verbose) : m_Verbose(verbose) {
  if (path.empty()) {
    return;
  }
  constexpr mode_t ownerOnly = 0600;
  util::UniqueFd descriptor(
      ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOCTTY, ownerOnly));
  // A file that already existed may have another mode.
  if (descriptor.get() < 0 || ::fchmod(descriptor.get(), ownerOnly) != 0) {
    throw std::system_error(errno, std::generic_category(), path);
  }
  m_File.reset(::fdopen(descriptor.release(), "w"));
  if (!m_File) {
    throw std::system_error(errno, std::generic_category(), path);
  }
}

void Trace::transfer(HCUSBTransport::Direction direction, std::span<const unsigned char> bytes) {
  if (!m_File && !m_Verbose) {
    return;
  }
  const bool toPrinter = direction == HCUSBTransport::Direction::ToPrinter;
  Stream& stream = toPrinter ? m_ToPrinter : m_FromPrinter;
  Stream& other = toPrinter ? m_FromPrinter : m_ToPrinter;
  // An incomplete packet of the other direction stays incomplete, because transfers in this
  // direction have begun.
  strayBytes(other, other.reader.pendingBytes());
  other.reader.dropPending();

  for (const npa::Bytes& packet : stream.reader.feed(bytes)) {
    const catalogue::PacketText text = catalogue::packetText(packet);
    line(std::string("zvkwifi: ") + stream.arrow + " " + text.hex);
    line("zvkwifi: " + text.meaning);
  }
  strayBytes(stream, stream.reader.strayBytes() - stream.strayBytes);
  stream.strayBytes = stream.reader.strayBytes();
}

void Trace::strayBytes(const Stream& stream, std::size_t count) {
  if (count > 0) {
    line(util::formatted("zvkwifi: %s %zu bytes outside a packet", stream.arrow, count));
  }
}

void Trace::line(const std::string& text) {
  if (m_File) {
    std::fprintf(m_File.get(), "%s\n", text.c_str());
    std::fflush(m_File.get());
  }
  if (m_Verbose) {
    std::fprintf(stderr, "%s\n", text.c_str());
  }
}

}  // namespace wifi
