#pragma once

#include <cstdio>
#include <memory>
#include <span>
#include <string>

#include "catalogue/packet_reader.h"
#include "transport/hcusb_transport.h"

namespace wifi {

/// Writes the packets to and from the printer as lines that zvknpa reads. A line with the meaning
/// in words follows each packet. Keys and passwords are masked.
class Trace {
 public:
  /// If `path` is not empty, empties this file, sets its mode to 0600 and writes the trace to it.
  /// If `verbose` is true, also writes the trace to standard error. Throws `std::system_error` if
  /// the file cannot be opened.
  Trace(const std::string& path, bool verbose);

  /// Takes the bytes of one transfer. A packet is written when its last byte has arrived.
  void transfer(HCUSBTransport::Direction direction, std::span<const unsigned char> bytes);

 private:
  /// The bytes of one direction.
  struct Stream {
    const char* arrow;
    catalogue::PacketReader reader{};
    std::size_t strayBytes = 0;  ///< bytes outside a packet that are already reported
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
