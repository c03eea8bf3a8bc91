// The first character of the input selects the kind of the rest:
//
//     t  a text file for zvknpa
//     f  any file, in hex
//     s  a stream of bytes, in hex. The first byte is the size of the pieces in which the
//        stream arrives; 0 means 1.
//     c  frames of a capture, in hex, separated by semicolons. The first byte of a frame is
//        the event, the next three are endpoint, transfer and length. The rest is data.
//
// The text report and the JSON report must be valid and lead to the same exit status. The size
// of the pieces must not change the text report.

#include <algorithm>
#include <cstring>
#include <nlohmann/json.hpp>
#include <pcap/pcap.h>
#include <pcap/usb.h>
#include <string>
#include <string_view>

#include "decoder/capture_input.h"
#include "decoder/decode.h"
#include "decoder/hex_block.h"
#include "decoder/json_report.h"
#include "decoder/stream_decoder.h"
#include "decoder/tally.h"
#include "decoder/words.h"
#include "fuzz_target.h"
#include "hex_input.h"

namespace {

using decoder::Options;

bool isPrintable(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return c == '\n' || (c >= ' ' && c <= '~'); });
}

/// Appends the bytes of a number or a header, as they are in memory.
template <typename Number>
void append(std::string& text, const Number& number) {
  text.append(reinterpret_cast<const char*>(&number), sizeof number);
}

/// Returns a capture file of frames. The header of each frame gives the right count of data bytes.
std::string captureOf(const std::vector<fuzz::Bytes>& frames) {
  constexpr std::size_t fields = 4;
  std::string file;
  append(file, ::pcap_file_header{0xA1B2C3D4, 2, 4, 0, 0, 65535, DLT_USB_LINUX});
  for (fuzz::Bytes frame : frames) {
    const std::size_t size = std::max(frame.size(), fields) - fields;
    frame.resize(size + fields);
    ::pcap_usb_header header{};
    header.event_type = frame[0];
    header.transfer_type = URB_BULK;
    header.endpoint_number = frame[1];
    header.id = frame[2];
    header.urb_len = frame[3];
    header.data_len = static_cast<std::uint32_t>(size);
    // The time: seconds and microseconds have four bytes each in a file.
    append(file, std::uint64_t{0});
    append(file, static_cast<std::uint32_t>(sizeof header + size));
    append(file, static_cast<std::uint32_t>(sizeof header + size));
    append(file, header);
    file.append(frame.begin() + fields, frame.end());
  }
  return file;
}

/// Decodes a file to text and to JSON.
void decodeFile(std::string_view file) {
  std::string text;
  decoder::WordsReport words(
      [&](std::string_view line) {
        fuzz::require(isPrintable(line) && line.ends_with('\n'));
        text.append(line);
      },
      true);
  std::string document;
  decoder::JsonReport json([&](std::string_view piece) { document.append(piece); }, true);
  const Options options;
  int statuses[2] = {-1, -1};
  decoder::Report* const reports[2] = {&words, &json};
  for (int i = 0; i < 2; ++i) {
    decoder::Tally tally(*reports[i]);
    tally.beginInput("input");
    try {
      decoder::decode(file, options, tally);
    } catch (const decoder::CaptureError& error) {
      tally.unreadable(error.what());
    }
    statuses[i] = tally.status();
  }
  fuzz::require(statuses[0] == statuses[1]);
  json.finish();
  fuzz::require(nlohmann::json::accept(document));
  // The text report may have at most 100 bytes for each byte of the input and each byte that "*"
  // stands for, and a constant count of further bytes.
  constexpr std::size_t factor = 100;
  const std::size_t repeated =
      file.find('*') == std::string_view::npos ? 0 : decoder::MostRepeatedBytes;
  fuzz::require(text.size() <= factor * (file.size() + repeated + factor));
}

/// Returns the text report of a stream that arrives in pieces of `pieceSize` bytes.
std::string wordsOf(std::span<const std::uint8_t> bytes, std::size_t pieceSize) {
  std::string text;
  decoder::WordsReport words([&](std::string_view line) { text.append(line); }, false);
  decoder::StreamDecoder decoder(decoder::Stream{}, words);
  while (!bytes.empty()) {
    const auto piece = bytes.first(std::min(pieceSize, bytes.size()));
    decoder.feed(piece, 1);
    bytes = bytes.subspan(piece.size());
  }
  decoder.finish();
  fuzz::require(isPrintable(text));
  return text;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = fuzz::textOf(data, size);
  const std::string_view rest = std::string_view(input).substr(std::min<std::size_t>(1, size));
  switch (size == 0 ? 't' : input[0]) {
    case 's': {
      fuzz::Bytes bytes = fuzz::readHex(rest);
      const std::size_t pieceSize = std::max<std::size_t>(fuzz::takeByte(bytes), 1);
      fuzz::require(wordsOf(bytes, pieceSize) == wordsOf(bytes, bytes.size() + 1));
      break;
    }
    case 'c':
      decodeFile(captureOf(fuzz::readHexParts(rest)));
      break;
    case 'f': {
      const fuzz::Bytes bytes = fuzz::readHex(rest);
      decodeFile(std::string(bytes.begin(), bytes.end()));
      break;
    }
    default:
      decodeFile(rest);
      break;
  }
  return 0;
}
