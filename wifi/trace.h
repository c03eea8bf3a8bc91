#pragma once

#include <cstdio>
#include <memory>
#include <span>
#include <string>

#include "catalogue/packet_reader.h"
#include "transport/hcusb_transport.h"

namespace wifi {

/// Writes the packets to and from the printer as lines that zvknpa reads, each with its meaning in
/// words. Keys and passwords are masked.
class Trace {
 public:
  /// Writes to the file `path`, which gets mode 0600 and is emptied first, if the path is not
  /// empty; and to standard error if `verbose`. Throws `std::system_error`.
  Trace(const std::string& path, bool verbose);

  /// Takes the bytes of one transfer. A packet is written when its last byte has arrived.
  void transfer(HCUSBTransport::Direction direction, std::span<const unsigned char> bytes);

 private:
  /// The bytes of one direction.
  struct Stream {
    const char* arrow;
    catalogue::PacketReader reader{};
    std::size_t strayBytes = 0;  ///< reported so far
  };

  void line(const std::string& text);
  void strayBytes(const Stream& stream, std::size_t count);

  struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  std::unique_ptr<std::FILE, CloseFile> m_File;
  bool m_Verbose;
  Stream m_ToPrinter{"->"};
  Stream m_FromPrinter{"<-"};
};

}  // namespace wifi
