// The input is the content of a certificate file. Two reads must return the same names, and these
// names must have the documented form. Loading and saving the file must not change its content.

#include <string>
#include <string_view>
#include <vector>

#include "cert/cert_mgr.h"
#include "fuzz_target.h"
#include "memory_file.h"
#include "outputs.h"

namespace {

using fuzz::MemoryFile;

/// The result and the names of one call. "#" shows that a name was not set.
struct Names {
  int result = 0;
  std::string commonName = "#";
  std::string caName = "#";

  bool operator==(const Names&) const = default;
};

Names namesIn(const MemoryFile& file) {
  Names names;
  fuzz::outputOf([&] {
    names.result = CertMgr::getPEMCommonName(file.path().c_str(), names.commonName, names.caName);
  });
  return names;
}

/// Requires that the file loads into a buffer of `room` bytes and equals `content`.
void requireLoaded(const MemoryFile& file, std::size_t room, const std::string& content) {
  std::vector<unsigned char> buffer(room);
  int size = 0;
  fuzz::outputOf([&] {
    size =
        CertMgr::loadFromFile(buffer.data(), static_cast<unsigned int>(room), file.path().c_str());
  });
  fuzz::require(size == static_cast<int>(content.size()));
  fuzz::require(content == std::string(buffer.begin(), buffer.begin() + size));
}

/// Requires that saving replaces the whole content of a file.
void requireSaved(const std::string& content) {
  const MemoryFile file("what was there before");
  std::string copy = content;
  bool isSaved = false;
  fuzz::outputOf([&] {
    isSaved = CertMgr::saveToFile(reinterpret_cast<unsigned char*>(copy.data()),
                                  static_cast<unsigned int>(copy.size()), file.path().c_str());
  });
  fuzz::require(isSaved);
  fuzz::require(file.content() == content);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string content = fuzz::textOf(data, size);
  const MemoryFile file(content);
  const Names names = namesIn(file);
  fuzz::require(namesIn(file) == names);
  if (names.result == 0) {
    constexpr std::string_view pattern = "_Mon_31_2000_To_Mon_31_2000";
    fuzz::require(!names.commonName.empty());
    fuzz::require(names.caName.starts_with(names.commonName + "_"));
    fuzz::require(names.caName.size() >= names.commonName.size() + pattern.size());
    fuzz::require(names.caName.find("_To_", names.commonName.size()) != std::string::npos);
  } else {
    fuzz::require(names.result == -1);
    fuzz::require(names.caName == "#");
  }
  requireLoaded(file, content.size(), content);
  requireLoaded(file, content.size() + 1, content);
  requireSaved(content);
  return 0;
}
