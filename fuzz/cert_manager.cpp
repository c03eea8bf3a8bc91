// The first line of the input is a letter that selects an operation on the printer's certificates.
// Each further line is the XML of the reply to one method call. If there are more calls than lines,
// the further calls get the reply of the last line. A line that begins with "hex:" has, in hex, the
// part of the reply packet after the flag byte.
//
// Each operation must return a documented result within a time limit, and change files only as
// documented.

#include <algorithm>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "cert/cert_mgr.h"
#include "fuzz_target.h"
#include "hex_input.h"
#include "memory_file.h"
#include "npa/packet.h"
#include "outputs.h"
#include "scripted_printer.h"

namespace {

using fuzz::Bytes;
using fuzz::MemoryFile;

constexpr std::size_t MostNames = 9;
constexpr std::size_t LargestRequest = 16384;

/// Subject CN=Root, from 5 January 2020 to 25 December 2030.
constexpr std::string_view Certificate =
    "-----BEGIN CERTIFICATE-----\n"
    "MIIBBjCBrAIBATAKBggqhkjOPQQDAjAPMQ0wCwYDVQQDDARSb290MB4XDTIwMDEw\n"
    "NTAwMDAwMFoXDTMwMTIyNTAwMDAwMFowDzENMAsGA1UEAwwEUm9vdDBZMBMGByqG\n"
    "SM49AgEGCCqGSM49AwEHA0IABGKOT95pkRSj4wDMw+nQ4Dxz35PNzGxbBgB7mUOT\n"
    "oyuYWxt8DZ83/fgDepV4ZPW5MgowklXznkKmYcSom3AcdlMwCgYIKoZIzj0EAwID\n"
    "SQAwRgIhAMrl30+1Ze6bB2Uaw80BEew1Uc0CuaaiRKNB2jVn9bEcAiEA44qJk0LS\n"
    "nSugsdIzPcJ4qW7iEoLJs/IT6c69kcaJHwA=\n"
    "-----END CERTIFICATE-----\n";

/// The objects that an operation uses.
struct Work {
  CertMgr& manager;
  MemoryFile& file;
};

int readDefaults(const Work& work) {
  std::string texts[7];
  return work.manager.getCertRequestDefaults(texts[0], texts[1], texts[2], texts[3], texts[4],
                                             texts[5], texts[6]);
}

int readAuthority(const Work& work) {
  std::string fileName;
  std::string path;
  std::string commonName;
  return work.manager.getCAInfo("Root", fileName, path, commonName);
}

/// Runs an operation that lists names. The list must have at most nine names, and none of them may
/// be empty.
int list(const Work& work, int (CertMgr::*operation)(std::vector<std::string>&)) {
  std::vector<std::string> names(MostNames + 1, "before");
  const int result = (work.manager.*operation)(names);
  const bool isEmpty = std::ranges::find(names, "") != names.end();
  fuzz::require(!isEmpty && names.size() <= MostNames + 1);
  fuzz::require(names.size() <= MostNames || names.front() == "before");
  return result;
}

/// One row of the table of operations.
struct Operation {
  char letter;  ///< in the first line of the input
  int (*run)(const Work& work);
  int lowest;         ///< the smallest result
  int highest;        ///< the largest result
  std::size_t calls;  ///< the most method calls
};

const Operation Operations[] = {
    {'d', readDefaults, -1, 0, 1},
    {'g',
     [](const Work& work) {
       return work.manager.creatCertRequest("O", "OU", "C", "ST", "L", "<CN>", "AN", nullptr);
     },
     -1, 0, 2},
    {'e',
     [](const Work& work) {
       return work.manager.saveCertRequest(work.file.path().c_str(), nullptr);
     },
     -1, 0, 1},
    {'s',
     [](const Work& work) {
       return work.manager.installSignedCert(work.file.path().c_str(), nullptr);
     },
     -1, 0, 1},
    {'a', [](const Work& work) { return work.manager.installCACert(work.file.path().c_str()); }, -1,
     0, 3},
    {'m', [](const Work& work) { return work.manager.removeCAIfExist(work.file.path().c_str()); },
     0, 1, 2},
    {'x', [](const Work& work) { return work.manager.deleteCert("name"); }, -1, 0, 1},
    {'y', [](const Work& work) { return work.manager.deleteCACert("name"); }, -1, 0, 1},
    {'i', readAuthority, -1, 0, 1},
    {'l', [](const Work& work) { return list(work, &CertMgr::getCertFriendlyNameList); }, -1, 0, 1},
    {'c', [](const Work& work) { return list(work, &CertMgr::getCACommonNameList); }, -1, 0, 1},
};

/// Returns the operation whose letter is the first character of `line`, or the first operation if
/// no operation has this letter.
const Operation& operationOf(const std::string& line) {
  const auto* const found =
      std::ranges::find(Operations, line.empty() ? '\0' : line.front(), &Operation::letter);
  return found == std::end(Operations) ? Operations[0] : *found;
}

/// Returns the reply packet that a line of the input describes.
Bytes replyOf(const std::string& line) {
  constexpr std::string_view rawMark = "hex:";
  if (line.starts_with(rawMark)) {
    return fuzz::replyPacket(fuzz::readHex(std::string_view(line).substr(rawMark.size())));
  }
  Bytes content = {0xE0, 0xC0, 0x03, 0x00, 0x01, 0x00, 0xE0};
  content.insert(content.end(), line.begin(), line.end());
  return fuzz::replyPacket(content);
}

/// Returns true if the bytes are the fixed packet followed by exactly one packet.
bool isMethodCall(const Bytes& bytes) {
  const std::size_t start = npa::usbSniff.size();
  return bytes.size() > start + npa::LengthHeaderSize &&
         std::equal(npa::usbSniff.begin(), npa::usbSniff.end(), bytes.begin()) &&
         npa::numberAt(bytes, start + 1) + npa::LengthHeaderSize == bytes.size() - start;
}

/// The observable effects of an operation.
struct Outcome {
  int result = 0;
  std::string file;
  std::vector<Bytes> calls;

  bool operator==(const Outcome&) const = default;
};

/// Runs an operation with a printer that sends these replies.
Outcome perform(const Operation& operation, const std::vector<Bytes>& replies) {
  fuzz::ScriptedPrinter printer;
  printer.answer(replies);
  MemoryFile file(Certificate);
  Outcome outcome;
  fuzz::outputOf([&] {
    CertMgr manager("/dev/usb/lp0");
    outcome.result = operation.run({manager, file});
  });
  constexpr virtual_system::Microseconds longestCall = 30;
  printer.requireEnded(operation.calls,
                       static_cast<virtual_system::Microseconds>(operation.calls) * longestCall);
  fuzz::require(std::ranges::all_of(printer.device.writes, isMethodCall));
  fuzz::require(outcome.result >= operation.lowest && outcome.result <= operation.highest);
  outcome.file = file.content();
  outcome.calls = printer.device.writes;
  // Only a successful export writes to the file.
  const bool isWritten = operation.letter == 'e' && outcome.result == 0;
  fuzz::require(isWritten ? outcome.file.size() <= LargestRequest : outcome.file == Certificate);
  return outcome;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::istringstream input(fuzz::textOf(data, size));
  std::string line;
  std::getline(input, line);
  const Operation& operation = operationOf(line);
  std::vector<Bytes> replies;
  while (std::getline(input, line)) {
    replies.push_back(replyOf(line));
  }
  if (replies.empty()) {
    replies.emplace_back();
  }
  // A second run must have the same effects. The path of the memory file is the same in both runs,
  // so an upload sends the same file name.
  const Outcome outcome = perform(operation, replies);
  fuzz::require(perform(operation, replies) == outcome);
  return 0;
}
