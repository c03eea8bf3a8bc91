// Compares the program's Base64 with OpenSSL and GLib.

#include <cstdlib>
#include <glib.h>
#include <memory>
#include <openssl/evp.h>
#include <string>
#include <vector>

#include "contest.h"
#include "documents.h"
#include "growth.h"
#include "util/base64.h"

namespace {

using Bytes = std::vector<unsigned char>;

/// How many bytes are encoded.
const bench::Sizes Sizes = {48, 12 << 10, 1 << 20};

/// Bytes, their Base64 text, and buffers for the results of encoding and decoding.
struct Job {
  explicit Job(std::size_t size) : bytes(bench::randomBytes(size)), out(size + 3) {
    text.resize(4 * ((size + 2) / 3));
    Base64::encode(bytes.data(), size, text.data(), text.size() + 1);
    encoded.resize(text.size() + 4);
  }

  char* room() { return encoded.data(); }
  unsigned char* roomAsBytes() { return reinterpret_cast<unsigned char*>(encoded.data()); }
  const unsigned char* textAsBytes() const {
    return reinterpret_cast<const unsigned char*>(text.data());
  }
  int textSize() const { return static_cast<int>(text.size()); }

  Bytes bytes;
  std::string text;
  Bytes out;
  std::string encoded;
};

/// Ends the program if a contestant did not do the task, because its times would be meaningless.
void expect(bool good) {
  if (!good) {
    std::abort();
  }
}

using Task = void (*)(Job&);

void encodeOurs(Job& job) {
  expect(Base64::encode(job.bytes.data(), job.bytes.size(), job.room(), job.encoded.size()) == 1);
}

void encodeOpenssl(Job& job) {
  EVP_EncodeBlock(job.roomAsBytes(), job.bytes.data(), static_cast<int>(job.bytes.size()));
}

void encodeGlib(Job& job) {
  int state = 0;
  int save = 0;
  const gsize size =
      g_base64_encode_step(job.bytes.data(), job.bytes.size(), FALSE, job.room(), &state, &save);
  g_base64_encode_close(FALSE, job.room() + size, &state, &save);
}

void decodeOurs(Job& job) {
  expect(Base64::decode(job.text.c_str(), job.out.data(), job.out.size()) ==
         static_cast<long>(job.bytes.size()));
}

/// The result of EVP_DecodeBlock includes the bytes of the padding, so it may be larger than the
/// count of bytes.
void decodeOpenssl(Job& job) {
  expect(EVP_DecodeBlock(job.out.data(), job.textAsBytes(), job.textSize()) >=
         static_cast<int>(job.bytes.size()));
}

void decodeGlib(Job& job) {
  int state = 0;
  guint save = 0;
  expect(g_base64_decode_step(job.text.data(), job.text.size(), job.out.data(), &state, &save) ==
         job.bytes.size());
}

/// EVP_DecodeBlock cannot skip line breaks. The streaming functions can.
void decodeOpensslStream(Job& job) {
  const std::unique_ptr<EVP_ENCODE_CTX, decltype(&EVP_ENCODE_CTX_free)> context(
      EVP_ENCODE_CTX_new(), EVP_ENCODE_CTX_free);
  int size = 0;
  int rest = 0;
  EVP_DecodeInit(context.get());
  EVP_DecodeUpdate(context.get(), job.out.data(), &size, job.textAsBytes(), job.textSize());
  EVP_DecodeFinal(context.get(), job.out.data() + size, &rest);
  expect(size + rest == static_cast<int>(job.bytes.size()));
}

/// Inserts a line break after every 64 characters, as in PEM files.
void breakLines(Job& job) {
  std::string lines;
  for (std::size_t i = 0; i < job.text.size(); i += 64) {
    lines += job.text.substr(i, 64) + "\n";
  }
  job.text = std::move(lines);
}

/// The empty preparation, for a contestant that needs no preparation.
void none(Job& /*job*/) {}

/// One row: the task, the contestant's name, what it runs, and how it prepares the job.
struct Contestant {
  const char* task;
  const char* name;
  Task run;
  Task prepare = none;
};

constexpr const char* Encode = "Base64 encode";
constexpr const char* Decode = "Base64 decode";
constexpr const char* DecodeLines = "Base64 decode, lines of 64";

constexpr Contestant Contestants[] = {
    {Encode, bench::Ours, encodeOurs},
    {Encode, "OpenSSL", encodeOpenssl},
    {Encode, "GLib", encodeGlib},
    {Decode, bench::Ours, decodeOurs},
    {Decode, "OpenSSL", decodeOpenssl},
    {Decode, "GLib", decodeGlib},
    {DecodeLines, bench::Ours, decodeOurs, breakLines},
    {DecodeLines, "OpenSSL", decodeOpensslStream, breakLines},
    {DecodeLines, "GLib", decodeGlib, breakLines},
};

/// Returns the function `prepare` of a contest. It makes a job of a size, and returns a function
/// that does `task` on this job.
auto jobOf(Task task, Task prepare) {
  return [task, prepare](std::size_t size) {
    Job job(size);
    prepare(job);
    return [task, job = std::move(job)]() mutable {
      task(job);
    };
  };
}

[[maybe_unused]] const bool AreAdded = [] {
  for (const auto& [task, name, run, prepare] : Contestants) {
    bench::contest(task, name, Sizes, jobOf(run, prepare));
  }
  bench::growth("Base64 encode, bytes", 16 << 10, jobOf(encodeOurs, none));
  bench::growth("Base64 decode, bytes", 16 << 10, jobOf(decodeOurs, none));
  return true;
}();

}  // namespace
