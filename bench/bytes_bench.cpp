// Compares the conversion of hex text with OpenSSL and nettle, and the packet dump with xxd.

#include <array>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <nettle/base16.h>
#include <openssl/crypto.h>
#include <string>
#include <vector>

#include "contest.h"
#include "documents.h"
#include "growth.h"
#include "process_run.h"
#include "silence.h"
#include "util/utility.h"

namespace {

using Bytes = std::vector<unsigned char>;

/// Returns random hex digits, in upper and lower case.
std::string hexText(std::size_t size) {
  constexpr const char* digits = "0123456789abcdefABCDEF";
  std::string text;
  for (const unsigned char byte : bench::randomBytes(size)) {
    text += digits[byte % 22];
  }
  return text;
}

void convertOurs(const std::string& text) {
  unsigned char* buffer = nullptr;
  const int count = Utility::getHexValues(text.c_str(), buffer);
  const std::unique_ptr<unsigned char[]> bytes(buffer);
  if (!bytes || static_cast<std::size_t>(count) != text.size() / 2) {
    std::abort();
  }
}

void convertOpenssl(const std::string& text) {
  long count = 0;
  unsigned char* bytes = OPENSSL_hexstr2buf(text.c_str(), &count);
  if (bytes == nullptr || static_cast<std::size_t>(count) != text.size() / 2) {
    std::abort();
  }
  OPENSSL_free(bytes);
}

void convertNettle(const std::string& text) {
  base16_decode_ctx context{};
  base16_decode_init(&context);
  Bytes bytes(BASE16_DECODE_LENGTH(text.size()));
  std::size_t count = bytes.size();
  if (base16_decode_update(&context, &count, bytes.data(), text.size(), text.data()) != 1 ||
      count != text.size() / 2) {
    std::abort();
  }
}

template <auto Convert>
auto conversionOf(std::size_t size) {
  return [text = hexText(size)] {
    Convert(text);
  };
}

auto dumpOf(std::size_t size) {
  return
      [bytes = bench::randomBytes(size), silence = std::make_unique<bench::Silence>()]() mutable {
        Utility::ShowBytes(bytes.data(), static_cast<int>(bytes.size()));
      };
}

/// Returns a function that runs xxd and returns the CPU time of its whole process.
auto dumpWithXxd(std::size_t size) {
  const std::string path = "/tmp/zvkbench-" + std::to_string(::getpid());
  const Bytes bytes = bench::randomBytes(size);
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
  const std::shared_ptr<const std::string> file(new std::string(path), [](const std::string* name) {
    ::unlink(name->c_str());
    delete name;
  });
  return [file] {
    const bench::ProcessCost cost = bench::runProcess({"/usr/bin/xxd", *file});
    if (!cost.ended) {
      std::abort();
    }
    return cost.cpuSeconds;
  };
}

[[maybe_unused]] const bool AreAdded = [] {
  constexpr std::size_t mebi = 1 << 20;
  bench::contest("hex text to bytes", bench::Ours, {mebi}, conversionOf<convertOurs>);
  bench::contest("hex text to bytes", "OpenSSL", {mebi}, conversionOf<convertOpenssl>);
  bench::contest("hex text to bytes", "nettle", {mebi}, conversionOf<convertNettle>);
  bench::growth("hex text to bytes", 16 << 10, conversionOf<convertOurs>);
  bench::contest("packet dump", bench::Ours, {mebi}, dumpOf);
  bench::contest("packet dump", "xxd", {mebi}, dumpWithXxd);
  bench::growth("packet dump", 16 << 10, dumpOf);
  return true;
}();

}  // namespace
